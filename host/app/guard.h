// What stands around the plug-in while it runs: a time limit, a look at its connection, a limit of memory, words
// for a crash, and a line of progress.
//
// When:   one at a time, made before the plug-in's first message. While it stands nothing in the process opens a
//         descriptor: the plug-in's link closes descriptor 0, and its own one twice.
// Errors: what ends the plug-in's run ends the process, with a line on standard error and the exit status; no file
//         has been written by then.
#pragma once

#include "host/kit/memory_limit.h"
#include "host/kit/watchdog.h"
#include "tools/program/problem.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vnt::host {

struct GuardSetup {
    std::optional<std::chrono::steady_clock::time_point> deadline;
    bool link = false; // whether the plug-in will connect to the sketch application
    std::optional<std::uint64_t> memory;
    std::string unharmed; // a clause: "out.svg is as it was"
    // The paths so far, asked on another thread.
    std::function<std::size_t()> path_count;
};

class Guard {
public:
    static program::Result<std::unique_ptr<Guard>> stand(GuardSetup setup);

    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    ~Guard();

private:
    explicit Guard(GuardSetup setup);
    void end(Ended ended) const;
    void show_progress(std::chrono::nanoseconds elapsed) const;

    GuardSetup setup_;
    bool on_terminal_;
    std::string time_up_;
    std::string closed_;
    std::unique_ptr<Watchdog> watchdog_;
    std::optional<MemoryLimit> limit_;
};

// The time limit of a whole command: ends the process with a line on standard error, wherever it is. One at a time.
class Deadline {
public:
    Deadline(std::optional<std::chrono::nanoseconds> after, const std::string& unharmed);
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    ~Deadline();
};

// From here on the command is past being stopped: its result is about to take the place of the old file.
void disarm_deadline();

// Takes the line of progress off the terminal, before something else is written there.
void clear_progress();

// Leads descriptor 0 to /dev/null, and 1 and 2 where they are closed.
void park_descriptors();

} // namespace vnt::host
