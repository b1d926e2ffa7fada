// vant-host agent: the process that "Start VANT" leaves behind.
#pragma once

#include "host/app/editor_options.h"
#include "tools/program/problem.h"

namespace vnt::host {

// Waits for the sketch, keeps its art, and makes the editor run the extension that places it. Takes the spool folder
// away at its end.
program::ExitStatus agent_command(const EditorOptions& options);

} // namespace vnt::host
