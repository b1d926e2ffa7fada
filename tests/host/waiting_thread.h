// What threads do that have a connection to a sketch application, other processes that take its part or the
// processor's time, and waiting for what must come.
//
// Errors: what has not come within kLimit throws std::runtime_error, which fails the test.
#pragma once

#include "tests/support/scripted_peer.h"

#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/select.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace host_test {

constexpr std::chrono::seconds kLimit(30);

inline int limit_ms() { return static_cast<int>(std::chrono::milliseconds(kLimit).count()); }

inline support::Descriptor connect_to(unsigned int port)
{
    support::Descriptor connection(socket(AF_INET, SOCK_STREAM, 0));
    const sockaddr_in address = support::loopback(port);
    if (connect(connection.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("no connection");
    return connection;
}

// Until the other end has closed, or reset, the connection.
inline void wait_for_close(int connection)
{
    pollfd polled{connection, POLLRDHUP, 0};
    if (poll(&polled, 1, limit_ms()) != 1)
        throw std::runtime_error("the peer did not close in time");
}

template <class IsSo>
void wait_until(IsSo is_so)
{
    const auto end = std::chrono::steady_clock::now() + kLimit;
    while (!is_so()) {
        if (std::chrono::steady_clock::now() > end)
            throw std::runtime_error("what was waited for did not come in time");
        poll(nullptr, 0, 1);
    }
}

inline void reset_at_close(int connection)
{
    const linger at_once{1, 0};
    setsockopt(connection, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
}

// Looks at the socket as the link does that waits for a line: once, and a pause where there is nothing.
inline void look_and_pause(int connection)
{
    char bytes[64];
    if (recv(connection, bytes, sizeof bytes, MSG_PEEK | MSG_DONTWAIT) <= 0) {
        timeval pause{0, 100};
        select(0, nullptr, nullptr, nullptr, &pause);
    }
}

// Some thousands of steps, with memory that comes and goes, as in reading a large answer.
inline double compute_a_little()
{
    std::vector<std::unique_ptr<std::string>> pieces;
    double sum = 0;
    for (int i = 1; i < 2000; ++i) {
        pieces.push_back(std::make_unique<std::string>(static_cast<std::size_t>(i % 300), 'x'));
        sum += std::sqrt(static_cast<double>(pieces.back()->size()) * i);
    }
    return sum;
}

// Has the calling process killed when the one that forked it ends, as when it takes longer than CTest lets it.
inline void end_with_parent() { prctl(PR_SET_PDEATHSIG, SIGKILL); }

// A process that runs body; it is killed at the end of this.
class OtherProcess {
public:
    explicit OtherProcess(const std::function<void()>& body) : process_(fork())
    {
        if (process_ < 0)
            throw std::runtime_error("fork failed");
        if (process_ == 0) {
            end_with_parent();
            body();
            _exit(0);
        }
    }
    OtherProcess(OtherProcess&& other) noexcept : process_(other.process_) { other.process_ = -1; }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;
    ~OtherProcess()
    {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
    }

private:
    pid_t process_;
};

// Processes that take all the time of the processor that they get.
class BusyMachine {
public:
    explicit BusyMachine(int processes)
    {
        for (int i = 0; i < processes; ++i) {
            processes_.emplace_back([] {
                for (;;)
                    compute_a_little();
            });
        }
    }

private:
    std::vector<OtherProcess> processes_;
};

} // namespace host_test
