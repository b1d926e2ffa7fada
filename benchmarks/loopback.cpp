#include "benchmarks/loopback.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

namespace bench {
namespace {

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

int listen_on_loopback(unsigned int& port)
{
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (listener < 0 || bind(listener, generic, size) != 0 || listen(listener, 1) != 0 ||
        getsockname(listener, generic, &size) != 0)
        fail("cannot listen on the loopback interface");
    port = ntohs(address.sin_port);
    return listener;
}

void serve_one(int listener, std::string_view bytes)
{
    const int socket = accept(listener, nullptr, nullptr);
    char asked = 0;
    while (asked != '\n' && recv(socket, &asked, 1, 0) > 0) {
    }
    while (!bytes.empty()) {
        const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0)
            break;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    close(socket);
}

} // namespace

SendingPeer::SendingPeer(std::string_view bytes)
{
    const int listener = listen_on_loopback(port_);
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ < 0)
        fail("cannot start the sending process");
    if (process_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent)
            std::_Exit(1);
        for (const std::string own(bytes);;)
            serve_one(listener, own);
    }
    close(listener);
}

SendingPeer::~SendingPeer()
{
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::string received_until_close(int socket)
{
    std::string received;
    char buffer[4096];
    for (ssize_t got; (got = recv(socket, buffer, sizeof buffer, 0)) > 0;)
        received.append(buffer, static_cast<std::size_t>(got));
    return received;
}

} // namespace bench
