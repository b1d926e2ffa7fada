#include "tools/peer/server.h"

#include "tools/program/whole_file.h"

#include <asio/error.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

#include <csignal>
#include <utility>

namespace vnt::peer {
namespace {

using asio::ip::tcp;
using namespace program;

std::string advice(std::error_code error, std::uint16_t port)
{
    if (error == asio::error::address_in_use)
        return "stop the program that listens there, or choose another port with --port (0 takes a free one)";
    if (error == asio::error::access_denied && port < 1024)
        return "choose a port above 1023 with --port (0 takes a free one)";
    return "choose another port with --port (0 takes a free one)";
}

std::optional<Problem> save_request(const std::string& file, const std::string& request)
{
    const std::error_code error = write_whole_file(file, request);
    if (!error)
        return std::nullopt;
    return Problem{kFailed, "cannot write the request to " + file + ": " + error.message() +
                                "; what was there is unchanged and the client got no answer; choose another "
                                "file with --save-request"};
}

class Server {
public:
    Server(const Options& options, const std::string& answer, const Console& console)
        : options_(options), console_(console), stopped_(context_, SIGINT, SIGTERM), time_up_(context_),
          listener_(context_)
    {
        plan_.fault = options.fault;
        plan_.answer = answer;
        if (options.save_request)
            plan_.on_request = [file = *options.save_request](const std::string& request) {
                return save_request(file, request);
            };
    }

    ExitStatus run()
    {
        stopped_.async_wait([this](std::error_code error, int) {
            if (!error)
                context_.stop();
        });
        start_clock();
        if (listen()) {
            next_client();
            context_.run();
        }
        return status_;
    }

private:
    void start_clock()
    {
        if (!options_.timeout)
            return;
        time_up_.expires_after(*options_.timeout);
        time_up_.async_wait([this](std::error_code error) {
            if (error)
                return;
            status_ = console_.report(
                {kTimeUp, "the time was up after " + std::to_string(ended_) + " exchanges, " +
                              (ended_ == begun_ ? "waiting for a client" : "within one") +
                              "; requests that were saved are unharmed; give --timeout more seconds"});
            context_.stop();
        });
    }

    bool listen()
    {
        const tcp::endpoint endpoint(asio::ip::address_v4::loopback(), options_.port);
        std::error_code error;
        listener_.open(endpoint.protocol(), error);
        if (!error)
            listener_.set_option(tcp::acceptor::reuse_address(true), error);
        if (!error)
            listener_.bind(endpoint, error);
        if (!error)
            listener_.listen(asio::socket_base::max_listen_connections, error);
        const std::uint16_t port = error ? options_.port : listener_.local_endpoint(error).port();
        const std::string address = "127.0.0.1:" + std::to_string(port);
        if (error)
            status_ =
                console_.report({kFailed, "cannot listen on " + address + ": " + error.message() +
                                              "; nothing was written; " + advice(error, options_.port)});
        else
            status_ = console_.print("listening on " + address + "\n");
        return status_ == kDone;
    }

    void next_client()
    {
        listener_.async_accept([this](std::error_code error, tcp::socket client) {
            if (!error)
                serve(std::move(client));
            else if (error == asio::error::connection_aborted)
                next_client();
            else
                fail_to_accept(error);
        });
    }

    void fail_to_accept(std::error_code error)
    {
        status_ = console_.report({kFailed, "cannot accept a client: " + error.message() +
                                                "; requests that were saved are unharmed; try again"});
        context_.stop();
    }

    bool is_enough(std::uint64_t exchanges) const
    {
        return options_.exchanges != 0 && exchanges == options_.exchanges;
    }

    void serve(tcp::socket client)
    {
        if (is_enough(++begun_)) {
            std::error_code ignored;
            listener_.close(ignored);
        }
        run_exchange(std::move(client), plan_, [this](const ExchangeEnd& end) { take_end(end); });
    }

    void take_end(const ExchangeEnd& end)
    {
        ++ended_;
        if (end.unused_bytes > 0)
            console_.note(std::to_string(end.unused_bytes) +
                          " bytes behind the request's line feed were not used");
        if (end.stayed)
            console_.note("the client had its answer and did not close; its connection was closed");
        if (end.problem)
            status_ = console_.report(*end.problem);
        if (is_enough(ended_))
            context_.stop();
        else
            next_client();
    }

    const Options& options_;
    const Console& console_;
    ExchangePlan plan_;
    ExitStatus status_ = kDone;
    std::uint64_t begun_ = 0;
    std::uint64_t ended_ = 0;
    asio::io_context context_{1};
    asio::signal_set stopped_;
    asio::steady_timer time_up_;
    tcp::acceptor listener_;
};

} // namespace

ExitStatus serve(const Options& options, const std::string& answer, const Console& console)
{
    return Server(options, answer, console).run();
}

} // namespace vnt::peer
