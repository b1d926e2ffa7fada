// Lines, written and read.
#include "tests/support/child_process.h"
#include "tests/support/piecewise_sender.h"
#include "tests/support/scripted_peer.h"
#include "tests/vntClientCom/link_end.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

using link_end::arrives_of_a_cut_send;
using link_end::in_pieces;
using link_end::InPieces;
using link_end::kMoreThanBuffered;
using link_end::kSoonMs;
using link_end::LinkOnPair;
using link_end::name_in_pieces;
using link_end::TestLink;
using support::bytes_waiting;
using support::Descriptor;
using support::ParkedInput;
using support::PiecewiseSender;
using support::receive_exactly;
using support::receive_waiting;
using support::run_in_child;
using support::send_all;
using support::SocketPair;
using namespace std::string_literals;

namespace {

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

// Which piece goes with which send.
TEST(LineWritingInRecords, SendsTheMessageAndThenTheLineFeed)
{
    ParkedInput parked;
    SocketPair pair(SOCK_SEQPACKET);
    TestLink link(pair.link.release());
    link << "message";
    const std::vector<std::string> expected{"message", "\n"};
    EXPECT_EQ(support::receive_waiting_records(pair.peer.get()), expected);
}

TEST_F(LineWriting, DoesNotContinueAPartialSend)
{
    const std::string message(kMoreThanBuffered, 'm');
    const std::string arrived = arrives_of_a_cut_send(peer, 0, [&] { link << message; });
    ASSERT_GT(arrived.size(), 1u);
    EXPECT_LT(arrived.size(), message.size());
    EXPECT_TRUE(arrived ==
                message.substr(0, arrived.size() - 1) + "\n"); // not EXPECT_EQ: it would print both
}

struct LineCase {
    const char* name;
    std::string sent;
    std::string read; // by one call
    std::string left; // in the socket
};

const std::string kLongLine(700001, 'x'); // longer than one look at the socket

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

bool is_long(const LineCase& line) { return line.sent.size() > 1000; }

class Line : public testing::TestWithParam<InPieces<LineCase>> {
protected:
    // Has peer, the other end of the link's stream, send the row's bytes while the link reads one line.
    static void expect_read(TestLink& link, int peer)
    {
        const auto& [line, piece_size] = GetParam();
        PiecewiseSender sender(peer, link.data_socket, line.sent, piece_size);
        std::stringstream into;
        link >> into;
        sender.finish();
        EXPECT_EQ(into.str(), line.read);
        EXPECT_EQ(receive_exactly(link.data_socket, line.left.size()), line.left);
        EXPECT_EQ(bytes_waiting(link.data_socket), 0);
    }
};

TEST_P(Line, IsReadFromAPair)
{
    ParkedInput parked;
    SocketPair pair;
    TestLink link(pair.link.release());
    expect_read(link, pair.peer.get());
}

TEST_P(Line, IsReadOverTcp)
{
    ParkedInput parked;
    support::Listener listener;
    TestLink link;
    ASSERT_EQ(link.connect_server(listener.port(), "127.0.0.1"), 1);
    const Descriptor peer = listener.accept_one();
    expect_read(link, peer.get());
}

INSTANTIATE_TEST_SUITE_P(, Line, testing::ValuesIn(in_pieces(kLines, is_long, 65521)),
                         name_in_pieces<LineCase>);

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

} // namespace
