// The sketch application that is installed: vant-sketch, beside this program or else on the search path.
#pragma once

#include <optional>
#include <string>

namespace vnt::host {

// The command for a shell that starts it; none when it is not installed.
//
// sheet_rotation: how the editor has turned its sheet, in degrees: the view that the plug-in tells never is.
std::optional<std::string> sketch_application_command(double sheet_rotation = 0);

} // namespace vnt::host
