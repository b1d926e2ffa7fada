// The listener of vant-peer, and the run of its exchanges, one after the other.
#pragma once

#include "tools/peer/exchange.h"
#include "tools/peer/options.h"
#include "tools/program/console.h"

#include <string>

namespace vnt::peer {

// Listens, says so on the console, and serves clients until the options' number of exchanges is done, the
// time is up, or a SIGINT or SIGTERM comes. After the last client has come nobody else gets in.
//
// Returns the program's exit status; what goes wrong is told on the console as it happens.
program::ExitStatus serve(const Options& options, const std::string& answer, const program::Console& console);

} // namespace vnt::peer
