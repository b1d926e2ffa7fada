#include "tools/peer/exchange.h"

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/read_until.hpp>
#include <asio/write.hpp>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using namespace vnt::peer;
using namespace std::chrono_literals;
using asio::ip::tcp;
using vnt::program::kFailed;
using vnt::program::Problem;

// Two ends of one connection over loopback.
struct Connection {
    asio::io_context context;
    tcp::socket client{context};
    tcp::socket server{context};

    Connection()
    {
        tcp::acceptor listener(context, tcp::endpoint(asio::ip::address_v4::loopback(), 0));
        client.connect(listener.local_endpoint());
        listener.accept(server);
    }

    // Runs one exchange to its end and counts how often that is told.
    ExchangeEnd run(const ExchangePlan& plan)
    {
        std::vector<ExchangeEnd> ends;
        run_exchange(std::move(server), plan, [&](const ExchangeEnd& end) { ends.push_back(end); });
        context.run();
        EXPECT_EQ(ends.size(), 1U);
        return ends.empty() ? ExchangeEnd() : ends.front();
    }

    std::string read_all()
    {
        std::string bytes;
        std::error_code error;
        asio::read_until(client, asio::dynamic_buffer(bytes), '\0', error); // which never comes
        EXPECT_EQ(error, asio::error::eof);
        return bytes;
    }
};

TEST(PeerExchange, AClientThatNeverClosesIsLeftWhenItsTimeIsUp)
{
    Connection connection;
    ExchangePlan plan;
    plan.answer = "<a/>";
    plan.closing_time = 20ms;
    asio::write(connection.client, asio::buffer("request\n", 8));
    const auto start = std::chrono::steady_clock::now();
    const ExchangeEnd end = connection.run(plan);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 20ms);
    EXPECT_TRUE(end.stayed);
    EXPECT_FALSE(end.problem);
    EXPECT_EQ(connection.read_all(), "<a/>\n");
}

TEST(PeerExchange, AClientThatClosesInTimeHasNotStayed)
{
    Connection connection;
    ExchangePlan plan;
    plan.closing_time = 1h;
    asio::write(connection.client, asio::buffer("request\n", 8));
    connection.client.close();
    const ExchangeEnd end = connection.run(plan);
    EXPECT_FALSE(end.stayed);
    EXPECT_FALSE(end.problem);
}

TEST(PeerExchange, ARequestThatIsNotTakenIsNotAnswered)
{
    Connection connection;
    ExchangePlan plan;
    plan.answer = "<a/>";
    std::string seen;
    plan.on_request = [&](const std::string& request) {
        seen = request;
        return Problem{kFailed, "no room"};
    };
    asio::write(connection.client, asio::buffer("request\n", 8));
    const ExchangeEnd end = connection.run(plan);
    EXPECT_EQ(seen, "request\n");
    ASSERT_TRUE(end.problem);
    EXPECT_EQ(end.problem->sentence, "no room");
    EXPECT_EQ(connection.read_all(), "");
}

TEST(PeerExchange, BytesBehindTheRequestAreCountedAndNotSeen)
{
    Connection connection;
    ExchangePlan plan;
    std::string seen;
    plan.on_request = [&](const std::string& request) {
        seen = request;
        return std::optional<Problem>();
    };
    asio::write(connection.client, asio::buffer("one\ntwo\nthree", 13));
    connection.client.shutdown(tcp::socket::shutdown_send);
    EXPECT_EQ(connection.run(plan).unused_bytes, 9U);
    EXPECT_EQ(seen, "one\n");
}

TEST(PeerExchange, ClosesInAnOrderlyWayEvenOnBytesThatNobodyHasRead)
{
    Connection connection;
    ExchangePlan plan;
    plan.fault = Fault::close_before_answer;
    // The program reads so many bytes at once, so that what is behind them stays in the system.
    const std::string request = std::string(std::size_t{64} * 1024 - 1, 'x') + '\n';
    asio::write(connection.client, asio::buffer(request + "unread"));
    EXPECT_EQ(connection.run(plan).unused_bytes, 6U);
    EXPECT_EQ(connection.read_all(), "");
}

struct RoomCase {
    const char* name;
    std::size_t size; // of the request with its line feed
    bool taken;
};

const RoomCase kRooms[] = {
    {"ARequestThatFillsTheRoomIsTaken", kRequestRoom,     true },
    {"ARequestOfOneByteMoreIsNot",      kRequestRoom + 1, false},
};

class PeerRequestRoom : public testing::TestWithParam<RoomCase> {};

TEST_P(PeerRequestRoom, IsSixteenMebibytes)
{
    Connection connection;
    ExchangePlan plan;
    std::size_t seen = 0;
    plan.on_request = [&](const std::string& request) {
        seen = request.size();
        return std::optional<Problem>();
    };
    const std::string request = std::string(GetParam().size - 1, 'x') + '\n';
    asio::async_write(connection.client, asio::buffer(request),
                      [&](std::error_code, std::size_t) { connection.client.close(); });
    const ExchangeEnd end = connection.run(plan);
    EXPECT_EQ(seen, GetParam().taken ? GetParam().size : 0U);
    EXPECT_EQ(end.problem ? end.problem->sentence : "",
              GetParam().taken
                  ? ""
                  : "cannot take a request of more than 16 MiB; nothing was written and the client got "
                    "no answer; let it send one line ended by a line feed");
}

INSTANTIATE_TEST_SUITE_P(, PeerRequestRoom, testing::ValuesIn(kRooms),
                         [](const auto& row) { return row.param.name; });

} // namespace
