#include "host/editor/document_mark.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <ctime>

namespace vnt::host {
namespace {

// How many ids it takes to tell one document from another. Within a process the editor gives no number twice, so
// that a few will do. In another one it begins anew, and a few objects get the same numbers now and then.
constexpr std::size_t kEnoughInOneProcess = 3;
constexpr std::size_t kEnough = 8;

// Shares of the ids at the start that are still there. Who goes on drawing adds to them; who tidies up takes some
// away, and rarely most.
constexpr double kNearlyAll = 0.9;
constexpr double kMany = 0.5;
constexpr double kHardlyAny = 0.1;

// File systems round the times of their files; the coarsest of those in use to two seconds.
constexpr std::int64_t kFileTimeSlack = 2'000'000'000;

std::int64_t nanoseconds_of(const timespec& time)
{
    constexpr std::int64_t kPerSecond = 1'000'000'000;
    return std::int64_t{time.tv_sec} * kPerSecond + time.tv_nsec;
}

bool is_number(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Whether the editor gave the id itself, to a document that has none for its outermost element.
bool is_numbered_root(std::string_view id)
{
    constexpr std::string_view kStem = "svg";
    return id.size() > kStem.size() && id.substr(0, kStem.size()) == kStem &&
           is_number(id.substr(kStem.size()));
}

struct Evidence {
    bool one_process;
    bool enough; // there are ids enough to go by
    double share;
    bool was_written; // the file, since the start
};

Evidence evidence_of(const DocumentMark& start, const DocumentMark& now)
{
    Evidence evidence{};
    evidence.one_process = !start.editor.empty() && start.editor == now.editor;
    evidence.enough = start.ids.size() >= (evidence.one_process ? kEnoughInOneProcess : kEnough);
    const auto shared = std::count_if(start.ids.begin(), start.ids.end(), [&](std::uint64_t id) {
        return std::binary_search(now.ids.begin(), now.ids.end(), id);
    });
    if (!start.ids.empty())
        evidence.share = static_cast<double>(shared) / static_cast<double>(start.ids.size());
    evidence.was_written = now.file_time + kFileTimeSlack >= start.taken_at;
    return evidence;
}

Sameness compare_names(const Evidence& evidence)
{
    const bool has_them = evidence.enough && evidence.share >= kNearlyAll;
    if (has_them && evidence.was_written)
        return Sameness::same;
    return has_them || (!evidence.enough && evidence.was_written) ? Sameness::doubtful : Sameness::other;
}

Sameness compare_ids(const Evidence& evidence)
{
    if (evidence.share >= kMany)
        return Sameness::same;
    return evidence.one_process || evidence.share >= kHardlyAny ? Sameness::doubtful : Sameness::other;
}

} // namespace

std::uint64_t hash_of(std::string_view id)
{
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : id) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3;
    }
    return hash;
}

bool is_distinctive(std::string_view id)
{
    // The last one is what paths that we draw are called.
    constexpr std::array<std::string_view, 11> kStems = {
        "svg",  "SVGRoot", "namedview", "base",  "defs",      "metadata",
        "grid", "page",    "guide",     "layer", "vant-path",
    };
    return !id.empty() && std::none_of(kStems.begin(), kStems.end(), [&](std::string_view stem) {
        return id.substr(0, stem.size()) == stem && is_number(id.substr(stem.size()));
    });
}

DocumentMark mark_of(const SvgDocument& document, const std::string& path, const std::string& editor)
{
    DocumentMark mark;
    mark.path = path;
    mark.editor = editor;
    mark.root_id = document.root_id();
    for (const std::string& id : document.ids()) {
        if (id != mark.root_id && is_distinctive(id))
            mark.ids.push_back(hash_of(id));
    }
    std::sort(mark.ids.begin(), mark.ids.end());
    mark.ids.erase(std::unique(mark.ids.begin(), mark.ids.end()), mark.ids.end());
    struct stat file {};
    if (!path.empty() && stat(path.c_str(), &file) == 0)
        mark.file_time = nanoseconds_of(file.st_mtim);
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    mark.taken_at = nanoseconds_of(now);
    return mark;
}

void keep_some_ids(DocumentMark& mark, std::size_t most)
{
    if (mark.ids.size() > most)
        mark.ids.resize(most);
}

Sameness compare(const DocumentMark& start, const DocumentMark& now)
{
    if (!start.path.empty() && start.path == now.path)
        return Sameness::same;
    if (start.root_id != now.root_id)
        return Sameness::other;
    const Evidence evidence = evidence_of(start, now);
    if (!start.path.empty())
        return now.path.empty() ? Sameness::other : compare_names(evidence);
    if (!now.path.empty() && !evidence.was_written)
        return Sameness::other;
    if (evidence.enough)
        return compare_ids(evidence);
    const bool is_proof = evidence.one_process && now.path.empty() && is_numbered_root(start.root_id);
    return is_proof ? Sameness::same : Sameness::doubtful;
}

} // namespace vnt::host
