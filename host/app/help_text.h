// What vant-host prints about itself.
#pragma once

#include <string>

namespace vnt::host {

// command: the name of one, or anything else for the program as a whole.
std::string help_text(const std::string& command);

std::string version_text();

} // namespace vnt::host
