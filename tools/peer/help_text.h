// What vant-peer says of itself.
#pragma once

#include <string>

namespace vnt::peer {

// The options, the faults, the exit statuses and examples; lines of at most 80 columns.
std::string help_text();

// The program's name and version, one line.
std::string version_text();

} // namespace vnt::peer
