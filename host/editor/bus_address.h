// Which bus belongs to the user's session. Bus libraries would start one where there is none; this does not.
#pragma once

#include <optional>
#include <string>

namespace vnt::host {

// The address of the session's bus as D-Bus libraries take it, from an environment: the value of
// DBUS_SESSION_BUS_ADDRESS, without entries that would start a bus; where that is not set,
// runtime_folder/bus, when it is a socket of this user. Null or empty is not set.
std::optional<std::string> session_bus_address(const char* address, const char* runtime_folder);

} // namespace vnt::host
