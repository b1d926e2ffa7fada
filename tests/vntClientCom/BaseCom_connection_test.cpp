// Polling, connecting, serving, and the clock.
#include "tests/support/child_process.h"
#include "tests/support/scripted_peer.h"
#include "tests/vntClientCom/link_end.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/resource.h>
#include <sys/time.h>

#include <algorithm>
#include <atomic>
#include <sstream>
#include <string>
#include <thread>

using link_end::fill;
using link_end::kSoonMs;
using link_end::LinkOnPair;
using link_end::TestLink;
using support::Descriptor;
using support::InterruptingSignal;
using support::is_open;
using support::ParkedInput;
using support::receive_exactly;
using support::receive_waiting;
using support::run_in_child;
using support::send_all;

namespace {

using BaseComPoll = LinkOnPair;

TEST_F(BaseComPoll, FindsNoInputOnASilentStream) { EXPECT_EQ(link.check_recievable(), 0); }

TEST_F(BaseComPoll, FindsInput)
{
    send_all(peer, "x");
    EXPECT_EQ(link.check_recievable(), 1);
    EXPECT_EQ(receive_waiting(link.data_socket), "x"); // polling takes nothing
}

TEST_F(BaseComPoll, FindsTheEndOfAClosedStream)
{
    pair.peer.reset(-1);
    EXPECT_EQ(link.check_recievable(), 1);
}

TEST_F(BaseComPoll, FindsRoomForOutput) { EXPECT_EQ(link.check_sendable(), 1); }

TEST_F(BaseComPoll, FindsNoRoomInAFullStream)
{
    fill(link.data_socket);
    EXPECT_EQ(link.check_sendable(), 0);
}

// Many polls, so that a wait that is too long shows on a busy machine too. Both return 7 when all is well.
constexpr int kPolls = 100;
constexpr int kPollsMs = 5000; // 100 microseconds a poll are 10 ms

int polls_of_silence(TestLink& link)
{
    for (int i = 0; i < kPolls; ++i) {
        if (link.check_recievable() != 0)
            return 1;
    }
    return 7;
}

// Who waits gives up the processor, which the system counts.
int polls_of_a_full_stream(TestLink& link)
{
    fill(link.data_socket);
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    for (int i = 0; i < kPolls; ++i) {
        if (link.check_sendable() != 0)
            return 1;
    }
    getrusage(RUSAGE_SELF, &after);
    return after.ru_nvcsw - before.ru_nvcsw < kPolls / 2 ? 7 : 2;
}

TEST_F(BaseComPoll, WaitsForInputForAMomentOnly)
{
    EXPECT_EQ(run_in_child([&] { return polls_of_silence(link); }, kPollsMs).status, 7);
}

TEST_F(BaseComPoll, DoesNotWaitForRoom)
{
    EXPECT_EQ(run_in_child([&] { return polls_of_a_full_stream(link); }, kPollsMs).status, 7);
}

TEST_F(BaseComPoll, KeepsABadDescriptorReady)
{
    link.close_socket(link.data_socket);
    EXPECT_EQ(link.check_recievable(), 1);
    EXPECT_EQ(link.check_sendable(), 1);
    link.data_socket = -1;
    EXPECT_EQ(link.check_recievable(), 1);
    EXPECT_EQ(link.check_sendable(), 1);
}

// Beyond what a descriptor set holds.
class HighDescriptor : public LinkOnPair {
protected:
    static constexpr int kHigh = FD_SETSIZE + 500;

