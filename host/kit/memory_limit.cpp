#include "host/kit/memory_limit.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

namespace vnt::host {
namespace {

constexpr std::uint64_t kMostByDefault = std::uint64_t{4} << 30U;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

std::string text_of(const std::string& file)
{
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::optional<std::uint64_t> leading_number(std::string_view text)
{
    std::uint64_t number = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), number).ec != std::errc())
        return std::nullopt;
    return number;
}

std::optional<std::uint64_t> system_value(int name)
{
    const long value = sysconf(name);
    return value > 0 ? std::optional(static_cast<std::uint64_t>(value)) : std::nullopt;
}

std::uint64_t page_size() { return system_value(_SC_PAGESIZE).value_or(4096); }

std::optional<std::uint64_t> address_space()
{
    return address_space_of_statm(text_of("/proc/self/statm"), page_size());
}

std::uint64_t least_upper(std::uint64_t bound, std::optional<std::uint64_t> other)
{
    return other ? std::min(bound, *other) : bound;
}

// What the groups from the process's own up to the top allow; each bounds all that are below it.
std::uint64_t memory_of_control_groups()
{
    std::uint64_t least = std::numeric_limits<std::uint64_t>::max();
    const std::string text = text_of("/proc/self/cgroup");
    const std::optional<std::string_view> group = control_group_of(text);
    if (!group || !group->starts_with('/'))
        return least;
    std::string path(*group);
    for (bool is_top = false; !is_top;) {
        is_top = path.empty();
        least = least_upper(least, memory_max_of(text_of("/sys/fs/cgroup" + path + "/memory.max")));
        path.resize(is_top ? 0 : path.find_last_of('/'));
    }
    return least;
}

} // namespace

MemoryLimit::MemoryLimit(std::uint64_t bytes)
{
    rlimit before{};
    const std::optional<std::uint64_t> used = is_possible() ? address_space() : std::nullopt;
    if (!used || getrlimit(RLIMIT_AS, &before) != 0)
        return;
    const std::uint64_t wanted =
        bytes < std::numeric_limits<std::uint64_t>::max() - *used ? *used + bytes : RLIM_INFINITY;
    rlimit limited = before;
    limited.rlim_cur = std::min<rlim_t>(before.rlim_cur, static_cast<rlim_t>(wanted));
    if (setrlimit(RLIMIT_AS, &limited) == 0)
        before_ = before;
}

MemoryLimit::~MemoryLimit()
{
    if (before_)
        setrlimit(RLIMIT_AS, &*before_);
}

bool MemoryLimit::is_possible() { return !kSanitized && address_space().has_value(); }

std::uint64_t default_memory_limit()
{
    const std::optional<std::uint64_t> pages = system_value(_SC_PHYS_PAGES);
    std::uint64_t memory = memory_of_control_groups();
    if (pages)
        memory = std::min(memory, *pages * page_size());
    return default_memory_limit_of(memory);
}

std::uint64_t default_memory_limit_of(std::uint64_t memory) { return std::min(memory / 2, kMostByDefault); }

std::optional<std::uint64_t> address_space_of_statm(std::string_view text, std::uint64_t page_size)
{
    const std::optional<std::uint64_t> pages = leading_number(text);
    return pages ? std::optional(*pages * page_size) : std::nullopt;
}

std::optional<std::string_view> control_group_of(std::string_view text)
{
    constexpr std::string_view kVersion2 = "0::";
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (line.starts_with(kVersion2))
            return line.substr(kVersion2.size());
        text.remove_prefix(std::min(text.size(), line.size() + 1));
    }
    return std::nullopt;
}

std::optional<std::uint64_t> memory_max_of(std::string_view text) { return leading_number(text); }

} // namespace vnt::host
