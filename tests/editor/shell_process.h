// A shell that runs a script in a process of its own, with descriptors of our choice.
#pragma once

#include "tests/support/descriptors.h"
#include "tests/support/program_start.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace editor_test {

struct Pipe {
    support::Descriptor reading;
    support::Descriptor writing;

    Pipe()
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe failed");
        reading.reset(ends[0]);
        writing.reset(ends[1]);
    }

    // Waits for a line of the other end; empty when that closes instead.
    std::string line() const
    {
        std::string text;
        char c = 0;
        while (read(reading.get(), &c, 1) == 1 && c != '\n')
            text += c;
        return text;
    }
};

class ShellProcess {
public:
    // input, output: what its standard descriptors are. Descriptors that closing on execution is not set for go along.
    // own_group:     whether it is in a process group of its own, as a shell with job control puts it.
    ShellProcess(const std::string& script, int input, int output, std::vector<std::string> words = {"sh"},
                 bool own_group = false)
    {
        std::vector<std::string> all{"/bin/sh", "-c", script};
        all.insert(all.end(), words.begin(), words.end());
        const std::vector<char*> arguments = support::pointers_to(all);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_adddup2(&files, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&files, output, STDOUT_FILENO);
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setflags(&attributes, own_group ? POSIX_SPAWN_SETPGROUP : 0);
        const int error = posix_spawn(&pid_, "/bin/sh", &files, &attributes, arguments.data(), environ);
        posix_spawnattr_destroy(&attributes);
        posix_spawn_file_actions_destroy(&files);
        if (error != 0)
            throw std::runtime_error("/bin/sh cannot be started");
    }
    ShellProcess(const ShellProcess&) = delete;
    ShellProcess& operator=(const ShellProcess&) = delete;
    ~ShellProcess() { end(); }

    pid_t pid() const { return pid_; }

    // Ends it, and waits until that has happened; it stays in the process table.
    void end_unnoticed() const
    {
        kill(pid_, SIGKILL);
        siginfo_t ended;
        waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOWAIT);
    }

    void end()
    {
        if (pid_ <= 0)
            return;
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = 0;
    }

private:
    pid_t pid_ = 0;
};

} // namespace editor_test
