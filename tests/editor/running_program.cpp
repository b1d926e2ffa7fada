#include "tests/editor/running_program.h"

#include "tests/support/program_start.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace editor_test {
RunningProgram::RunningProgram(const std::vector<std::string>& arguments,
                               const std::vector<std::string>& environment)
{
    int output[2];
    if (pipe2(output, O_CLOEXEC) != 0)
        throw std::runtime_error("pipe failed");
    std::vector<std::string> argument_texts = arguments;
    std::vector<std::string> environment_texts = support::changed_environment(environment);
    const std::vector<char*> argument_list = support::pointers_to(argument_texts);
    const std::vector<char*> environment_list = support::pointers_to(environment_texts);
    const pid_t test = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        // Goes with the test, also when that is killed.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int nothing = open("/dev/null", O_RDONLY);
        if (getppid() == test && dup2(nothing, STDIN_FILENO) >= 0 && dup2(output[1], STDOUT_FILENO) >= 0)
            execvpe(argument_list.front(), argument_list.data(), environment_list.data());
        _exit(127);
    }
    close(output[1]);
    output_ = output[0];
    if (pid_ < 0) {
        close(output_);
        throw std::runtime_error("fork failed");
    }
}

std::string RunningProgram::line()
{
    const auto end = std::chrono::steady_clock::now() + kLimit;
    for (;;) {
        if (const std::size_t size = unread_.find('\n'); size != unread_.npos) {
            std::string line = unread_.substr(0, size);
            unread_.erase(0, size + 1);
            return line;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now())
                .count();
        pollfd watched{output_, POLLIN, 0};
        if (left <= 0 || poll(&watched, 1, static_cast<int>(left)) != 1)
            throw std::runtime_error("a program said nothing in time");
        char bytes[4096];
        const ssize_t size = read(output_, bytes, sizeof bytes);
        if (size <= 0)
            throw std::runtime_error("a program ended, having said: " + unread_);
        unread_.append(bytes, static_cast<std::size_t>(size));
    }
}

void RunningProgram::stop() const
{
    kill(pid_, SIGSTOP);
    int status = 0;
    waitpid(pid_, &status, WUNTRACED);
}

void RunningProgram::go_on() const { kill(pid_, SIGCONT); }

void RunningProgram::end()
{
    if (pid_ == 0)
        return;
    kill(pid_, SIGKILL);
    int status = 0;
    waitpid(pid_, &status, 0);
    close(output_);
    pid_ = 0;
}

} // namespace editor_test
