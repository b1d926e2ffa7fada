// The system's table of TCP sockets: who listens on a port, and who holds the other end of a connection, which no
// socket can be asked.
//
// Shapes: a table is the text of /proc/net/tcp or tcp6; addresses stand in it as the words of memory in hexadecimal, in
//         the machine's byte order.
// Errors: what is not understood is left out, and the table is not whole.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vnt::program {

struct SocketEnd {
    // Of IPv6, the most significant word first; an IPv4 address within IPv6 (::ffff:127.0.0.1) is the same as by itself.
    std::array<std::uint32_t, 4> address{};
    std::uint16_t port = 0;
    bool operator==(const SocketEnd&) const = default;
};

// "127.0.0.1:4910", "[::1]:4910".
std::string text_of(const SocketEnd& end);

// Whether a socket that listens there takes connections to 127.0.0.1: on that address, or on any. IPv6's any address
// takes both unless the socket says otherwise, which no table shows.
bool takes_loopback(const SocketEnd& end);

// Of an open socket; the peer of one that has none, or the end of what is no TCP socket, is all 0.
SocketEnd own_end(int socket);
SocketEnd peer_end(int socket);

struct SocketRow {
    SocketEnd local;
    SocketEnd remote;
    bool listens = false;
    std::uint32_t user = 0;
    std::uint64_t inode = 0; // 0 when no process holds it any more
};

struct SocketTable {
    std::vector<SocketRow> rows;
    bool is_whole = true; // nothing was left out
};

SocketTable read_socket_table(std::string_view text);

// Both tables of the process's own network; a system without IPv6 has only one. proc: where they are; tests have their
// own.
SocketTable system_sockets(const std::string& proc = "/proc");

} // namespace vnt::program
