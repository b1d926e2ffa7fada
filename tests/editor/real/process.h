// A program of a desktop, started by a test and watched by it.
//
// Owner:  it is killed with the object, and also when the test itself is killed.
// Errors: what does not happen in time throws std::runtime_error, which fails the test.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace real_editor_test {

// Far beyond what anything here takes on a machine that is busy with other things: a hang is a failure.
constexpr std::chrono::seconds kLimit(60);

// Looks again and again until something is so. what: how the failure calls it.
void wait_until(const std::string& what, const std::function<bool()>& is_so,
                std::chrono::seconds limit = kLimit);

class Process {
public:
    // words:       the program, looked for in the test's own PATH, and its arguments.
    // environment: NAME=value, besides the test's own or instead of it; NAME alone takes it away.
    // output:      the file of its standard output; errors: where its standard error is added.
    Process(const std::vector<std::string>& words, const std::vector<std::string>& environment,
            std::string output, std::string errors);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    pid_t pid() const { return pid_; }
    bool has_ended();

    // Waits for it. Its exit status, minus the signal's number when one ended it.
    int end(std::chrono::seconds limit = kLimit);

    void send_signal(int number) const;

    // What it has printed until now.
    std::string output() const;

private:
    std::string name_;
    std::string output_;
    pid_t pid_ = -1;
    bool has_ended_ = false;
    int status_ = 0;
};

} // namespace real_editor_test
