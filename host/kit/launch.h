// Starts the sketch application where none listens yet, and waits until it does.
//
// Owner:  the application is in a session of its own (no terminal's Ctrl-C reaches it) and stays running when this
//         process ends, also when the wait failed. One that ends while this process runs on leaves an entry
//         in the process table and nothing else; the system takes that away when this process has ended.
//         So a program that does not end soon after should not use this.
// When:   before the plug-in runs: it opens descriptors. All that the application gets of ours is the environment,
//         the working folder and standard error, where its standard output goes as well, so that ours stays
//         clean; its standard input is /dev/null.
// Errors: a sentence, in the form of result.h.
#pragma once

#include "host/kit/result.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace vnt::host {

enum class Launched {
    listened_before, // nothing was started
    listening,
    time_up, // nobody listened by the deadline; the application may still be on its way
};

// Runs command with /bin/sh and waits until somebody listens on 127.0.0.1:port.
//
// deadline: none waits for as long as the command runs.
// A command that ends with status 0 may have sent its program to the background: then ten seconds more are waited.
// Any other end before anybody listens is a problem, as is a system whose table of sockets cannot be read, where
// nothing is started.
Result<Launched> launch_and_wait(const std::string& command, std::uint16_t port,
                                 std::optional<std::chrono::steady_clock::time_point> deadline);

} // namespace vnt::host
