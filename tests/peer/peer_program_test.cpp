// vant-peer as its users see it: what it says, takes, sends and exits with.
#include "tests/peer/peer_program.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <optional>
#include <string>
#include <vector>

namespace {

using namespace peer_test;
using support::content_of;
using support::TemporaryFolder;

const std::string kRequest = "<vant><viewport_information/></vant>\n";
const std::string kAnswer = "<vant><shape></shape></vant>";

using Arguments = std::vector<std::string>;

// A folder with an answer in it, and the program's arguments for it.
struct Desk {
    TemporaryFolder folder;
    std::string answer = folder.file("answer.xml", kAnswer + "\n");
    std::string request = folder.path("request.xml");

    Arguments with(const Arguments& more) const
    {
        Arguments arguments = {"--port", "0", "--answer", answer};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    Arguments saving(const Arguments& more = {}) const
    {
        Arguments arguments = with({"--save-request", request});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }
    bool has_request() const { return folder.names().count("request.xml") != 0; }
};

// Sends a request and takes everything that comes for it.
std::string exchange(unsigned int port, const std::string& request = kRequest)
{
    const RawClient client(port);
    EXPECT_TRUE(client.send(request));
    client.finish_sending();
    return client.read_to_end().bytes;
}

TEST(PeerProgram, SaysItsReadyLineAndNothingElse)
{
    const Desk desk;
    Program program(desk.with({}));
    const std::string port = std::to_string(program.port());
    EXPECT_EQ(exchange(program.port()), kAnswer + "\n");
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.output, "listening on 127.0.0.1:" + port + "\n");
    EXPECT_EQ(end.errors, "");
    EXPECT_EQ(end.status, 0);
}

TEST(PeerProgram, ListensOnNoOtherAddress)
{
    const Desk desk;
    Program program(desk.with({}));
    EXPECT_FALSE(RawClient(program.port(), 2).is_connected());
    EXPECT_TRUE(RawClient(program.port(), 1).is_connected());
}

TEST(PeerProgram, TellsOfAPortInUse)
{
    const Desk desk;
    Program first(desk.with({}));
    const std::string port = std::to_string(first.port());
    Program second({"--port", port, "--answer", desk.answer});
    const ProgramEnd end = second.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.output, "");
    EXPECT_EQ(end.errors,
              "vant-peer: cannot listen on 127.0.0.1:" + port +
                  ": Address already in use; nothing was written; stop the program that listens there, "
                  "or choose another port with --port (0 takes a free one)\n");
}

TEST(PeerProgram, TakesAPortThatHasJustBeenLeft)
{
    const Desk desk;
    std::string port;
    {
        Program first({"--port", "0", "--fault", "close-before-answer"});
        port = std::to_string(first.port());
        const RawClient client(first.port());
        client.send(kRequest);
        EXPECT_EQ(client.read_to_end().bytes, ""); // the side that closes first keeps the port for a while
        EXPECT_EQ(first.end().status, 0);
    }
    Program second({"--port", port, "--answer", desk.answer});
    EXPECT_EQ(std::to_string(second.port()), port);
}

struct RequestCase {
    const char* name;
    std::string sent;
    std::string saved;
    std::string errors;
};

const RequestCase kRequests[] = {
    {"AnEmptyLine",             "\n",                                   "\n",   ""                    },
    {"EveryByteButTheLineFeed", std::string("\0\r\t\x01\x7f\x80\xff\n", 8),
     std::string("\0\r\t\x01\x7f\x80\xff\n",                                                            8), ""},
    {"ALongLine",                       std::string(3'000'000,                                                             'x') + "\n",                                                         std::string(3'000'000,                                    'x') + "\n", ""},
    {"OnlyTheFirstOfTwoLines",    "one\ntwo\n",                               "one\n",
     "vant-peer: note: 4 bytes behind the request's line feed were not used\n"},
    {"NothingBehindTheLine",          "one\nx",           "one\n",
     "vant-peer: note: 1 bytes behind the request's line feed were not used\n"                                                         },
};

class PeerRequest : public testing::TestWithParam<RequestCase> {};

