#include "Source/vntClientCom/BaseCom.h"

#include "tests/support/child_process.h"
#include "tests/support/descriptors.h"
#include "tests/support/piecewise_sender.h"
#include "tests/support/scripted_peer.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/resource.h>
#include <sys/time.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <new>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VNT_TEST_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VNT_TEST_SANITIZED
#endif
#endif

namespace {

using support::bytes_waiting;
using support::Descriptor;
using support::is_open;
using support::kAllAtOnce;
using support::ParkedInput;
using support::PiecewiseSender;
using support::receive_exactly;
using support::receive_waiting;
using support::run_in_child;
using support::send_all;
using support::SocketPair;
using namespace std::string_literals;

// How long something that must not end is watched, and how long something that must end may take.
constexpr int kNeverMs = 400;
constexpr int kSoonMs = 20000;

constexpr std::size_t kPieceSizes[] = {1, 2, 3, 5};

struct TestLink : BaseCom {
    using BaseCom::data_socket;
    using BaseCom::listen_socket;

    TestLink() = default;
    explicit TestLink(int socket) { data_socket = socket; }
};

// A link on one end of a stream, with the other end in our hand.
class LinkOnPair : public testing::Test {
protected:
    ParkedInput parked;
    SocketPair pair;
    TestLink link{pair.link.release()};
    int peer = pair.peer.get();

