// The time of the day, for people.
#pragma once

#include <string>

namespace vnt::host {

// Now, with the local distance from UTC: "2026-11-03T14:05:09+01:00".
std::string local_time_now();

} // namespace vnt::host
