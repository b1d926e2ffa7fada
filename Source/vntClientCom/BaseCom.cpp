#include "Source/vntClientCom/BaseCom.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

namespace {

constexpr suseconds_t kPollMicroseconds = 100;

// How much of a line is looked at in one call. Chosen with benchmarks/line_bench: more does not help.
constexpr std::size_t kPeekBytes = std::size_t{256} * 1024;

// A peer that has closed must never kill the process that hosts us.
#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

void refuse_sigpipe([[maybe_unused]] int socket)
{
#ifdef SO_NOSIGPIPE // where both are, an older system may know only this one
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
}

// Taking bytes that have been looked at already need not copy them again.
#ifdef __linux__
constexpr int kDiscard = MSG_TRUNC;
#else
constexpr int kDiscard = 0;
#endif

template <class Call>
ssize_t unless_interrupted(Call call)
{
    ssize_t result;
    do
        result = call();
    while (result < 0 && errno == EINTR);
    return result;
}

void send_once(int socket, const void* bytes, std::size_t size)
{
    unless_interrupted([&] { return send(socket, bytes, size, kSendFlags); });
}

ssize_t receive_once(int socket, void* bytes, std::size_t size, int flags = 0)
{
    return unless_interrupted([&] { return recv(socket, bytes, size, flags); });
}

void pause_briefly()
{
    timeval pause{0, kPollMicroseconds};
    select(0, nullptr, nullptr, nullptr, &pause);
}

sockaddr_in ipv4_address(unsigned int port, in_addr_t host)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = host;
    return address;
}

enum class Wait { input, output };

// select's descriptor sets are of a fixed size; a number beyond it needs poll.
int is_ready_by_poll(int socket, Wait wait)
{
    pollfd polled{socket, static_cast<short>(wait == Wait::input ? POLLIN : POLLOUT), 0};
    if (poll(&polled, 1, 0) == 0 && wait == Wait::input) {
        pause_briefly();
        poll(&polled, 1, 0);
    }
    return polled.revents != 0 ? 1 : 0;
}

int is_ready(int socket, Wait wait)
{
    if (socket < 0)
        return 1; // no set can hold it; as every other bad descriptor
    if (socket >= FD_SETSIZE)
        return is_ready_by_poll(socket, wait);
    fd_set set;
    FD_ZERO(&set);
    FD_SET(socket, &set);
    timeval limit{0, wait == Wait::input ? kPollMicroseconds : 0};
    if (wait == Wait::input)
        select(socket + 1, &set, nullptr, nullptr, &limit);
    else
        select(socket + 1, nullptr, &set, nullptr, &limit);
    return FD_ISSET(socket, &set) ? 1 : 0;
}

// Takes size bytes that have been peeked at, into the same buffer where the system copies them.
bool take(int socket, char* buffer, std::size_t size)
{
    while (size > 0) {
        const ssize_t taken = receive_once(socket, buffer, size, kDiscard);
        if (taken < 0)
            return false;
        size -= static_cast<std::size_t>(taken);
    }
    return true;
}

} // namespace

BaseCom::~BaseCom()
{
    close_socket(listen_socket);
    close_socket(data_socket);
}

int BaseCom::connect_server(unsigned int port, const char* address)
{
    data_socket = socket(AF_INET, SOCK_STREAM, 0);
    if (data_socket < 0)
        return 0;
    refuse_sigpipe(data_socket);
    const sockaddr_in peer = ipv4_address(port, inet_addr(address));
    if (connect(data_socket, reinterpret_cast<const sockaddr*>(&peer), sizeof peer) == -1) {
        close_socket(data_socket);
        return 0;
    }
    return 1;
}

int BaseCom::start_server(unsigned int port)
{
    listen_socket = socket(AF_INET, SOCK_STREAM, 0);
    if (listen_socket < 0)
        return 0;
    const int on = 1;
    setsockopt(listen_socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in any = ipv4_address(port, htonl(INADDR_ANY));
    constexpr int kBacklog = 5;
    if (bind(listen_socket, reinterpret_cast<const sockaddr*>(&any), sizeof any) == -1 ||
        listen(listen_socket, kBacklog) == -1) {
        close_socket(listen_socket);
        return 0;
    }
    sockaddr_in peer{};
    socklen_t peer_size = sizeof peer;
    data_socket = accept(listen_socket, reinterpret_cast<sockaddr*>(&peer), &peer_size);
    close_socket(listen_socket);
    if (data_socket == -1) {
        close_socket(data_socket);
        return 0;
    }
    refuse_sigpipe(data_socket);
    return 1;
}

int BaseCom::check_recievable() { return is_ready(data_socket, Wait::input); }

int BaseCom::check_sendable() { return is_ready(data_socket, Wait::output); }

BaseCom& BaseCom::operator<<(const std::string& message)
{
    send_once(data_socket, message.data(), message.size());
    send_once(data_socket, "\n", 1);
    return *this;
}

// Looks at what is there, and then takes the line's own bytes and no more.
void BaseCom::operator>>(std::stringstream& into)
{
    while (check_recievable() == 0) {
    }
    std::stringbuf& content = *into.rdbuf();
    content.pubseekoff(0, std::ios::end, std::ios::out);
    const std::unique_ptr<char[]> peeked(new char[kPeekBytes]);
    for (;;) {
        const ssize_t got = receive_once(data_socket, peeked.get(), kPeekBytes, MSG_PEEK);
        if (got < 0)
            return;
        if (got == 0) {
            pause_briefly(); // the peer has closed: this waits for ever, but need not keep a core busy
            continue;
        }
        const auto size = static_cast<std::size_t>(got);
        const void* const line_feed = std::memchr(peeked.get(), '\n', size);
        const std::size_t in_line =
            line_feed != nullptr
                ? static_cast<std::size_t>(static_cast<const char*>(line_feed) - peeked.get())
                : size;
        content.sputn(peeked.get(), static_cast<std::streamsize>(in_line));
        if (!take(data_socket, peeked.get(), line_feed != nullptr ? in_line + 1 : in_line) ||
            line_feed != nullptr)
            return;
    }
}

void BaseCom::send_data(const std::stringstream& block)
{
    const std::string bytes = block.str();
    const std::uint32_t length = htonl(static_cast<std::uint32_t>(bytes.size()));
    send_once(data_socket, &length, sizeof length);
    send_once(data_socket, bytes.data(), bytes.size());
}

int BaseCom::recieve_data(std::stringstream& into)
{
    into.str(std::string());
    into.clear();
    while (check_recievable() == 0) {
    }
    std::uint32_t prefix = 0;
    if (receive_once(data_socket, &prefix, sizeof prefix) != sizeof prefix)
        return 0;
    const std::uint32_t length = ntohl(prefix);
    if (length > static_cast<std::uint32_t>(std::numeric_limits<std::int32_t>::max()))
        return 0;
    const std::unique_ptr<char[]> bytes(new char[length]);
    std::uint32_t received = 0;
    while (received < length) {
        const ssize_t got = receive_once(data_socket, bytes.get() + received, length - received);
        if (got < 0)
            return 0;
        if (got == 0)
            pause_briefly(); // as in operator>>
        received += static_cast<std::uint32_t>(got);
    }
    into.write(bytes.get(), static_cast<std::streamsize>(length));
    return 1;
}

void BaseCom::disconnect()
{
    close_socket(data_socket);
    close_socket(listen_socket);
}

int BaseCom::close_socket(int descriptor) { return close(descriptor); }

double BaseCom::get_now_time() const
{
    timeval now{};
    gettimeofday(&now, nullptr);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_usec) / 1000000.0;
}