TEST_P(PeerRequest, IsSavedByteForByte)
{
    const Desk desk;
    Program program(desk.saving());
    EXPECT_EQ(exchange(program.port(), GetParam().sent), kAnswer + "\n");
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, GetParam().errors);
    EXPECT_TRUE(content_of(desk.request) == GetParam().saved);
    EXPECT_EQ(desk.folder.names(), (std::set<std::string>{"answer.xml", "request.xml"}));
}

INSTANTIATE_TEST_SUITE_P(, PeerRequest, testing::ValuesIn(kRequests),
                         [](const auto& row) { return row.param.name; });

TEST(PeerRequestFile, LacksWhatComesAfterTheAnswerWhichIsTold)
{
    const Desk desk;
    Program program(desk.saving());
    const RawClient client(program.port());
    client.send(kRequest);
    EXPECT_EQ(client.read(kAnswer.size() + 1), kAnswer + "\n");
    client.send("more");
    client.finish_sending();
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "vant-peer: note: 4 bytes behind the request's line feed were not used\n");
    EXPECT_EQ(content_of(desk.request), kRequest);
}

TEST(PeerRequestFile, IsThereBeforeTheAnswer)
{
    const Desk desk;
    Program program(desk.saving());
    const RawClient client(program.port());
    client.send(kRequest);
    EXPECT_EQ(client.read(kAnswer.size() + 1), kAnswer + "\n");
    EXPECT_EQ(content_of(desk.request), kRequest);
}

TEST(PeerRequestFile, MayComeInPieces)
{
    const Desk desk;
    Program program(desk.saving());
    const RawClient client(program.port());
    for (const char byte : kRequest)
        ASSERT_TRUE(client.send(std::string(1, byte)));
    EXPECT_EQ(client.read(kAnswer.size() + 1), kAnswer + "\n");
    EXPECT_EQ(content_of(desk.request), kRequest);
}

TEST(PeerRequestFile, IsTheNewestOfSeveral)
{
    const Desk desk;
    Program program(desk.saving({"--exchanges", "2"}));
    exchange(program.port(), "a longer first request\n");
    EXPECT_EQ(content_of(desk.request), "a longer first request\n");
    exchange(program.port(), "second\n");
    EXPECT_EQ(program.end().status, 0);
    EXPECT_EQ(content_of(desk.request), "second\n");
}

enum class Leave { orderly, by_reset };

struct LeaveCase {
    const char* name;
    std::string sent;
    Leave leave;
};

const LeaveCase kLeaves[] = {
    {"WithoutAWord",        "",              Leave::orderly },
    {"WithHalfALine",       "<vant><viewpo", Leave::orderly },
    {"WithoutAWordByReset", "",              Leave::by_reset},
};

class PeerClientLeaves : public testing::TestWithParam<LeaveCase> {};

TEST_P(PeerClientLeaves, AndNothingIsWritten)
{
    const Desk desk;
    desk.folder.file("request.xml", "as it was");
    Program program(desk.saving());
    RawClient client(program.port());
    client.send(GetParam().sent);
    if (GetParam().leave == Leave::orderly)
        client.close();
    else
        client.reset();
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors,
              "vant-peer: the client left before its request was complete, after " +
                  std::to_string(GetParam().sent.size()) +
                  " bytes without a line feed; nothing was written; let it send one line ended by a "
                  "line feed\n");
    EXPECT_EQ(content_of(desk.request), "as it was");
    EXPECT_EQ(desk.folder.names(), (std::set<std::string>{"answer.xml", "request.xml"}));
}

INSTANTIATE_TEST_SUITE_P(, PeerClientLeaves, testing::ValuesIn(kLeaves),
                         [](const auto& row) { return row.param.name; });

TEST(PeerProgram, TellsOfAClientThatDidNotTakeTheWholeAnswer)
{
    const Desk desk;
    // More than the system's buffers of both sides hold.
    desk.folder.file("answer.xml", std::string(std::size_t{64} * 1024 * 1024, 'x') + "\n");
    Program program(desk.with({}));
    RawClient client(program.port());
    client.send(kRequest);
    EXPECT_EQ(client.read(1), "x");
    client.close();
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors,
              "vant-peer: cannot send the whole answer: the client left before it had taken it; its "
              "request was taken; let it read up to the line feed\n");
}

