// A sketch application on the port that the plug-in connects to. Tests that use it hold RESOURCE_LOCK port_4910.
#pragma once

#include "tests/support/descriptors.h"
#include "tests/support/scripted_peer.h"

#include <poll.h>
#include <sys/socket.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace plugin_tests {

constexpr unsigned int kPluginPort = 4910;

// Listens on the port, and does nothing with those who connect.
class FixedPortListener {
public:
    FixedPortListener() : socket_(socket(AF_INET, SOCK_STREAM, 0))
    {
        const int on = 1;
        const sockaddr_in address = support::loopback(kPluginPort);
        setsockopt(socket_.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        if (bind(socket_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(socket_.get(), 1) != 0)
            throw std::runtime_error("port 4910 is taken");
    }

    // Whether somebody has connected who was not accepted yet.
    bool somebody_waits() const
    {
        pollfd watched{socket_.get(), POLLIN, 0};
        return poll(&watched, 1, 0) == 1;
    }

    support::Descriptor accept_one() { return support::Descriptor(accept(socket_.get(), nullptr, nullptr)); }

private:
    support::Descriptor socket_;
};

// Takes one connection and plays a script on it, which gets the request.
class FixedPortPeer {
public:
    using Script = std::function<void(support::Descriptor& connection)>;

    explicit FixedPortPeer(Script script)
        : thread_([this, script = std::move(script)] {
              support::Descriptor connection = listener_.accept_one();
              request_ = support::receive_line(connection.get());
              script(connection);
          })
    {
    }

    FixedPortPeer(const FixedPortPeer&) = delete;
    FixedPortPeer& operator=(const FixedPortPeer&) = delete;
    ~FixedPortPeer() { finish(); }

    // What the plug-in sent, once the exchange is over.
    const std::string& request()
    {
        finish();
        return request_;
    }

private:
    void finish()
    {
        if (thread_.joinable())
            thread_.join();
    }

    FixedPortListener listener_;
    std::string request_;
    std::thread thread_;
};

// A script that answers with one line and closes.
inline FixedPortPeer::Script answering(std::string line)
{
    return [line = std::move(line) + "\n"](support::Descriptor& connection) {
        support::send_all(connection.get(), line);
    };
}

// A script that closes so that the other end's read fails.
inline void reset_connection(support::Descriptor& connection)
{
    const linger at_once{1, 0};
    setsockopt(connection.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    connection.reset(-1);
}

} // namespace plugin_tests
