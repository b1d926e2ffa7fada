#include "tools/peer/exchange.h"

#include "tools/peer/outgoing.h"

#include <asio/buffer.hpp>
#include <asio/error.hpp>
#include <asio/steady_timer.hpp>
#include <asio/write.hpp>

#include <array>
#include <memory>
#include <string_view>
#include <utility>

namespace vnt::peer {
namespace {

using asio::ip::tcp;

class Exchange : public std::enable_shared_from_this<Exchange> {
public:
    Exchange(tcp::socket client, const ExchangePlan& plan, std::function<void(const ExchangeEnd&)> on_end)
        : client_(std::move(client)), timer_(client_.get_executor()), plan_(plan), on_end_(std::move(on_end)),
          outgoing_(plan.fault, plan.answer)
    {
    }

    void start()
    {
        if (entry_of_fault(plan_.fault).takes_request)
            read_request();
        else
            end();
    }

private:
    void read_request()
    {
        client_.async_read_some(asio::buffer(buffer_),
                                [self = shared_from_this()](std::error_code error, std::size_t size) {
                                    if (error)
                                        self->client_left_early();
                                    else
                                        self->take(std::string_view(self->buffer_.data(), size));
                                });
    }

    void take(std::string_view bytes)
    {
        const std::size_t line_feed = bytes.find('\n');
        const std::string_view of_request =
            bytes.substr(0, line_feed == bytes.npos ? bytes.npos : line_feed + 1);
        if (request_.size() + of_request.size() > kRequestRoom) {
            fail("cannot take a request of more than 16 MiB; nothing was written and the client got no "
                 "answer; let it send one line ended by a line feed");
            return;
        }
        request_ += of_request;
        if (line_feed == bytes.npos) {
            read_request();
            return;
        }
        end_.unused_bytes = bytes.size() - of_request.size();
        if (plan_.on_request)
            end_.problem = plan_.on_request(request_);
        if (end_.problem)
            end();
        else
            respond();
    }

    void respond()
    {
        std::error_code ignored; // a client that has gone shows in the sending
        client_.set_option(tcp::no_delay(true), ignored);
        due_ = std::chrono::steady_clock::now();
        switch (plan_.fault) {
        case Fault::close_before_answer: close_orderly(); break;
        case Fault::reset: reset(); break;
        case Fault::stall: watch_client(); break;
        case Fault::close_mid_line: send_next(); break;
        default: watch_client(); send_next();
        }
    }

    // Reads on while the answer goes out: a client that sends more is never stuck, and its close is seen.
    void watch_client()
    {
        client_.async_read_some(asio::buffer(buffer_),
                                [self = shared_from_this()](std::error_code error, std::size_t size) {
                                    self->end_.unused_bytes += size;
                                    if (error)
                                        self->client_closed();
                                    else
                                        self->watch_client();
                                });
    }

    // A client may close its sending side and still wait for the answer.
    void client_closed()
    {
        closed_ = true;
        if (sent_ || plan_.fault == Fault::stall)
            end();
    }

    void send_next()
    {
        const std::string_view piece = outgoing_.next();
        if (piece.empty()) {
            all_sent();
            return;
        }
        asio::async_write(client_, asio::buffer(piece.data(), piece.size()),
                          [self = shared_from_this()](std::error_code error, std::size_t) {
                              if (error)
                                  self->could_not_send();
                              else
                                  self->pause_and_send();
                          });
    }

    // Late pieces do not wait, so that the pauses are the whole time that sending takes.
    void pause_and_send()
    {
        due_ += outgoing_.pause();
        if (due_ <= std::chrono::steady_clock::now()) {
            send_next();
            return;
        }
        timer_.expires_at(due_);
        timer_.async_wait([self = shared_from_this()](std::error_code error) {
            if (!error)
                self->send_next();
        });
    }

    void all_sent()
    {
        sent_ = true;
        if (plan_.fault == Fault::close_mid_line) {
            close_orderly();
        } else if (closed_) {
            end();
        } else {
            timer_.expires_after(plan_.closing_time);
            timer_.async_wait([self = shared_from_this()](std::error_code error) {
                self->end_.stayed = !error;
                if (!error)
                    self->end();
            });
        }
    }

    void client_left_early()
    {
        fail("the client left before its request was complete, after " + std::to_string(request_.size()) +
             " bytes without a line feed; nothing was written; let it send one line ended by a line feed");
    }

    // To a fault, a client that has had enough is what was asked for.
    void could_not_send()
    {
        if (plan_.fault == Fault::none)
            fail("cannot send the whole answer: the client left before it had taken it; its request was "
                 "taken; let it read up to the line feed");
        else
            end();
    }

    // Bytes that nobody has read would make the system reset the connection.
    void close_orderly()
    {
        std::error_code error;
        for (client_.non_blocking(true, error); !error;)
            end_.unused_bytes += client_.read_some(asio::buffer(buffer_), error);
        end();
    }

    void reset()
    {
        std::error_code ignored;
        client_.set_option(asio::socket_base::linger(true, 0), ignored);
        end();
    }

    void fail(std::string sentence)
    {
        end_.problem = program::Problem{program::kFailed, std::move(sentence)};
        end();
    }

    // Operations that are still under way are told that they are aborted, and find on_end_ empty.
    void end()
    {
        const auto on_end = std::exchange(on_end_, nullptr);
        if (!on_end)
            return;
        std::error_code ignored;
        client_.close(ignored);
        timer_.cancel();
        on_end(end_);
    }

    tcp::socket client_;
    asio::steady_timer timer_;
    const ExchangePlan& plan_;
    std::function<void(const ExchangeEnd&)> on_end_;
    Outgoing outgoing_;
    std::array<char, std::size_t{64} * 1024> buffer_{};
    std::string request_;
    std::chrono::steady_clock::time_point due_; // when the next piece is to go, at the earliest
    ExchangeEnd end_;
    bool closed_ = false; // the client sends no more
    bool sent_ = false;   // everything that it gets has been sent
};

} // namespace

void run_exchange(tcp::socket client, const ExchangePlan& plan,
                  std::function<void(const ExchangeEnd&)> on_end)
{
    std::make_shared<Exchange>(std::move(client), plan, std::move(on_end))->start();
}

} // namespace vnt::peer
