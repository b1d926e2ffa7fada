#include "host/kit/launch.h"

#include "host/kit/listening_port.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <thread>

extern char** environ;

namespace vnt::host {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLookEvery(20);
constexpr std::chrono::seconds kGraceOfADaemon(10);

// What posix_spawn is told: a session of its own, no signal blocked or ignored, and only the standard descriptors.
class Surroundings {
public:
    Surroundings()
    {
        sigset_t none;
        sigset_t all;
        sigemptyset(&none);
        sigfillset(&all);
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        posix_spawnattr_setflags(&attributes_,
                                 POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        posix_spawn_file_actions_init(&files_);
        posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&files_, STDERR_FILENO, STDOUT_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    ~Surroundings()
    {
        posix_spawn_file_actions_destroy(&files_);
        posix_spawnattr_destroy(&attributes_);
    }

    // 0, or the error's number.
    int spawn_shell(std::string command, pid_t& process) const
    {
        std::string shell = "/bin/sh";
        std::string option = "-c";
        char* const arguments[] = {shell.data(), option.data(), command.data(), nullptr};
        return posix_spawn(&process, shell.c_str(), &files_, &attributes_, arguments, environ);
    }

private:
    posix_spawnattr_t attributes_;
    posix_spawn_file_actions_t files_;
};

std::string place(std::uint16_t port) { return "127.0.0.1:" + std::to_string(port); }

Problem unknown_table(std::uint16_t port)
{
    return {
        "cannot tell whether a sketch application listens on " + place(port) +
        ": the system's table of sockets, /proc/net/tcp, cannot be read; start the application first, and "
        "launch nothing"};
}

Problem ended_early(const std::string& command, std::uint16_t port, const std::string& how)
{
    return {"cannot launch the sketch application: the command \"" + command + "\" " + how +
            ", and nothing listens on " + place(port) + "; try the command in a terminal"};
}

class Command {
public:
    explicit Command(pid_t process) : process_(process) {}

    // Where this process ignores the ends of its children, the system keeps no status: then it counts as 0.
    bool has_ended()
    {
        if (!ended_at_ && waitpid(process_, &status_, WNOHANG) != 0) {
            ended_at_ = Clock::now();
        }
        return ended_at_.has_value();
    }

    // After its end: how that happened, where it means that nothing will listen any more.
    std::optional<std::string> failure() const
    {
        if (WIFSIGNALED(status_))
            return "was ended by signal " + std::to_string(WTERMSIG(status_));
        if (WEXITSTATUS(status_) != 0)
            return "ended with status " + std::to_string(WEXITSTATUS(status_));
        if (Clock::now() - *ended_at_ >= kGraceOfADaemon)
            return "ended " + std::to_string(kGraceOfADaemon.count()) + " seconds ago";
        return std::nullopt;
    }

private:
    pid_t process_;
    int status_ = 0;
    std::optional<Clock::time_point> ended_at_;
};

} // namespace

Result<Launched> launch_and_wait(const std::string& command, std::uint16_t port,
                                 std::optional<Clock::time_point> deadline)
{
    const auto is_time_up = [&] { return deadline && Clock::now() >= *deadline; };
    switch (listening_on(port)) {
    case Listening::yes: return Launched::listened_before;
    case Listening::unknown: return unknown_table(port);
    case Listening::no: break;
    }
    if (is_time_up())
        return Launched::time_up;
    pid_t process = -1;
    if (const int error = Surroundings().spawn_shell(command, process); error != 0)
        return Problem{"cannot launch the sketch application: /bin/sh cannot be started (" +
                       std::generic_category().message(error) + "); start the application first"};
    Command running(process);
    for (;;) {
        // In this order: what it began to listen with before its end is still seen.
        const bool has_ended = running.has_ended();
        const Listening listening = listening_on(port);
        if (listening == Listening::yes)
            return Launched::listening;
        if (listening == Listening::unknown)
            return unknown_table(port);
        if (has_ended) {
            if (const std::optional<std::string> how = running.failure())
                return ended_early(command, port, *how);
        }
        if (is_time_up())
            return Launched::time_up;
        const Clock::time_point next = Clock::now() + kLookEvery;
        std::this_thread::sleep_until(deadline ? std::min(next, *deadline) : next);
    }
}

} // namespace vnt::host
