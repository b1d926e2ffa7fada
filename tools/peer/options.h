// The command line of vant-peer.
//
// Errors: what cannot be meant is a Problem of wrong usage; nothing is printed here.
#pragma once

#include "tools/peer/fault.h"
#include "tools/program/problem.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vnt::peer {

constexpr std::uint16_t kDefaultPort = 4910; // where a client looks for the sketch application

struct Options {
    bool help = false; // or version: nothing else counts
    bool version = false;
    std::uint16_t port = kDefaultPort; // 0: any free one
    std::uint32_t exchanges = 1;       // 0: without end
    std::optional<std::string> save_request;
    std::optional<std::string> answer;
    bool join = false;
    Fault fault = Fault::none;
    std::optional<std::chrono::nanoseconds> timeout;
};

// The last one of an option counts. "--help" and "--version" end the reading.
program::Result<Options> read_options(const std::vector<std::string>& arguments);

} // namespace vnt::peer
