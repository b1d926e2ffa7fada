// A peer on the loopback interface that sends one and the same message to whoever connects.
//
// It is a process of its own, as a sketch application is: what it does with memory is not this process's.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

namespace bench {

class SendingPeer {
public:
    // Start it before the process has threads and much memory. The bytes are copied.
    explicit SendingPeer(std::string_view bytes);
    SendingPeer(const SendingPeer&) = delete;
    SendingPeer& operator=(const SendingPeer&) = delete;
    ~SendingPeer();

    // Each connection is served in turn: the peer waits for a line feed, sends all its bytes, and closes.
    unsigned int port() const { return port_; }

private:
    pid_t process_ = -1;
    unsigned int port_ = 0;
};

inline constexpr const char* kLoopback = "127.0.0.1";

// All that is left in a socket until the peer's close.
std::string received_until_close(int socket);

} // namespace bench
