// vant-host extension: "Start VANT" as the editor runs it.
#pragma once

#include "host/app/editor_options.h"
#include "tools/program/problem.h"

namespace vnt::host {

// Leaves a process behind that runs the plug-in and places its art, and returns at once without a word. Where there
// is no session bus to come back over, in a batch run, and on request (--wait), runs the plug-in itself, and prints
// the document with its art in it; without art it prints nothing, and the editor's document stays as it is.
program::ExitStatus extension_command(const EditorOptions& options);

} // namespace vnt::host
