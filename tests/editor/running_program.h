// A program that runs beside a test, and whose standard output the test reads line by line.
//
// Owner:  it is killed with the object, or with the test.
// Errors: what does not happen within kLimit throws std::runtime_error, which fails the test.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

namespace editor_test {

constexpr std::chrono::seconds kLimit(30);

class RunningProgram {
public:
    // Without a / in its name the program is looked for in PATH.
    // environment: NAME=value, instead of or besides the test's own; NAME alone takes it away.
    RunningProgram(const std::vector<std::string>& arguments,
                   const std::vector<std::string>& environment = {});
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    ~RunningProgram() { end(); }

    pid_t pid() const { return pid_; }

    // The next line of its output, without its end.
    std::string line();

    void stop() const;  // as a program that is stuck
    void go_on() const; // after stop()
    void end();         // at once

private:
    pid_t pid_ = 0;
    int output_ = -1;
    std::string unread_;
};

} // namespace editor_test
