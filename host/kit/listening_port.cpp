#include "host/kit/listening_port.h"

#include <algorithm>

namespace vnt::host {

Listening listening_in(const program::SocketTable& table, std::uint16_t port)
{
    const bool is_there = std::any_of(table.rows.begin(), table.rows.end(), [port](const auto& row) {
        return row.listens && row.local.port == port && program::takes_loopback(row.local);
    });
    if (is_there)
        return Listening::yes;
    return table.is_whole ? Listening::no : Listening::unknown;
}

Listening listening_on(std::uint16_t port) { return listening_in(program::system_sockets(), port); }

} // namespace vnt::host
