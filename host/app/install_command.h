// vant-host install, uninstall: the editor's extension files.
#pragma once

#include "host/app/editor_options.h"
#include "tools/program/console.h"
#include "tools/program/problem.h"

namespace vnt::host {

// Puts the two extension files, and a link to this program for each, where the editor looks for extensions: of this
// user, or of all users of the system. Says where.
program::ExitStatus install_command(const EditorOptions& options, const program::Console& console);

// Takes them away again; what is not ours stays.
program::ExitStatus uninstall_command(const EditorOptions& options, const program::Console& console);

} // namespace vnt::host
