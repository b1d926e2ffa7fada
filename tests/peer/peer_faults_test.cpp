// Every fault as a client sees it that is a bare socket.
#include "tests/peer/peer_program.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace peer_test;
using support::content_of;
using support::TemporaryFolder;

const std::string kRequest("<vant>\0\r\xff</vant>\n", 17);

struct FaultCase {
    const char* name;
    const char* fault; // empty for none
    std::string received;
    StreamEnd end;
    bool client_ends; // the client closes its side first; else the program closes by itself
};

const std::string kAnswer = "<vant><shape></shape></vant>";

const FaultCase kFaults[] = {
    {"GoodMannersAnswerWithTheLine",     "",                    kAnswer + "\n",      StreamEnd::closed,                                          true             },
    {"CloseBeforeAnswerClosesOrderly",   "close-before-answer", "",                  StreamEnd::closed,                                          false            },
    {"CloseMidLineClosesAfterHalfALine", "close-mid-line",      kAnswer.substr(0,    14),                                                        StreamEnd::closed, false},
    {"StallSaysNothing",                                  "stall",                                      "",                 StreamEnd::closed,                                    true                   },
    {"DripSendsTheWholeLine",                                  "drip",                                 kAnswer + "\n",             StreamEnd::closed,                         true},
    {"TwoAnswersSendTheLineTwice",                                  "two-answers",                            kAnswer + "\n" + kAnswer + "\n", StreamEnd::closed, true       },
    {"ResetResetsTheConnection",                                  "reset",                              "",         StreamEnd::reset,                                    false                     },
};

class PeerFault : public testing::TestWithParam<FaultCase> {};

TEST_P(PeerFault, IsSeenByTheClientAfterItsRequestWasTaken)
{
    const TemporaryFolder folder;
    std::vector<std::string> arguments = {"--port",         "0",
                                          "--answer",       folder.file("answer", kAnswer + "\n"),
                                          "--save-request", folder.path("request")};
    if (*GetParam().fault != '\0')
        arguments.insert(arguments.end(), {"--fault", GetParam().fault});
    Program program(arguments);
    const RawClient client(program.port());
    ASSERT_TRUE(client.send(kRequest));
    if (GetParam().client_ends)
        client.finish_sending();
    const Received received = client.read_to_end();
    EXPECT_EQ(received.bytes, GetParam().received);
    EXPECT_EQ(received.end, GetParam().end);
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "");
    EXPECT_EQ(content_of(folder.path("request")), kRequest);
}

INSTANTIATE_TEST_SUITE_P(, PeerFault, testing::ValuesIn(kFaults),
                         [](const auto& row) { return row.param.name; });

TEST(PeerFaultRefuse, AnswersNothing)
{
    Program program({"--port", "0", "--fault", "refuse"});
    const RawClient client(program.port());
    client.send(kRequest); // may come too late
    const Received received = client.read_to_end();
    EXPECT_EQ(received.bytes, "");
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerFaultRefuse, ClosesWithoutWaitingForARequest)
{
    Program program({"--port", "0", "--fault", "refuse"});
    const RawClient client(program.port());
    const Received received = client.read_to_end();
    EXPECT_EQ(received.bytes, "");
    EXPECT_EQ(received.end, StreamEnd::closed);
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerFaultDrip, ArrivesInManyPieces)
{
    const TemporaryFolder folder;
    const std::string answer(2000, 'x');
    Program program({"--port", "0", "--fault", "drip", "--answer", folder.file("answer", answer + "\n")});
    const RawClient client(program.port());
    ASSERT_TRUE(client.send(kRequest));
    client.finish_sending();
    const Received received = client.read_to_end();
    EXPECT_EQ(received.bytes, answer + "\n");
    // One send would be one read. The two seconds of 2001 sends leave time for many, even on a busy machine.
    EXPECT_GE(received.reads, 20U);
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerFaultGarbage, IsOneLineThatIsNoMarkup)
{
    Program program({"--port", "0", "--fault", "garbage"});
    const RawClient client(program.port());
    ASSERT_TRUE(client.send(kRequest));
    client.finish_sending();
    const std::string bytes = client.read_to_end().bytes;
    EXPECT_EQ(bytes.substr(0, 2), "<>");
    EXPECT_NE(bytes.find('\0'), std::string::npos);
    EXPECT_EQ(bytes.find('\n'), bytes.size() - 1);
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerFaultHuge, IsOneLineOfSixtyFourMebibytes)
{
    Program program({"--port", "0", "--fault", "huge"});
    const RawClient client(program.port());
    ASSERT_TRUE(client.send(kRequest));
    client.finish_sending();
    const std::string bytes = client.read_to_end().bytes;
    EXPECT_GE(bytes.size(), std::size_t{64} * 1024 * 1024);
    EXPECT_TRUE(bytes.find('\n') == bytes.size() - 1);
    EXPECT_EQ(program.end().status, 0);
}

// A client that has had enough is what a fault is for.
class PeerFaultLeft : public testing::TestWithParam<const char*> {};

TEST_P(PeerFaultLeft, ByAClientInTheMiddleIsDone)
{
    const TemporaryFolder folder;
    const std::string answer(std::size_t{64} * 1024, 'x');
    Program program({"--port", "0", "--fault", GetParam(), "--answer", folder.file("answer", answer + "\n")});
    RawClient client(program.port());
    ASSERT_TRUE(client.send(kRequest));
    EXPECT_EQ(client.read(1).size(), 1U);
    client.reset();
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "");
}

INSTANTIATE_TEST_SUITE_P(, PeerFaultLeft, testing::Values("drip", "garbage", "huge", "two-answers"),
                         [](const auto& row) {
                             std::string name = row.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(PeerFaultStall, EndsWhenTheClientResets)
{
    const TemporaryFolder folder;
    Program program({"--port", "0", "--fault", "stall", "--save-request", folder.path("request")});
    RawClient client(program.port());
    ASSERT_TRUE(client.send(kRequest));
    while (folder.names().count("request") == 0) // a reset would overtake a request that is not read yet
        std::this_thread::yield();
    client.reset();
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "");
}

} // namespace
