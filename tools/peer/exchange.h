// One exchange with one client: its request, and what it gets for it.
//
// When:   everything happens within the run of the socket's io_context, on its thread.
// Errors: in the end that is told once.
#pragma once

#include "tools/peer/fault.h"
#include "tools/program/problem.h"

#include <asio/ip/tcp.hpp>

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace vnt::peer {

// A request with room for every client that is in its right mind.
constexpr std::size_t kRequestRoom = std::size_t{16} * 1024 * 1024; // bytes, the line feed among them

struct ExchangePlan {
    Fault fault = Fault::none;
    std::string answer; // its line, without the line feed

    // Takes a whole request, with its line feed, before it is answered; a problem ends the exchange without
    // an answer. May be empty.
    std::function<std::optional<program::Problem>(const std::string& request)> on_request;

    // How long a client that has its answer may take to close.
    std::chrono::nanoseconds closing_time = std::chrono::seconds(10);
};

struct ExchangeEnd {
    std::optional<program::Problem> problem;
    std::size_t unused_bytes = 0; // that came behind the request
    bool stayed = false;          // the client had not closed when its time was up
};

// Runs the exchange and tells its end; the connection is closed by then.
//
// Owner: the plan is the caller's, and has to last as long as the io_context runs.
void run_exchange(asio::ip::tcp::socket client, const ExchangePlan& plan,
                  std::function<void(const ExchangeEnd&)> on_end);

} // namespace vnt::peer
