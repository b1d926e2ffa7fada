// vant-host draw: a recorded answer as path art, by the plug-in's own code, without a sketch application.
#pragma once

#include "host/app/options.h"
#include "tools/program/console.h"
#include "tools/program/problem.h"

#include <chrono>

namespace vnt::host {

// start: of the command, from where --timeout counts.
program::ExitStatus draw_command(const Options& options, std::chrono::steady_clock::time_point start,
                                 const program::Console& console);

} // namespace vnt::host