    std::string line()
    {
        std::stringstream into;
        link >> into;
        return into.str();
    }
};

// ---------------------------------------------------------------------------------------------- lines,
// written

using LineWriting = LinkOnPair;

TEST_F(LineWriting, AddsOneLineFeed)
{
    link << "a message";
    EXPECT_EQ(receive_waiting(peer), "a message\n");
}

TEST_F(LineWriting, OfNothingSendsOneLineFeed)
{
    link << "";
    EXPECT_EQ(receive_waiting(peer), "\n");
}

TEST_F(LineWriting, Chains)
{
    link << "one"
         << "two";
    EXPECT_EQ(receive_waiting(peer), "one\ntwo\n");
}

TEST_F(LineWriting, SendsEveryByteValueAsItIs)
{
    std::string message = "\0\r\x7f\x80\xff"s;
    link << message;
    EXPECT_EQ(receive_waiting(peer), message + "\n");
}

TEST_F(LineWriting, SurvivesAPeerThatHasClosed)
{
    const auto end = run_in_child(
        [&] {
            signal(SIGPIPE, SIG_DFL);
            shutdown(peer, SHUT_RDWR); // not close: the parent holds this end too
            std::stringstream block("block");
            link << "message";
            link.send_data(block);
            return 7;
        },
        kSoonMs);
    EXPECT_EQ(end.status, 7);
}

TEST(LineWritingOverTcp, SurvivesAPeerThatHasReset)
{
    const auto end = run_in_child(
        [] {
            signal(SIGPIPE, SIG_DFL);
            support::Listener listener;
            TestLink link;
            if (link.connect_server(listener.port(), "127.0.0.1") != 1)
                return 1;
            Descriptor peer = listener.accept_one();
            const linger at_once{1, 0};
            setsockopt(peer.get(), SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
            peer.reset(-1);
            for (int i = 0; i < 10; ++i)
                link << "message";
            return 7;
        },
        kSoonMs);
    EXPECT_EQ(end.status, 7);
}

// ------------------------------------------------------------------------------------------------- lines,
// read

struct LineCase {
    const char* name;
    std::string sent;
    std::string read; // by one call
    std::string left; // in the socket
};

const std::string kLongLine(700001, 'x'); // longer than one look at the socket
const std::string kLongBlock(0x12345, '\xfe');

const LineCase kLines[] = {
    {"EndsAtItsLineFeed",             "abc\n",                     "abc",                     ""     },
    {"OfNothingIsEmpty",              "\n",                        "",                        ""     },
    {"LeavesTheBytesBehindIt",        "abc\ndef",                  "abc",                     "def"  },
    {"LeavesTheNextLineWhole",        "abc\ndef\n",                "abc",                     "def\n"},
    {"LeavesFurtherLineFeeds",        "\n\n\n",                    "",                        "\n\n" },
    {"KeepsCarriageReturnsAndBlanks", " a\r \t\n",                 " a\r \t",                 ""     },
    {"KeepsEveryByteValue",           "\0\x01\x7f\x80\xfe\xff\n"s, "\0\x01\x7f\x80\xfe\xff"s, ""     },
    {"MayBeLongerThanOneLook",        kLongLine + "\ny",           kLongLine,                 "y"    },
};

struct LineInPieces {
    LineCase line;
    std::size_t piece_size;
};

std::vector<LineInPieces> lines_in_pieces()
{
    std::vector<LineInPieces> rows;
    for (const LineCase& line : kLines) {
        const bool is_long = line.sent.size() > 1000;
        for (const std::size_t size : kPieceSizes)
            rows.push_back({line, is_long ? size * 65521 : size});
        rows.push_back({line, kAllAtOnce});
    }
    return rows;
}

std::string pieces_name(const testing::TestParamInfo<LineInPieces>& row)
{
    const std::size_t size = row.param.piece_size;
    return row.param.line.name + (size == kAllAtOnce ? "AllAtOnce"s : "InPiecesOf" + std::to_string(size));
}

class Line : public testing::TestWithParam<LineInPieces> {};

TEST_P(Line, IsReadFromAPair)
{
    const auto& [line, piece_size] = GetParam();
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    PiecewiseSender sender(pair.peer.get(), link.data_socket, line.sent, piece_size);
    std::stringstream into;
    link >> into;
    sender.finish();
    EXPECT_EQ(into.str(), line.read);
    EXPECT_EQ(receive_exactly(link.data_socket, line.left.size()), line.left);
    EXPECT_EQ(bytes_waiting(link.data_socket), 0);
}

TEST_P(Line, IsReadOverTcp)
{
    const auto& [line, piece_size] = GetParam();
    ParkedInput parked;
    support::Listener listener;
    TestLink link;
    ASSERT_EQ(link.connect_server(listener.port(), "127.0.0.1"), 1);
    const Descriptor peer = listener.accept_one();
    PiecewiseSender sender(peer.get(), link.data_socket, line.sent, piece_size);
    std::stringstream into;
    link >> into;
    sender.finish();
    EXPECT_EQ(into.str(), line.read);
    EXPECT_EQ(receive_exactly(link.data_socket, line.left.size()), line.left);
    EXPECT_EQ(bytes_waiting(link.data_socket), 0);
}

INSTANTIATE_TEST_SUITE_P(, Line, testing::ValuesIn(lines_in_pieces()), pieces_name);

using LineReading = LinkOnPair;

TEST_F(LineReading, TakesLineAfterLineOfOneBurst)
{
    send_all(peer, "one\n\ntwo\nthree\n");
    EXPECT_EQ(line(), "one");
    EXPECT_EQ(line(), "");
    EXPECT_EQ(line(), "two");
    EXPECT_EQ(line(), "three");
}

TEST_F(LineReading, AppendsToWhatTheStreamHolds)
{
    send_all(peer, "read\n");
    std::stringstream into("held, "); // its write position is at the start
    link >> into;
    EXPECT_EQ(into.str(), "held, read");
}

TEST_F(LineReading, AppendsToAStreamThatWasReadToItsEnd)
{
    send_all(peer, "read\n");
    std::stringstream into("held ");
    std::string word;
    into >> word >> word;
    ASSERT_TRUE(into.eof());
    link >> into;
    EXPECT_EQ(into.str(), "held read");
    EXPECT_TRUE(into.eof()); // the stream's state is not cleared
}

TEST_F(LineReading, EndsWithWhatCameBeforeAFailure)
{
    std::stringstream into;
    std::thread peer_thread([&] {
        send_all(peer, "abc");
        while (bytes_waiting(link.data_socket) > 0)
            std::this_thread::yield();
        // Unread bytes make the close of a local stream a reset.
        send_all(link.data_socket, "never read");
        pair.peer.reset(-1);
    });
    link >> into;
    peer_thread.join();
    EXPECT_EQ(into.str(), "abc");
}

TEST_F(LineReading, OfABadDescriptorEndsAtOnce)
{
    link.close_socket(link.data_socket);
    EXPECT_EQ(line(), "");
}

TEST_F(LineReading, OfANegativeDescriptorEndsAtOnce)
{
    const Descriptor own(link.data_socket);
    link.data_socket = -1;
    EXPECT_EQ(line(), "");
}

// ------------------------------------------------------------------------------------------------------
// blocks

struct BlockCase {
    const char* name;
    std::string content;
    std::string prefix;
};

const BlockCase kBlocks[] = {
    {"OfNothing",  "",              "\0\0\0\0"s         },
    {"OfOneByte",  "a",             "\0\0\0\x01"s       },
    {"Of256Bytes", std::string(256, 'b'),                 "\0\0\x01\0"s},
    {"OfLineFeedsAndZeroBytes",            "\n\0\n\0"s,   "\0\0\0\x04"s},
    {"OfMoreThanAPacket",            kLongBlock,         "\0\x01\x23\x45"s       },
};

struct BlockInPieces {
    BlockCase block;
    std::size_t piece_size;
};

std::vector<BlockInPieces> blocks_in_pieces()
{
    std::vector<BlockInPieces> rows;
    for (const BlockCase& block : kBlocks) {
        const bool is_long = block.content.size() > 1000;
        for (const std::size_t size : kPieceSizes)
            rows.push_back({block, is_long ? size * 4093 : size});
        rows.push_back({block, kAllAtOnce});
    }
    return rows;
}

class Block : public testing::TestWithParam<BlockInPieces> {};

TEST_P(Block, IsWrittenWithItsLengthFirst)
{
    const auto& [block, piece_size] = GetParam();
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    std::stringstream content(block.content);
    std::thread writer([&] { link.send_data(content); });
    EXPECT_EQ(receive_exactly(pair.peer.get(), 4 + block.content.size()), block.prefix + block.content);
    writer.join();
    EXPECT_EQ(receive_waiting(pair.peer.get()), "");
}

TEST_P(Block, IsRead)
{
    const auto& [block, piece_size] = GetParam();
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    PiecewiseSender sender(pair.peer.get(), link.data_socket, block.prefix + block.content + "behind",
                           piece_size, block.prefix.size());
    std::stringstream into("held before");
    into.setstate(std::ios::failbit);
    EXPECT_EQ(link.recieve_data(into), 1);
    sender.finish();
    EXPECT_EQ(into.str(), block.content);
    EXPECT_TRUE(into.good());
    EXPECT_EQ(receive_exactly(link.data_socket, 6), "behind");
}

INSTANTIATE_TEST_SUITE_P(, Block, testing::ValuesIn(blocks_in_pieces()), [](const auto& row) {
    const std::size_t size = row.param.piece_size;
    return row.param.block.name + (size == kAllAtOnce ? "AllAtOnce"s : "InPiecesOf" + std::to_string(size));
});

class BlockReading : public LinkOnPair {
protected:
    std::stringstream into{"held before"};
};

TEST_F(BlockReading, TakesBlockAfterBlock)
{
    send_all(peer, "\0\0\0\x02"s + "ab" + "\0\0\0\0"s + "\0\0\0\x01"s + "c");
    for (const char* const block : {"ab", "", "c"}) {
        EXPECT_EQ(link.recieve_data(into), 1);
        EXPECT_EQ(into.str(), block);
    }
}

TEST_F(BlockReading, WithAShortLengthFails)
{
    send_all(peer, "\0\0"s);
    EXPECT_EQ(link.recieve_data(into), 0);
    EXPECT_EQ(into.str(), "");
}

TEST_F(BlockReading, WithoutALengthFailsWhenThePeerHasClosed)
{
    pair.peer.reset(-1);
    EXPECT_EQ(link.recieve_data(into), 0);
    EXPECT_EQ(into.str(), "");
}

TEST_F(BlockReading, OfALengthPastItsSignReceivesNothingMore)
{
    send_all(peer, "\x80\0\0\0"s + "xyz");
    EXPECT_EQ(link.recieve_data(into), 0);
    EXPECT_EQ(into.str(), "");
    EXPECT_EQ(receive_waiting(link.data_socket), "xyz");
}

TEST_F(BlockReading, ThatFailsHalfWayLeavesTheStreamEmpty)
{
    std::thread peer_thread([&] {
        send_all(peer, "\0\0\0\x08"s);
        while (bytes_waiting(link.data_socket) > 0)
            std::this_thread::yield();
        send_all(peer, "half");
        while (bytes_waiting(link.data_socket) > 0)
            std::this_thread::yield();
        send_all(link.data_socket, "never read");
        pair.peer.reset(-1);
    });
    EXPECT_EQ(link.recieve_data(into), 0);
    peer_thread.join();
    EXPECT_EQ(into.str(), "");
    EXPECT_TRUE(into.good());
}

#ifndef VNT_TEST_SANITIZED // they reserve more address space than the limit leaves
TEST_F(BlockReading, OfALengthThatMemoryCannotHoldThrows)
{
    send_all(peer, "\x7f\xff\xff\xff"s);
    const auto end = run_in_child(
        [&] {
            const rlimit limit{1u << 30, 1u << 30};
            setrlimit(RLIMIT_AS, &limit);
            try {
                link.recieve_data(into);
            } catch (const std::bad_alloc&) {
                return into.str().empty() ? 7 : 8;
            }
            return 9;
        },
        kSoonMs);
    EXPECT_EQ(end.status, 7);
}
#endif

// -----------------------------------------------------------------------------------------------------
// signals

std::atomic<int> signals_taken = 0;

// Has SIGUSR1 interrupt system calls for as long as it lives.
class InterruptingSignal {
public:
    InterruptingSignal()
    {
        struct sigaction action {};
        action.sa_handler = [](int) { ++signals_taken; };
        sigaction(SIGUSR1, &action, &before_); // without SA_RESTART
    }
    InterruptingSignal(const InterruptingSignal&) = delete;
    InterruptingSignal& operator=(const InterruptingSignal&) = delete;
    ~InterruptingSignal() { sigaction(SIGUSR1, &before_, nullptr); }

    static void interrupt(std::thread& thread, int times)
    {
        for (int i = 0; i < times; ++i) {
            const int before = signals_taken;
            pthread_kill(thread.native_handle(), SIGUSR1);
            while (signals_taken == before)
                std::this_thread::yield();
        }
    }

private:
    struct sigaction before_ {};
};

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

// Fills what the stream buffers, so that the next send has to wait; returns how many bytes that took.
std::size_t fill(int socket)
{
    const std::string bytes(4096, '.');
    std::size_t filled = 0;
    for (std::size_t size = bytes.size(); size > 0;) {
        const ssize_t sent = send(socket, bytes.data(), size, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent > 0)
            filled += static_cast<std::size_t>(sent);
        else
            size /= 2;
    }
    return filled;
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

// -----------------------------------------------------------------------------------------------------
// polling

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

// --------------------------------------------------------------------------------------------------
// connecting

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

// A client that tries until somebody listens.
Descriptor connect_when_listening(unsigned int port)
{
    for (;;) {
        Descriptor client(socket(AF_INET, SOCK_STREAM, 0));
        const sockaddr_in server = support::loopback(port);
        if (connect(client.get(), reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0)
            return client;
        std::this_thread::yield();
    }
}

TEST(Serving, AcceptsOnePeerAndStopsListening)
{
    const auto end = run_in_child(
        [] {
            ParkedInput::park();
            const unsigned int port = support::unused_port();
            TestLink server;
            Descriptor client;
            std::thread client_thread([&] { client = connect_when_listening(port); });
            const int accepted = server.start_server(0x30000u + port);
            client_thread.join();
            if (accepted != 1)
                return 1;
            if (is_open(server.listen_socket))
                return 2;
            send_all(client.get(), "question\n");
            std::stringstream question;
            server >> question;
            if (question.str() != "question")
                return 3;
            server << "answer";
            if (receive_exactly(client.get(), 7) != "answer\n")
                return 4;
            TestLink late;
            return late.connect_server(port, "127.0.0.1") == 0 ? 7 : 5;
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

// ---------------------------------------------------------------------------------------------------- the
// end

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

} // namespace
