// How a link ends, waits without end, and outlives signals.
#include "tests/support/child_process.h"
#include "tests/vntClientCom/link_end.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <thread>

using link_end::fill;
using link_end::kNeverMs;
using link_end::kSoonMs;
using link_end::LinkOnPair;
using link_end::TestLink;
using support::bytes_waiting;
using support::InterruptingSignal;
using support::is_open;
using support::ParkedInput;
using support::receive_exactly;
using support::run_in_child;
using support::send_all;
using support::SocketPair;
using namespace std::string_literals;

namespace {

TEST(BaseComEnd, KeepsBothDescriptorsZeroAtFirst)
{
    ParkedInput parked;
    const TestLink link;
    EXPECT_EQ(link.data_socket, 0);
    EXPECT_EQ(link.listen_socket, 0);
}

TEST(BaseComEnd, KeepsClosingBothDescriptors)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            SocketPair pair;
            const int number = pair.link.get();
            {
                TestLink link(pair.link.release());
                link.close_socket(number);
                if (dup2(pair.peer.get(), number) != number) // somebody else's now
                    return 1;
            }
            if (is_open(number))
                return 2;
            return is_open(0) ? 3 : 7;
        },
        kSoonMs);
    EXPECT_EQ(end.status, 7);
}

TEST(BaseComEnd, KeepsStaleDescriptorsAfterDisconnect)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            SocketPair pair;
            TestLink link(pair.link.release());
            link.listen_socket = pair.peer.release();
            const int data = link.data_socket;
            const int listening = link.listen_socket;
            link.disconnect();
            if (is_open(data) || is_open(listening))
                return 1;
            if (link.data_socket != data || link.listen_socket != listening)
                return 2;
            return is_open(0) ? 7 : 3;
        },
        kSoonMs);
    EXPECT_EQ(end.status, 7);
}

TEST(BaseComEnd, KeepsClosingAnyDescriptor)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            SocketPair own;
            SocketPair other;
            TestLink link(own.link.release());
            link.listen_socket = own.peer.release();
            const int data = link.data_socket;
            const int listening = link.listen_socket;
            const int number = other.link.release();
            if (link.close_socket(number) != 0 || is_open(number))
                return 1;
            if (link.close_socket(number) != -1)
                return 2;
            if (link.data_socket != data || link.listen_socket != listening)
                return 3;
            return is_open(data) && is_open(listening) ? 7 : 4;
        },
        kSoonMs);
    EXPECT_EQ(end.status, 7);
}

TEST(BaseComEnd, TellsWhatTheSystemSaysOfAClose)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link;
    const int number = pair.link.release();
    EXPECT_EQ(link.close_socket(number), 0);
    EXPECT_EQ(link.close_socket(number), -1);
}

TEST(BaseComEnd, KeepsWaitingForALineAfterAnOrderlyClose)
{
    const auto end = run_in_child(
        [] {
            SocketPair pair;
            TestLink link(pair.link.release());
            send_all(pair.peer.get(), "half a line");
            pair.peer.reset(-1);
            std::stringstream into;
            link >> into;
            return 7;
        },
        kNeverMs);
    EXPECT_FALSE(end.ended);
}

TEST(BaseComEnd, KeepsWaitingForABlockAfterAnOrderlyClose)
{
    const auto end = run_in_child(
        [] {
            SocketPair pair;
            TestLink link(pair.link.release());
            send_all(pair.peer.get(), "\0\0\0\x08half"s);
            pair.peer.reset(-1);
            std::stringstream into;
            link.recieve_data(into);
            return 7;
        },
        kNeverMs);
    EXPECT_FALSE(end.ended);
}

using Interruption = LinkOnPair;

TEST_F(Interruption, DoesNotEndALine)
{
    const InterruptingSignal signal;
    std::stringstream into;
    std::thread reader([&] { link >> into; });
    InterruptingSignal::interrupt(reader, 20);
    send_all(peer, "a");
    while (bytes_waiting(link.data_socket) > 0)
        std::this_thread::yield();
    InterruptingSignal::interrupt(reader, 20);
    send_all(peer, "b\n");
    reader.join();
    EXPECT_EQ(into.str(), "ab");
}

TEST_F(Interruption, DoesNotEndABlock)
{
    const InterruptingSignal signal;
    std::stringstream into;
    int result = -1;
    std::thread reader([&] { result = link.recieve_data(into); });
    send_all(peer, "\0\0\0\x02"s + "a");
    while (bytes_waiting(link.data_socket) > 0)
        std::this_thread::yield();
    InterruptingSignal::interrupt(reader, 20);
    send_all(peer, "b");
    reader.join();
    EXPECT_EQ(result, 1);
    EXPECT_EQ(into.str(), "ab");
}

TEST_F(Interruption, DoesNotLoseAMessageThatWaits)
{
    const InterruptingSignal signal;
    const std::size_t filled = fill(link.data_socket);
    std::thread writer([&] { link << "message"; });
    InterruptingSignal::interrupt(writer, 20);
    EXPECT_EQ(receive_exactly(peer, filled + 8).substr(filled), "message\n");
    writer.join();
}

} // namespace
