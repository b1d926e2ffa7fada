// Whether somebody listens on a port of this machine, read from the system's table of sockets: a connection
// made to find out would be taken for the one exchange that a sketch application waits for.
//
// Shapes: a table is the text of /proc/net/tcp or tcp6; addresses stand in it as the words of memory in
//         hexadecimal, in the machine's byte order.
// Errors: a table that cannot be read, or that does not look like one, makes the answer unknown.
#pragma once

#include <cstdint>
#include <string_view>

namespace vnt::host {

enum class Listening { no, yes, unknown };

// Whether a table has a listener that takes a connection to 127.0.0.1:port: on that address, or on any. One on
// IPv6's any address counts, since such a socket takes both unless it says otherwise, which no table shows.
Listening listening_in_table(std::string_view table, std::uint16_t port);

// Looks at both tables of the process's own network; a system without IPv6 has only one.
Listening listening_on(std::uint16_t port);

} // namespace vnt::host
