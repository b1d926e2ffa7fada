// Whether somebody listens on a port of this machine, read from the system's table of sockets: a connection
// made to find out would be taken for the one exchange that a sketch application waits for.
//
// Errors: a table that cannot be read, or that does not look like one, makes the answer unknown.
#pragma once

#include "tools/program/socket_table.h"

#include <cstdint>

namespace vnt::host {

enum class Listening { no, yes, unknown };

// Whether a table has a listener that takes a connection to 127.0.0.1:port. A certain yes outweighs what is not known.
Listening listening_in(const program::SocketTable& table, std::uint16_t port);

// Looks at the tables of the process's own network.
Listening listening_on(std::uint16_t port);

} // namespace vnt::host
