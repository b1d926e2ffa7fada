// Blocks, written and read.
#include "tests/support/child_process.h"
#include "tests/support/piecewise_sender.h"
#include "tests/support/sanitized.h"
#include "tests/vntClientCom/link_end.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <new>
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
using support::ParkedInput;
using support::PiecewiseSender;
using support::receive_exactly;
using support::receive_waiting;
using support::run_in_child;
using support::send_all;
using support::SocketPair;
using namespace std::string_literals;

namespace {

const std::string kLongBlock(0x12345, '\xfe');

struct BlockCase {
    const char* name;
    std::string content;
    std::string prefix;
};

// clang-format off
const BlockCase kBlocks[] = {
    {"OfNothing", "", "\0\0\0\0"s},
    {"OfOneByte", "a", "\0\0\0\x01"s},
    {"Of256Bytes", std::string(256, 'b'), "\0\0\x01\0"s},
    {"OfLineFeedsAndZeroBytes", "\n\0\n\0"s, "\0\0\0\x04"s},
    {"OfMoreThanAPacket", kLongBlock, "\0\x01\x23\x45"s},
};
// clang-format on

bool is_long(const BlockCase& block) { return block.content.size() > 1000; }

class Block : public testing::TestWithParam<InPieces<BlockCase>> {};

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

INSTANTIATE_TEST_SUITE_P(, Block, testing::ValuesIn(in_pieces(kBlocks, is_long, 4093)),
                         name_in_pieces<BlockCase>);

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

TEST_F(BlockReading, OfALengthThatMemoryCannotHoldThrows)
{
    if (support::kSanitized)
        GTEST_SKIP() << "sanitizers reserve more address space than the limit leaves";
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

using BlockWriting = LinkOnPair;

TEST(BlockWritingInRecords, SendsTheLengthAndThenTheContent)
{
    ParkedInput parked;
    SocketPair pair(SOCK_SEQPACKET);
    TestLink link(pair.link.release());
    link.send_data(std::stringstream("block"));
    const std::vector<std::string> expected{"\0\0\0\x05"s, "block"};
    EXPECT_EQ(support::receive_waiting_records(pair.peer.get()), expected);
}

TEST_F(BlockWriting, DoesNotContinueAPartialSend)
{
    const std::string content(kMoreThanBuffered, 'b');
    const std::stringstream block(content);
    const std::string arrived = arrives_of_a_cut_send(peer, 4, [&] { link.send_data(block); });
    ASSERT_GT(arrived.size(), 4u);
    EXPECT_LT(arrived.size(), content.size());
    EXPECT_TRUE(arrived ==
                "\0\x80\0\0"s + content.substr(0, arrived.size() - 4)); // EXPECT_EQ would print both
}

} // namespace
