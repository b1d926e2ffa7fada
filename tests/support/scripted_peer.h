// A sketch application for tests: listens on a free port of loopback, takes one connection, and plays a
// script on it.
#pragma once

#include "tests/support/descriptors.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>

namespace support {

inline sockaddr_in ipv4_address(unsigned int port, in_addr_t host)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(host);
    return address;
}

inline sockaddr_in loopback(unsigned int port) { return ipv4_address(port, INADDR_LOOPBACK); }

class Listener {
public:
    Listener() : socket_(socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address = loopback(0);
        socklen_t size = sizeof address;
        if (bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
            listen(socket_.get(), 1) != 0 ||
            getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("no port to listen on");
        port_ = ntohs(address.sin_port);
    }

    unsigned int port() const { return port_; }
    Descriptor accept_one() { return Descriptor(accept(socket_.get(), nullptr, nullptr)); }
    void stop() { socket_.reset(-1); }

private:
    Descriptor socket_;
    unsigned int port_ = 0;
};

// A port of loopback where nothing listens.
inline unsigned int unused_port() { return Listener().port(); }

// A port that nobody is given while this lives: bound, but not listened on, so that a server which sets
// SO_REUSEADDR may have it.
class ReservedPort {
public:
    ReservedPort() : socket_(socket(AF_INET, SOCK_STREAM, 0))
    {
        const int on = 1;
        sockaddr_in address = ipv4_address(0, INADDR_ANY);
        socklen_t size = sizeof address;
        if (setsockopt(socket_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
            bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
            getsockname(socket_.get(), reinterpret_cast<sockaddr*>(&address), &size) != 0)
            throw std::runtime_error("no port to reserve");
        number_ = ntohs(address.sin_port);
    }

    unsigned int number() const { return number_; }
    void release() { socket_.reset(-1); }

private:
    Descriptor socket_;
    unsigned int number_ = 0;
};

class ScriptedPeer {
public:
    // The script gets the connection, and closes it by its end.
    explicit ScriptedPeer(std::function<void(Descriptor& connection)> script)
        : thread_([this, script = std::move(script)] {
              Descriptor connection = listener_.accept_one();
              script(connection);
          })
    {
    }

    ScriptedPeer(const ScriptedPeer&) = delete;
    ScriptedPeer& operator=(const ScriptedPeer&) = delete;
    ~ScriptedPeer() { finish(); }

    unsigned int port() const { return listener_.port(); }

    void finish()
    {
        if (thread_.joinable())
            thread_.join();
    }

private:
    Listener listener_;
    std::thread thread_;
};

// The next line of a connection, with its line feed; what came of it when the connection closes before.
inline std::string receive_line(int socket)
{
    std::string line;
    char c = 0;
    while (recv(socket, &c, 1, 0) == 1) {
        line += c;
        if (c == '\n')
            break;
    }
    return line;
}

} // namespace support
