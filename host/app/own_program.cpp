#include "host/app/own_program.h"

#include "tools/program/whole_file.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

extern char** environ;

namespace vnt::host {
namespace {

// What a new process does before its program begins.
class SpawnPlan {
public:
    SpawnPlan()
    {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
        open(STDIN_FILENO, "/dev/null", O_RDONLY);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }

    void open(int descriptor, const char* file, int flags)
    {
        posix_spawn_file_actions_addopen(&actions_, descriptor, file, flags, 0600);
    }

    // Onto itself: that takes its close-on-exec flag away.
    void keep(int descriptor) { posix_spawn_file_actions_adddup2(&actions_, descriptor, descriptor); }

    void in_own_session() { posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID); }

    Result<pid_t> start(std::vector<std::string> words) const
    {
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        pid_t process = -1;
        const int error =
            posix_spawn(&process, words[0].c_str(), &actions_, &attributes_, arguments.data(), environ);
        if (error != 0)
            return Problem{"cannot start " + words[0] + " again: " + std::generic_category().message(error) +
                           "; close other programs and try again"};
        return process;
    }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

std::vector<std::string> with_program(const std::vector<std::string>& arguments)
{
    std::vector<std::string> words{own_program()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

int wait_for(pid_t process)
{
    constexpr int kSignalBase = 128;
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
}

} // namespace

std::string own_program()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

Result<Finished> run_own_program(const std::vector<std::string>& arguments, const std::string& messages,
                                 int kept)
{
    SpawnPlan plan;
    plan.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
    plan.open(STDERR_FILENO, messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
    plan.keep(kept);
    const Result<pid_t> process = plan.start(with_program(arguments));
    if (const auto* problem = std::get_if<Problem>(&process))
        return *problem;
    Finished finished{wait_for(std::get<pid_t>(process)), {}};
    if (program::read_whole_file(messages, finished.said))
        finished.said += "(its messages could not be read)\n";
    return finished;
}

Result<pid_t> start_own_program(const std::vector<std::string>& arguments, int kept)
{
    SpawnPlan plan;
    plan.open(STDOUT_FILENO, "/dev/null", O_WRONLY);
    plan.open(STDERR_FILENO, "/dev/null", O_WRONLY);
    plan.keep(kept);
    plan.in_own_session();
    return plan.start(with_program(arguments));
}

} // namespace vnt::host
