#include "tests/host_app/host_program.h"

#include "tests/support/descriptors.h"
#include "tests/support/program_start.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iterator>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace host_app_test {
namespace {

using support::Descriptor;
using Clock = std::chrono::steady_clock;

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error(what); }

// One of a program's streams: what the program gets, and where its text can be read.
struct Ends {
    Descriptor program;
    Descriptor reader;
};

Ends open_pipe()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        fail("no pipe");
    return {Descriptor(ends[1]), Descriptor(ends[0])};
}

Ends open_terminal()
{
    Descriptor reader(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (reader.get() < 0 || grantpt(reader.get()) != 0 || unlockpt(reader.get()) != 0)
        fail("no terminal");
    const char* const name = ptsname(reader.get());
    Descriptor program(name == nullptr ? -1 : open(name, O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (program.get() < 0)
        fail("no terminal");
    return {std::move(program), std::move(reader)};
}

Ends open_stream(Stream stream)
{
    switch (stream) {
    case Stream::piped: return open_pipe();
    case Stream::terminal: return open_terminal();
    case Stream::closed: break;
    }
    return {Descriptor(), Descriptor()};
}

pid_t start(std::vector<std::string> arguments, const Surroundings& surroundings, int output, int errors)
{
    arguments.insert(arguments.begin(), VNT_HOST_PROGRAM);
    std::vector<std::string> environment = support::changed_environment(surroundings.environment);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (surroundings.has_input)
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    else
        posix_spawn_file_actions_addclose(&actions, 0);
    for (const auto& [number, stream] : {std::pair(1, output), std::pair(2, errors)}) {
        if (stream < 0)
            posix_spawn_file_actions_addclose(&actions, number);
        else
            posix_spawn_file_actions_adddup2(&actions, stream, number);
    }
    pid_t process = -1;
    const int error =
        posix_spawn(&process, VNT_HOST_PROGRAM, &actions, nullptr, support::pointers_to(arguments).data(),
                    support::pointers_to(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        fail("cannot start " VNT_HOST_PROGRAM);
    return process;
}

// Reads once; closes the descriptor at its end.
void read_into(Descriptor& descriptor, std::string& text)
{
    char buffer[4096];
    const ssize_t got = read(descriptor.get(), buffer, sizeof buffer);
    if (got > 0)
        text.append(buffer, static_cast<std::size_t>(got));
    else
        descriptor.reset(-1);
}

// False when the time is up.
bool read_to_end(Descriptor& output, Descriptor& errors, ProgramEnd& end)
{
    const Clock::time_point limit = Clock::now() + kLimit;
    while (output.get() >= 0 || errors.get() >= 0) {
        pollfd watched[] = {
            {output.get(), POLLIN, 0},
            {errors.get(), POLLIN, 0}
        };
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(limit - Clock::now());
        if (left.count() <= 0 || poll(watched, 2, static_cast<int>(left.count())) < 1)
            return false;
        if (watched[0].revents != 0)
            read_into(output, end.output);
        if (watched[1].revents != 0)
            read_into(errors, end.errors);
    }
    return true;
}

} // namespace

void PrintTo(const ProgramEnd& end, std::ostream* out)
{
    *out << "status " << end.status << "\noutput: " << end.output << "\nerrors: " << end.errors;
}

ProgramEnd run_host(std::vector<std::string> arguments, const Surroundings& surroundings)
{
    Ends output = open_stream(surroundings.output);
    Ends errors = open_stream(surroundings.errors);
    const pid_t process =
        start(std::move(arguments), surroundings, output.program.get(), errors.program.get());
    output.program.reset(-1);
    errors.program.reset(-1);
    ProgramEnd end;
    const bool in_time = read_to_end(output.reader, errors.reader, end);
    if (!in_time)
        kill(process, SIGKILL);
    int status = 0;
    waitpid(process, &status, 0);
    if (!in_time)
        fail("vant-host did not end in time; it said \"" + end.output + end.errors + "\"");
    end.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return end;
}

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
    return text;
}

std::vector<std::string> words(const std::string& text)
{
    std::istringstream rest(text);
    return {std::istream_iterator<std::string>(rest), {}};
}

Workplace::Workplace()
{
    file("small.svg", kSmallArtwork);
    file("line.xml", kLineAnswer);
}

ProgramEnd Workplace::run(std::vector<std::string> arguments, Surroundings surroundings) const
{
    const std::string folder = path("x").substr(0, path("x").size() - 2);
    for (std::string& argument : arguments)
        argument = replaced(argument, "DIR", folder);
    for (std::string& variable : surroundings.environment)
        variable = replaced(variable, "DIR", folder);
    ProgramEnd end = run_host(std::move(arguments), surroundings);
    end.output = replaced(end.output, folder, "DIR");
    end.errors = replaced(end.errors, folder, "DIR");
    return end;
}

ProgramEnd Workplace::run_small(const std::vector<std::string>& arguments, Surroundings surroundings) const
{
    std::vector<std::string> all = {"run", "DIR/small.svg", "-o", "DIR/out.svg"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return run(std::move(all), std::move(surroundings));
}

} // namespace host_app_test
