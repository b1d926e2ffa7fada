// Runs what may end a process, or never end, in a process of its own.
#pragma once

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace support {

struct ChildEnd {
    bool ended = false; // within the time limit; else it was killed
    int status = 0; // its exit status when it ended by itself, minus the signal's number when one ended it
};

// Calls body in a forked child, whose exit status is what body returns.
template <class Body>
ChildEnd run_in_child(Body body, int limit_ms)
{
    int alive[2]; // the child's end of it closes when the child ends
    if (pipe(alive) != 0)
        throw std::runtime_error("pipe failed");
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("fork failed");
    if (child == 0) {
        close(alive[0]);
        _exit(body());
    }
    close(alive[1]);
    pollfd watched{alive[0], POLLIN, 0};
    ChildEnd end;
    end.ended = poll(&watched, 1, limit_ms) == 1;
    close(alive[0]);
    if (!end.ended)
        kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    end.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return end;
}

} // namespace support
