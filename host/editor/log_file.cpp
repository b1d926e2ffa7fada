#include "host/editor/log_file.h"

#include "host/editor/descriptor.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cstdio>
#include <ctime>

namespace vnt::host {
namespace {

Descriptor open_log(const std::string& path)
{
    constexpr mode_t kForThisUser = 0600;
    return open_file(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK, kForThisUser);
}

std::string begin_of_entry()
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    std::array<char, 40> date{};
    std::array<char, 16> zone{};
    std::strftime(date.data(), date.size(), "%Y-%m-%d %H:%M:%S", &local);
    std::strftime(zone.data(), zone.size(), "%z", &local);
    std::array<char, 8> fraction{};
    std::snprintf(fraction.data(), fraction.size(), ".%03d",
                  static_cast<int>(now.tv_nsec / 1'000'000) % 1000);
    return std::string(date.data()) + fraction.data() + " " + zone.data() + " [" + std::to_string(getpid()) +
           "] ";
}

std::string entry_of(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    std::string entry = begin_of_entry();
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            entry += "\n    ";
        } else if (c != '\t' && (byte < 0x20 || byte == 0x7F)) {
            entry.append("\\x").append({kDigits[byte / 16], kDigits[byte % 16]});
        } else {
            entry += c;
        }
    }
    entry += '\n';
    return entry;
}

// Whether path still leads to the open file: another process may have moved that.
bool leads_to(const std::string& path, const struct stat& opened)
{
    struct stat there {};
    return stat(path.c_str(), &there) == 0 && there.st_dev == opened.st_dev && there.st_ino == opened.st_ino;
}

// The log, open, with room for size bytes. Who moves it has its lock, so that it is moved once; whoever has it open
// meanwhile writes to the moved one, where the entry is not lost. Nobody waits for the lock: a process that was
// stopped with it must not stop others.
Descriptor open_with_room(const std::string& path, std::uint64_t most_bytes, std::uint64_t size)
{
    Descriptor file = open_log(path);
    struct stat opened {};
    if (!file || fstat(file.get(), &opened) != 0 || !S_ISREG(opened.st_mode) || opened.st_size == 0 ||
        static_cast<std::uint64_t>(opened.st_size) + size <= most_bytes)
        return file;
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return file;
    if (leads_to(path, opened) && std::rename(path.c_str(), (path + ".1").c_str()) != 0)
        return file; // better too long than lost
    return open_log(path);
}

} // namespace

LogFile::LogFile(std::string path, std::uint64_t most_bytes) : path_(std::move(path)), most_bytes_(most_bytes)
{
}

void LogFile::add(std::string_view text) const noexcept
{
    try {
        const std::string entry = entry_of(text);
        const Descriptor file = open_with_room(path_, most_bytes_, entry.size());
        if (file && write(file.get(), entry.data(), entry.size()) < 0)
            return;
    } catch (...) { // no memory for a line of the log: nothing hangs on it
    }
}

int LogFile::open() const noexcept { return open_log(path_).release(); }

} // namespace vnt::host
