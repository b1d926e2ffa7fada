// Descriptors in tests of the link, which closes 0 and its data socket's number a second time.
#pragma once

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <vector>

namespace support {

inline bool is_open(int descriptor) { return fcntl(descriptor, F_GETFD) != -1 || errno != EBADF; }

// Bytes that have arrived at a socket and were not taken yet; -1 when it is closed.
inline int bytes_waiting(int socket)
{
    int count = 0;
    return ioctl(socket, FIONREAD, &count) == 0 ? count : -1;
}

// Keeps /dev/null on descriptor 0, so that no link closes, and no socket gets, anything precious there.
class ParkedInput {
public:
    ParkedInput() { park(); }
    ParkedInput(const ParkedInput&) = delete;
    ParkedInput& operator=(const ParkedInput&) = delete;
    ~ParkedInput() { park(); }

    static void park()
    {
        if (!is_open(0) && open("/dev/null", O_RDWR) != 0) // the lowest free number is 0
            throw std::runtime_error("descriptor 0 could not be parked");
    }
};

// A descriptor that closes with its scope.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(other.release()) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        reset(other.release());
        return *this;
    }
    ~Descriptor() { reset(-1); }

    int get() const { return number_; }

    int release()
    {
        const int number = number_;
        number_ = -1;
        return number;
    }

    void reset(int number)
    {
        if (number_ >= 0)
            close(number_);
        number_ = number;
    }

private:
    int number_;
};

// Two ends of a stream, or of SOCK_SEQPACKET, where each send is a record of its own.
struct SocketPair {
    Descriptor link;
    Descriptor peer;

    explicit SocketPair(int type = SOCK_STREAM)
    {
        int ends[2];
        if (socketpair(AF_UNIX, type, 0, ends) != 0)
            throw std::runtime_error("socketpair failed");
        link.reset(ends[0]);
        peer.reset(ends[1]);
    }
};

inline void send_all(int socket, const std::string& bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0)
            throw std::runtime_error("send failed");
        sent += static_cast<std::size_t>(count);
    }
}

// What is there now, without waiting for more.
inline std::string receive_waiting(int socket)
{
    std::string bytes;
    char buffer[4096];
    for (;;) {
        const ssize_t count = recv(socket, buffer, sizeof buffer, MSG_DONTWAIT);
        if (count <= 0)
            return bytes;
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
}

// The records that are there now, of a pair that keeps them apart.
inline std::vector<std::string> receive_waiting_records(int socket)
{
    std::vector<std::string> records;
    char buffer[4096];
    for (;;) {
        const ssize_t count = recv(socket, buffer, sizeof buffer, MSG_DONTWAIT);
        if (count <= 0)
            return records;
        records.emplace_back(buffer, static_cast<std::size_t>(count));
    }
}

// Waits for exactly size bytes; less when the other end closes before.
inline std::string receive_exactly(int socket, std::size_t size)
{
    std::string bytes(size, '\0');
    std::size_t got = 0;
    while (got < size) {
        const ssize_t count = recv(socket, bytes.data() + got, size - got, 0);
        if (count <= 0)
            break;
        got += static_cast<std::size_t>(count);
    }
    bytes.resize(got);
    return bytes;
}

} // namespace support
