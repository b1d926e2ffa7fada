// The log: a line for each thing that somebody may look for later.
//
// Shapes: "2026-11-03 14:05:09.123 +0100 [4711] text": local time, its distance from UTC, the process. Further lines
//         of a text begin with four blanks; other control characters are written as \x1B.
// Errors: none; a log that cannot be written is done without.
// When:   not while a plug-in runs in this process: it opens a descriptor for each entry.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vnt::host {

class LogFile {
public:
    static constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 20;

    // most_bytes: an entry that would make the file longer begins a new one; the old one gets .1 behind its name, in
    //             place of the one before. Several processes may write, and one of them moves it.
    explicit LogFile(std::string path, std::uint64_t most_bytes = kMostBytes);

    // Writes an entry at once, with one call.
    void add(std::string_view text) const noexcept;

    // A descriptor of the file that appends, for standard error of a process without a terminal; -1 when it cannot be
    // opened. It is the caller's, and closed when another program is executed. It stays with a file that is moved.
    int open() const noexcept;

    const std::string& path() const { return path_; }

private:
    std::string path_;
    std::uint64_t most_bytes_;
};

} // namespace vnt::host
