#include "tests/editor/real/process.h"

#include "tests/support/program_start.h"
#include "tests/support/temporary_folder.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>
#include <thread>

namespace real_editor_test {

void wait_until(const std::string& what, const std::function<bool()>& is_so, std::chrono::seconds limit)
{
    constexpr std::chrono::milliseconds kBetween(20);
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!is_so()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("in vain waited for " + what);
        std::this_thread::sleep_for(kBetween);
    }
}

Process::Process(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                 std::string output, std::string errors)
    : name_(words.front()), output_(std::move(output))
{
    // The kernel ends it when this thread ends, in whatever way.
    std::vector<std::string> all{"setpriv", "--pdeathsig", "KILL", support::find_program(words.front())};
    if (all.back().empty())
        throw std::runtime_error(words.front() + " is not installed");
    all.insert(all.end(), words.begin() + 1, words.end());
    std::vector<std::string> entries = support::changed_environment(environment);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output_.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                     0600);
    const int failure = posix_spawnp(&pid_, all.front().c_str(), &files, nullptr,
                                     support::pointers_to(all).data(), support::pointers_to(entries).data());
    posix_spawn_file_actions_destroy(&files);
    if (failure != 0)
        throw std::runtime_error("cannot start " + name_ + ": " + std::strerror(failure));
}

Process::~Process()
{
    if (has_ended())
        return;
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
}

bool Process::has_ended()
{
    int status = 0;
    if (!has_ended_ && waitpid(pid_, &status, WNOHANG) == pid_) {
        has_ended_ = true;
        status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    return has_ended_;
}

int Process::end(std::chrono::seconds limit)
{
    wait_until(
        "the end of " + name_, [this] { return has_ended(); }, limit);
    return status_;
}

void Process::send_signal(int number) const { kill(pid_, number); }

std::string Process::output() const { return support::content_of(output_); }

} // namespace real_editor_test
