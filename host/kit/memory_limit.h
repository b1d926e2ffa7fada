// A bound on the address space of this process while the plug-in runs: an answer that would take all of the
// machine's memory ends in std::bad_alloc, which the plug-in makes an alert of, and not in a frozen desktop.
//
// Units:  bytes.
// When:   made before the plug-in runs, after all threads were started: each takes address space for its stack.
//         The making reads a file of /proc; the end opens nothing.
// Errors: where there can be no limit, there is none: is_in_force tells. A stack that would grow beyond the limit
//         ends the process as an overflow does, so a limit has to leave room for it (the stack's own limit is
//         usually 8 MiB).
#pragma once

#include <sys/resource.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace vnt::host {

class MemoryLimit {
public:
    // Lets the process take this much more than it has now. A limit that is lower already stays.
    explicit MemoryLimit(std::uint64_t bytes);
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;
    ~MemoryLimit(); // sets the limit back to what it was

    // Not in a build for a sanitizer (address, thread): it reserves far more address space than there is memory,
    // and ends the process where an allocation fails. Not where /proc is missing.
    static bool is_possible();

    bool is_in_force() const { return before_.has_value(); }

private:
    std::optional<rlimit> before_; // none: nothing was changed
};

// Half of the memory that this process may have, at most 4 GiB: of the machine's, or of what its control group
// (version 2) allows it.
std::uint64_t default_memory_limit();

// The same where the process may have that much memory.
std::uint64_t default_memory_limit_of(std::uint64_t memory);

// The address space in use, from the text of /proc/self/statm.
std::optional<std::uint64_t> address_space_of_statm(std::string_view text, std::uint64_t page_size);

// The path of the process in the control groups of version 2, from the text of /proc/self/cgroup; none: in none.
std::optional<std::string_view> control_group_of(std::string_view text);

// The text of a memory.max; none: no limit.
std::optional<std::uint64_t> memory_max_of(std::string_view text);

} // namespace vnt::host
