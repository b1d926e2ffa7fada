// The listener of vant-peer, and the run of its exchanges, one after the other.
#pragma once

#include "tools/peer/exchange.h"
#include "tools/peer/options.h"

#include <string>

namespace vnt::peer {

// Listens, says so on standard output, and serves clients until the options' number of exchanges is done, the
// time is up, or a SIGINT or SIGTERM comes. After the last client has come nobody else gets in.
//
// Returns the program's exit status; what goes wrong is told on standard error as it happens.
ExitStatus serve(const Options& options, const std::string& answer);

} // namespace vnt::peer