TEST(PeerProgram, RefusesARequestWithoutEnd)
{
    const Desk desk;
    Program program(desk.saving());
    const RawClient client(program.port());
    const std::string piece(std::size_t{1024} * 1024, 'x');
    while (client.send(piece)) {
    }
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors,
              "vant-peer: cannot take a request of more than 16 MiB; nothing was written and the client "
              "got no answer; let it send one line ended by a line feed\n");
    EXPECT_FALSE(desk.has_request());
}

TEST(PeerProgram, TellsOfARequestThatItCannotSave)
{
    const Desk desk;
    Program program(desk.with({"--save-request", desk.folder.path("none/request.xml")}));
    EXPECT_EQ(exchange(program.port()), "");
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors,
              "vant-peer: cannot write the request to " + desk.folder.path("none/request.xml") +
                  ": No such file or directory; what was there is unchanged and the client got no "
                  "answer; choose another file with --save-request\n");
}

TEST(PeerExchanges, AreServedOneAfterTheOther)
{
    const Desk desk;
    Program program(desk.with({"--exchanges", "2"}));
    const RawClient first(program.port());
    const RawClient second(program.port());
    second.send(kRequest);
    second.finish_sending();
    first.send(kRequest);
    first.finish_sending();
    EXPECT_EQ(first.read_to_end().bytes, kAnswer + "\n");
    EXPECT_EQ(second.read_to_end().bytes, kAnswer + "\n");
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerExchanges, LetNobodyInAfterTheLast)
{
    const Desk desk;
    Program program(desk.with({}));
    const RawClient last(program.port());
    last.send(kRequest);
    EXPECT_EQ(last.read(kAnswer.size() + 1), kAnswer + "\n");
    EXPECT_FALSE(RawClient(program.port()).is_connected());
}

TEST(PeerExchanges, GoOnAfterOneThatFailedAndTellOfItInTheEnd)
{
    const Desk desk;
    Program program(desk.saving({"--exchanges", "2"}));
    RawClient(program.port()).send("<vant>");
    EXPECT_EQ(exchange(program.port()), kAnswer + "\n");
    EXPECT_EQ(program.end().status, 1);
    EXPECT_EQ(content_of(desk.request), kRequest);
}

class PeerStopped : public testing::TestWithParam<int> {};

TEST_P(PeerStopped, BetweenExchangesWithoutEnd)
{
    const Desk desk;
    Program program(desk.with({"--exchanges", "0"}));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(exchange(program.port()), kAnswer + "\n");
    program.send_signal(GetParam());
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 0);
    EXPECT_EQ(end.errors, "");
}

TEST_P(PeerStopped, WithinARequest)
{
    const Desk desk;
    Program program(desk.saving());
    const RawClient client(program.port());
    client.send("<vant>");
    program.send_signal(GetParam());
    EXPECT_EQ(program.end().status, 0);
    EXPECT_FALSE(desk.has_request());
}

TEST_P(PeerStopped, WhileItStalls)
{
    const Desk desk;
    Program program(desk.saving({"--fault", "stall", "--exchanges", "2"}));
    exchange(program.port());
    const RawClient client(program.port());
    client.send("second\n");
    program.send_signal(GetParam());
    EXPECT_EQ(client.read_to_end().bytes, "");
    EXPECT_EQ(program.end().status, 0);
}

INSTANTIATE_TEST_SUITE_P(, PeerStopped, testing::Values(SIGINT, SIGTERM),
                         [](const auto& row) { return row.param == SIGINT ? "SIGINT" : "SIGTERM"; });

struct TimeCase {
    const char* name;
    const char* fault; // empty for none
    std::string sent;  // nothing: no client comes
    double seconds;    // enough for the client to come
    std::string where;
};

const TimeCase kTimes[] = {
    {"WithoutAClient", "",      "",       0.2, "waiting for a client"},
    {"WithinARequest", "",      "<vant>", 3.0, "within one"          },
    {"WhileItStalls",  "stall", kRequest, 3.0, "within one"          },
};

class PeerTimeout : public testing::TestWithParam<TimeCase> {};