    void SetUp() override
    {
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = std::max<rlim_t>(limit.rlim_cur, kHigh + 1);
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
        ASSERT_EQ(dup2(link.data_socket, kHigh), kHigh);
        close(link.data_socket);
        link.data_socket = kHigh;
    }
};

TEST_F(HighDescriptor, IsPolledForInput)
{
    EXPECT_EQ(link.check_recievable(), 0);
    send_all(peer, "x");
    EXPECT_EQ(link.check_recievable(), 1);
}

TEST_F(HighDescriptor, IsPolledForOutput)
{
    EXPECT_EQ(link.check_sendable(), 1);
    fill(link.data_socket);
    EXPECT_EQ(link.check_sendable(), 0);
}

TEST_F(HighDescriptor, WaitsForInputForAMomentOnly)
{
    EXPECT_EQ(run_in_child([&] { return polls_of_silence(link); }, kPollsMs).status, 7);
}

TEST_F(HighDescriptor, DoesNotWaitForRoom)
{
    EXPECT_EQ(run_in_child([&] { return polls_of_a_full_stream(link); }, kPollsMs).status, 7);
}

TEST_F(HighDescriptor, ReadsAndWritesLines)
{
    send_all(peer, "in\n");
    EXPECT_EQ(line(), "in");
    link << "out";
    EXPECT_EQ(receive_waiting(peer), "out\n");
}

TEST_F(HighDescriptor, KeepsABadDescriptorReady)
{
    link.close_socket(kHigh);
    EXPECT_EQ(link.check_recievable(), 1);
    EXPECT_EQ(link.check_sendable(), 1);
}

TEST(Connecting, WhereNobodyListensFailsAndClosesTheSocket)
{
    ParkedInput parked;
    TestLink link;
    EXPECT_EQ(link.connect_server(support::unused_port(), "127.0.0.1"), 0);
    EXPECT_GT(link.data_socket, 0);
    EXPECT_FALSE(is_open(link.data_socket));
}

TEST(Connecting, TakesTheLowSixteenBitsOfThePort)
{
    ParkedInput parked;
    support::Listener listener;
    TestLink link;
    EXPECT_EQ(link.connect_server(0x50000u + listener.port(), "127.0.0.1"), 1);
    link << "hello";
    const Descriptor peer = listener.accept_one();
    EXPECT_EQ(receive_exactly(peer.get(), 6), "hello\n");
}

class BadAddress : public testing::TestWithParam<const char*> {};

TEST_P(BadAddress, FailsToConnect)
{
    ParkedInput parked;
    support::Listener listener;
    TestLink link;
    EXPECT_EQ(link.connect_server(listener.port(), GetParam()), 0);
    EXPECT_FALSE(is_open(link.data_socket));
}

INSTANTIATE_TEST_SUITE_P(, BadAddress, testing::Values("localhost", "", "127.0.0.1.1", "300.1.1.1", "::1"),
                         [](const auto& row) { return "Row" + std::to_string(row.index); });

// A client that tries until somebody listens, or until it is asked for its connection.
class LateClient {
public:
    explicit LateClient(unsigned int port, in_addr_t host = INADDR_LOOPBACK)
        : thread_([this, server = support::ipv4_address(port, host)] {
              do {
                  client_.reset(socket(AF_INET, SOCK_STREAM, 0));
                  is_connected_ =
                      connect(client_.get(), reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0;
              } while (!is_connected_ && !is_asked_);
          })
    {
    }
    LateClient(const LateClient&) = delete;
    LateClient& operator=(const LateClient&) = delete;
    ~LateClient() { stop(); }

    // Not connected when nobody has listened until now.
    int connection()
    {
        stop();
        return client_.get();
    }

private:
    void stop()
    {
        is_asked_ = true;
        if (thread_.joinable())
            thread_.join();
    }

    Descriptor client_;
    bool is_connected_ = false;
    std::atomic<bool> is_asked_ = false;
    std::thread thread_;
};

TEST(Serving, AcceptsOnePeerAndStopsListening)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            const support::ReservedPort port;
            TestLink server;
            LateClient client(port.number());
            if (server.start_server(0x30000u + port.number()) != 1)
                return 1;
            if (is_open(server.listen_socket))
                return 2;
            send_all(client.connection(), "question\n");
            std::stringstream question;
            server >> question;
            if (question.str() != "question")
                return 3;
            server << "answer";
            if (receive_exactly(client.connection(), 7) != "answer\n")
                return 4;
            TestLink late;
            return late.connect_server(port.number(), "127.0.0.1") == 0 ? 7 : 5;
        },
        kSoonMs);
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.status, 7);
}

TEST(Serving, TakesAPeerAtAnyAddressOfTheMachine)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            const support::ReservedPort port;
            TestLink server;
            LateClient client(port.number(), INADDR_LOOPBACK + 1); // 127.0.0.2
            if (server.start_server(port.number()) != 1)
                return 1;
            send_all(client.connection(), "x");
            return receive_exactly(server.data_socket, 1) == "x" ? 7 : 2;
        },
        kSoonMs);
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.status, 7);
}

// The side that closes first has the system keep the port for a while.
TEST(Serving, MayStartAgainOnThePortThatItLeft)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            support::ReservedPort port;
            {
                TestLink server;
                LateClient client(port.number());
                if (server.start_server(port.number()) != 1)
                    return 1;
                port.release();
                server.close_socket(server.data_socket);
                if (receive_exactly(client.connection(), 1) != "") // until the server's close is here
                    return 2;
            }
            ParkedInput::park();
            TestLink server;
            const LateClient client(port.number());
            return server.start_server(port.number()) == 1 ? 7 : 3;
        },
        kSoonMs);
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.status, 7);
}

// 7 when the server knows that it has no peer, and has stopped listening.
int status_without_a_peer(const TestLink& server, int accepted)
{
    if (accepted != 0)
        return 1;
    if (server.data_socket != -1)
        return 2;
    return server.listen_socket > 0 && !is_open(server.listen_socket) ? 7 : 3;
}

TEST(Serving, FailsAndStopsListeningWhenASignalInterruptsIt)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            const support::ReservedPort port;
            const InterruptingSignal signal;
            TestLink server;
            std::atomic<bool> has_ended = false;
            std::thread interrupter([&, serving = pthread_self()] {
                InterruptingSignal::interrupt_until(serving, [&] { return has_ended.load(); });
            });
            const int accepted = server.start_server(port.number());
            has_ended = true;
            interrupter.join();
            return status_without_a_peer(server, accepted);
        },
        kSoonMs);
    EXPECT_TRUE(end.ended);
    EXPECT_EQ(end.status, 7);
}

TEST(Serving, OnAPortInUseFailsAndClosesItsSocket)
{
    ParkedInput parked;
    support::Listener holder;
    TestLink server;
    EXPECT_EQ(server.start_server(holder.port()), 0);
    EXPECT_GT(server.listen_socket, 0);
    EXPECT_FALSE(is_open(server.listen_socket));
}

TEST(Clock, TellsTheWallTimeInSeconds)
{
    ParkedInput parked;
    const TestLink link;
    timeval before{}, after{};
    gettimeofday(&before, nullptr);
    const double now = link.get_now_time();
    gettimeofday(&after, nullptr);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1000000.0;
    };
    EXPECT_GE(now, seconds(before));
    EXPECT_LE(now, seconds(after));
}

} // namespace
