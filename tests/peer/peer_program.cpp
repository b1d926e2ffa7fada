#include "tests/peer/peer_program.h"

#include "tests/support/program_start.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <stdexcept>

namespace peer_test {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

[[noreturn]] void fail(const std::string& what) { throw std::runtime_error(what); }

int limit_ms() { return static_cast<int>(std::chrono::milliseconds(kLimit).count()); }

struct Pipe {
    int ends[2];

    Pipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0)
            fail("no pipe");
    }
};

void close_once(int& descriptor)
{
    if (descriptor >= 0)
        close(descriptor);
    descriptor = -1;
}

// Reads once into text; closes the descriptor at its end.
void read_into(int& descriptor, std::string& text)
{
    char buffer[kBufferSize];
    const ssize_t got = read(descriptor, buffer, sizeof buffer);
    if (got > 0)
        text.append(buffer, static_cast<std::size_t>(got));
    else
        close_once(descriptor);
}

void wait_for_input(int socket)
{
    pollfd watched{socket, POLLIN, 0};
    if (poll(&watched, 1, limit_ms()) != 1)
        fail("nothing came from the program in time");
}

} // namespace

Program::Program(std::vector<std::string> arguments, Output output)
{
    arguments.insert(arguments.begin(), VNT_PEER_PROGRAM);
    const std::vector<char*> argv = support::pointers_to(arguments);
    Pipe out;
    Pipe err;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out.ends[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err.ends[1], 2);
    output_ = out.ends[0];
    errors_ = err.ends[0];
    if (output == Output::nobody_reads)
        close_once(output_);
    const int error = posix_spawn(&process_, VNT_PEER_PROGRAM, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(out.ends[1]);
    close(err.ends[1]);
    if (error != 0)
        fail("cannot start " VNT_PEER_PROGRAM);
}

Program::~Program()
{
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    close_once(output_);
    close_once(errors_);
}

unsigned int Program::port()
{
    const std::string start = "listening on 127.0.0.1:";
    while (output_text_.find('\n') == std::string::npos && output_ >= 0) {
        if (!read_some(limit_ms()))
            fail("the program was not ready in time");
    }
    if (output_text_.compare(0, start.size(), start) != 0)
        fail("the program said \"" + output_text_ + errors_text_ + "\" instead of being ready");
    return static_cast<unsigned int>(std::stoul(output_text_.substr(start.size())));
}

void Program::send_signal(int number) const { kill(process_, number); }

ProgramEnd Program::end()
{
    while (output_ >= 0 || errors_ >= 0) {
        if (!read_some(limit_ms()))
            fail("the program did not end in time; it said \"" + output_text_ + errors_text_ + "\"");
    }
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status), output_text_, errors_text_};
}

// False when nothing came in time.
bool Program::read_some(int timeout_ms)
{
    pollfd watched[] = {
        {output_, POLLIN, 0},
        {errors_, POLLIN, 0}
    };
    if (poll(watched, 2, timeout_ms) < 1)
        return false;
    if (watched[0].revents != 0)
        read_into(output_, output_text_);
    if (watched[1].revents != 0)
        read_into(errors_, errors_text_);
    return true;
}

RawClient::RawClient(unsigned int port, unsigned int address)
    : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    constexpr in_addr_t kLoopbackNet = 127U << 24U;
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(static_cast<std::uint16_t>(port));
    peer.sin_addr.s_addr = htonl(kLoopbackNet | address);
    if (connect(socket_, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) != 0)
        close();
}

bool RawClient::send(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

void RawClient::finish_sending() const { shutdown(socket_, SHUT_WR); }

Received RawClient::read_to_end() const
{
    Received received;
    std::vector<char> buffer(kBufferSize);
    for (;;) {
        wait_for_input(socket_);
        const ssize_t got = recv(socket_, buffer.data(), buffer.size(), 0);
        if (got > 0) {
            received.bytes.append(buffer.data(), static_cast<std::size_t>(got));
            ++received.reads;
            continue;
        }
        received.end = got == 0 ? StreamEnd::closed : StreamEnd::reset;
        return received;
    }
}

std::string RawClient::read(std::size_t size) const
{
    std::string bytes(size, '\0');
    std::size_t taken = 0;
    while (taken < size) {
        wait_for_input(socket_);
        const ssize_t got = recv(socket_, bytes.data() + taken, size - taken, 0);
        if (got <= 0)
            break;
        taken += static_cast<std::size_t>(got);
    }
    bytes.resize(taken);
    return bytes;
}

void RawClient::close() { close_once(socket_); }

void RawClient::reset()
{
    const linger at_once{1, 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    close();
}

} // namespace peer_test