TEST_P(PeerTimeout, EndsTheCommand)
{
    const Desk desk;
    Arguments arguments = desk.with({"--timeout", std::to_string(GetParam().seconds)});
    if (*GetParam().fault != '\0')
        arguments.insert(arguments.end(), {"--fault", GetParam().fault});
    const auto start = std::chrono::steady_clock::now();
    Program program(arguments);
    std::optional<RawClient> client;
    if (!GetParam().sent.empty()) {
        client.emplace(program.port());
        client->send(GetParam().sent);
    }
    const ProgramEnd end = program.end();
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::duration<double>(GetParam().seconds));
    EXPECT_EQ(end.status, 4);
    EXPECT_EQ(end.errors, "vant-peer: the time was up after 0 exchanges, " + GetParam().where +
                              "; requests that were saved are unharmed; give --timeout more seconds\n");
}

INSTANTIATE_TEST_SUITE_P(, PeerTimeout, testing::ValuesIn(kTimes),
                         [](const auto& row) { return row.param.name; });

TEST(PeerTimeoutInTime, ChangesNothing)
{
    const Desk desk;
    Program program(desk.with({"--timeout", "3600"}));
    EXPECT_EQ(exchange(program.port()), kAnswer + "\n");
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerAnswerFile, OfManyLinesIsRefusedWithAnOffer)
{
    const Desk desk;
    desk.folder.file("answer.xml", "<vant>\n</vant>\n");
    Program program(desk.with({}));
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.output, "");
    EXPECT_EQ(end.errors,
              "vant-peer: cannot answer with " + desk.answer +
                  ", which has more than one line; nothing was started; add --join to take out its line "
                  "breaks and indentation, or name a file of one line\n");
}

TEST(PeerAnswerFile, OfManyLinesIsJoinedToTheExamplesOneLine)
{
    const std::string answers = VNT_ANSWERS;
    Program program({"--port", "0", "--answer", answers + "/every_primitive.pretty.xml", "--join"});
    EXPECT_EQ(exchange(program.port()), content_of(answers + "/every_primitive.xml"));
    EXPECT_EQ(program.end().status, 0);
}

TEST(PeerAnswerFile, ThatIsMissingStartsNothing)
{
    const Desk desk;
    Program program({"--port", "0", "--answer", desk.folder.path("none")});
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.output, "");
}

TEST(PeerAnswerFile, IsNotLookedAtByAFaultThatNeedsNone)
{
    const Desk desk;
    Program program({"--port", "0", "--fault", "stall", "--answer", desk.folder.path("none")});
    EXPECT_EQ(exchange(program.port()), "");
    EXPECT_EQ(program.end().status, 0);
}

struct SayCase {
    const char* name;
    Arguments arguments;
    int status;
    std::string output_start;
    std::string errors_start;
};

const SayCase kSays[] = {
    {"HelpOnDemand",    {"--help"},     0, "usage: vant-peer --answer FILE", ""                                                           },
    {"VersionOnDemand", {"--version"},  0, "vant-peer ",                     ""                                                           },
    {"WhatIsMissing",
     {},
     2,                                    "",
     "vant-peer: no answer to give; nothing was started; name one with --answer FILE"                                                     },
    {"WhatIsUnknown",   {"--nonsense"}, 2, "",                               "vant-peer: unknown option --nonsense; nothing was started; "},
};

class PeerSays : public testing::TestWithParam<SayCase> {};

TEST_P(PeerSays, AndEnds)
{
    Program program(GetParam().arguments);
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, GetParam().status);
    EXPECT_EQ(end.output.substr(0, GetParam().output_start.size()), GetParam().output_start);
    EXPECT_EQ(end.output.empty(), GetParam().output_start.empty());
    EXPECT_EQ(end.errors.substr(0, GetParam().errors_start.size()), GetParam().errors_start);
    EXPECT_EQ(end.errors.empty(), GetParam().errors_start.empty());
}

INSTANTIATE_TEST_SUITE_P(, PeerSays, testing::ValuesIn(kSays),
                         [](const auto& row) { return row.param.name; });

TEST(PeerOutput, ThatNobodyReadsIsTold)
{
    const Desk desk;
    Program program(desk.with({}), Program::Output::nobody_reads);
    const ProgramEnd end = program.end();
    EXPECT_EQ(end.status, 1);
    EXPECT_EQ(end.errors,
              "vant-peer: cannot write to standard output; nothing was done; let it lead somewhere\n");
}

} // namespace
