// Stands in for front_window.cpp where libxcb is missing.
#include "host/editor/front_window.h"

namespace vnt::host {

std::optional<EditorWindow> front_window_of(pid_t) { return std::nullopt; }

Raised raise_window_of(pid_t) { return Raised::not_possible; }

Raised raise_window_of(pid_t, std::uint32_t) { return Raised::not_possible; }

} // namespace vnt::host
