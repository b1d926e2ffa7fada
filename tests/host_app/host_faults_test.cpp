// What vant-host run does over the real port when the sketch application answers, misbehaves or is not there.
#include "tests/host_app/host_program.h"
#include "tests/peer/peer_program.h"
#include "tests/plugin/fixed_port_peer.h"
#include "tests/support/sanitized.h"

#include <gtest/gtest.h>

#include <signal.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using host_app_test::kDrawnArtwork;
using host_app_test::kSmallArtwork;
using host_app_test::ProgramEnd;
using host_app_test::Workplace;
using plugin_tests::FixedPortListener;
using plugin_tests::FixedPortPeer;
using Arguments = std::vector<std::string>;

const std::string kAlertNote =
    "vant-host: note: the plug-in shows an alert: VANT Information: Unable to start VANT\n";
const std::string kAlertEnd =
    "vant-host: the plug-in ended with an alert (VANT Information: Unable to start VANT); ";
const std::string kLookAtIt = "; look at what the sketch application says, and try again\n";

// vant-peer on the plug-in's port, ready to take its connection.
class Peer {
public:
    explicit Peer(Arguments arguments) : program_(with_timeout(std::move(arguments)))
    {
        EXPECT_EQ(program_.port(), plugin_tests::kPluginPort);
    }

private:
    static Arguments with_timeout(Arguments arguments)
    {
        arguments.insert(arguments.end(), {"--timeout", "80"});
        return arguments;
    }

    peer_test::Program program_;
};

// ---------------------------------------------------------------------------------------- faults of the peer

struct FaultCase {
    const char* name;
    const char* fault; // of vant-peer
    Arguments arguments;
    int status;
    // Exact, but for UNHARMED: what is said of the file of -o.
    std::string errors;
};

// Faults that leave the plug-in with nothing to draw.
const FaultCase kFaults[] = {
    {"ACloseBeforeTheAnswerIsNoticed",
     "close-before-answer", {},
     4, "vant-host: the sketch application closed the connection without an answer; UNHARMED; start the sketch "
     "again\n"                                                                                  },
    {"ACloseWithinTheLineIsNoticed",
     "close-mid-line",      {},
     4, "vant-host: the sketch application closed the connection without an answer; UNHARMED; start the sketch "
     "again\n"                                                                                  },
    {"SilenceEndsWhenTheTimeIsUp",
     "stall",               {"--timeout", "1.5"},
     4, "vant-host: the time of --timeout is up; UNHARMED; give it more time, or leave --timeout out\n"},
    {"BytesThatAreNoMarkupAreAnAlert",
     "garbage",             {},
     3, "vntClientCom( 194 ) : invalid date\n" + kAlertNote + kAlertEnd + "UNHARMED" + kLookAtIt       },
    {"AResetIsAnAlert",
     "reset",               {},
     3, "vntClientCom( 203 ) : can't accept\n" + kAlertNote + kAlertEnd + "UNHARMED" + kLookAtIt       },
};

class PeerFaults : public testing::TestWithParam<FaultCase> {
protected:
    Workplace place;

    Peer misbehaving() const
    {
        return Peer({"--fault", GetParam().fault, "--answer", place.path("line.xml")});
    }

    ProgramEnd expected(const std::string& unharmed) const
    {
        return {GetParam().status, "", host_app_test::replaced(GetParam().errors, "UNHARMED", unharmed)};
    }
};

TEST_P(PeerFaults, MakeNoFile)
{
    const Peer peer = misbehaving();
    EXPECT_EQ(place.run_small(GetParam().arguments), expected("DIR/out.svg was not made"));
    EXPECT_EQ(place.names(), (std::set<std::string>{"line.xml", "small.svg"}));
}

TEST_P(PeerFaults, LeaveTheFileAsItWas)
{
    place.file("out.svg", "an older drawing");
    const Peer peer = misbehaving();
    EXPECT_EQ(place.run_small(GetParam().arguments), expected("DIR/out.svg is as it was"));
    EXPECT_EQ(place.content("out.svg"), "an older drawing");
    EXPECT_EQ(place.names(), (std::set<std::string>{"line.xml", "out.svg", "small.svg"}));
}

INSTANTIATE_TEST_SUITE_P(, PeerFaults, testing::ValuesIn(kFaults),
                         [](const auto& row) { return row.param.name; });

class HostRun : public testing::Test {
protected:
    Workplace place;
};

// Waits for the whole request, and closes with all of it unread, which resets the connection.
TEST_F(HostRun, TakesAnUnreadRequestForAnAlert)
{
    FixedPortListener listener;
    std::thread peer([&] {
        const support::Descriptor connection = listener.accept_one();
        std::string request(8192, '\0');
        for (ssize_t got = 0; got == 0 || request[static_cast<std::size_t>(got) - 1] != '\n';)
            got = recv(connection.get(), request.data(), request.size(), MSG_PEEK);
    });
    const ProgramEnd end = place.run_small();
    peer.join();
    EXPECT_EQ(end, (ProgramEnd{3, "",
                               "vntClientCom( 203 ) : can't accept\n" + kAlertNote + kAlertEnd +
                                   "DIR/out.svg was not made" + kLookAtIt}));
    EXPECT_FALSE(place.has("out.svg"));
}

// Whether the close comes before the request or behind it is the machine's choice: a reset that the link saw while
// it sent its request it does not see again, and waits; else it is an alert.
TEST_F(HostRun, EndsWhenItsRequestIsRefused)
{
    const Peer peer({"--fault", "refuse"});
    const ProgramEnd end = place.run_small({"--timeout", "20"});
    EXPECT_TRUE(end.status == 3 || end.status == 4) << end.status;
    EXPECT_EQ(end.errors.find("--timeout is up"), std::string::npos) << end.errors;
    EXPECT_NE(end.errors.find("DIR/out.svg was not made"), std::string::npos) << end.errors;
    EXPECT_FALSE(place.has("out.svg"));
}

// ----------------------------------------------------------------------- answers that are drawn, odd or not

struct DrawnCase {
    const char* name;
    Arguments peer;
};

const DrawnCase kDrawn[] = {
    {"AnAnswerAtOnce",      {}                        },
    {"OneByteAtATime",      {"--fault", "drip"}       },
    {"TheFirstAnswerAlone", {"--fault", "two-answers"}},
};

class DrawnAnswers : public testing::TestWithParam<DrawnCase> {
protected:
    Workplace place;
};

TEST_P(DrawnAnswers, StandInTheDocument)
{
    Arguments arguments = GetParam().peer;
    arguments.insert(arguments.end(), {"--answer", place.path("line.xml")});
    const Peer peer(arguments);
    EXPECT_EQ(place.run_small(), (ProgramEnd{0, "DIR/out.svg: 1 new path\n", ""}));
    EXPECT_EQ(place.content("out.svg"), kDrawnArtwork);
    EXPECT_EQ(place.content("small.svg"), kSmallArtwork);
    EXPECT_EQ(place.names(), (std::set<std::string>{"line.xml", "out.svg", "small.svg"}));
}

INSTANTIATE_TEST_SUITE_P(, DrawnAnswers, testing::ValuesIn(kDrawn),
                         [](const auto& row) { return row.param.name; });

TEST_F(HostRun, DrawsAnAnswerOf64Mebibytes)
{
    const Peer peer({"--fault", "huge"});
    EXPECT_EQ(place.run_small(), (ProgramEnd{0, "DIR/out.svg: 64 new paths\n", ""}));
}

TEST_F(HostRun, MayWriteTheArtworkItself)
{
    const Peer peer({"--answer", place.path("line.xml")});
    EXPECT_EQ(place.run({"run", "DIR/small.svg", "-o", "DIR/small.svg"}),
              (ProgramEnd{0, "DIR/small.svg: 1 new path\n", ""}));
    EXPECT_EQ(place.content("small.svg"), kDrawnArtwork);
    EXPECT_EQ(place.names(), (std::set<std::string>{"line.xml", "small.svg"}));
}

TEST_F(HostRun, LeavesTheArtworkAsItWasWhenItWasToBeWritten)
{
    const Peer peer({"--fault", "reset"});
    EXPECT_EQ(place.run({"run", "DIR/small.svg", "-o", "DIR/small.svg"}).status, 3);
    EXPECT_EQ(place.content("small.svg"), kSmallArtwork);
}

TEST_F(HostRun, CopiesTheDocumentUnchangedForAnEmptyFigure)
{
    const Peer peer({"--answer", place.file("empty.xml", "<vant></vant>\n")});
    EXPECT_EQ(place.run_small(),
              (ProgramEnd{0, "DIR/out.svg: nothing was drawn; an unchanged copy of DIR/small.svg\n", ""}));
    EXPECT_EQ(place.content("out.svg"), kSmallArtwork);
}

TEST_F(HostRun, LeavesOutAPathThatIsNotFinite)
{
    const Peer peer(
        {"--answer", place.file("far.xml", "<vant><shape><line><start x=\"1e300\" y=\"0\"/><end x=\"0\" "
                                           "y=\"0\"/></line></shape><shape><line><start x=\"0\" "
                                           "y=\"0\"/><end x=\"100\" y=\"-50\"/></line></shape></vant>\n")});
    EXPECT_EQ(place.run_small(),
              (ProgramEnd{0, "DIR/out.svg: 1 new path\n",
                          "vant-host: note: path 0 has a coordinate that is not a finite number and is left "
                          "out\n"}));
    EXPECT_EQ(place.content("out.svg"), kDrawnArtwork);
}

// ----------------------------------------------------------------------------------- nobody there, or at last

const std::string kNobodyListens =
    "; nothing listens on 127.0.0.1:4910: start the sketch application first, or name it with --launch\n";

TEST_F(HostRun, SaysThatNobodyListens)
{
    EXPECT_EQ(place.run_small(),
              (ProgramEnd{3, "", kAlertNote + kAlertEnd + "DIR/out.svg was not made" + kNobodyListens}));
    EXPECT_FALSE(place.has("out.svg"));
}

TEST_F(HostRun, LaunchesTheSketchApplicationAndWaitsForIt)
{
    const std::string command =
        std::string("exec ") + VNT_PEER_PROGRAM + " --timeout 80 --answer DIR/line.xml";
    EXPECT_EQ(place.run_small({"--launch", command}),
              // What it says stands on the host's standard error, so that the host's output stays clean.
              (ProgramEnd{0, "DIR/out.svg: 1 new path\n", "listening on 127.0.0.1:4910\n"}));
    EXPECT_EQ(place.content("out.svg"), kDrawnArtwork);
}

TEST_F(HostRun, LaunchesNothingWhereSomebodyListens)
{
    const Peer peer({"--answer", place.path("line.xml")});
    EXPECT_EQ(place.run_small({"--launch", "echo launched >DIR/launched"}).status, 0);
    EXPECT_FALSE(place.has("launched"));
}

TEST_F(HostRun, TellsHowALaunchedCommandFailed)
{
    EXPECT_EQ(
        place.run_small({"--launch", "exit 7"}),
        (ProgramEnd{1, "",
                    "vant-host: cannot launch the sketch application: the command \"exit 7\" ended with "
                    "status 7, and nothing listens on 127.0.0.1:4910; DIR/out.svg was not made; try "
                    "the command in a terminal\n"}));
    EXPECT_FALSE(place.has("out.svg"));
}

TEST_F(HostRun, WaitsForALaunchedCommandUntilTheTimeIsUp)
{
    const std::string command = "echo $$ >DIR/process; exec sleep 80 >DIR/sleep.log 2>&1";
    const ProgramEnd end = place.run_small({"--launch", command, "--timeout", "1"});
    EXPECT_EQ(kill(std::stoi(place.content("process")), SIGKILL), 0);
    EXPECT_EQ(end, (ProgramEnd{4, "",
                               "vant-host: the time of --timeout is up before " + command +
                                   " listened on 127.0.0.1:4910; DIR/out.svg was not made; give it more "
                                   "time\n"}));
}

// ------------------------------------------------------------------------------------------ long and large work

// A figure of many strokes: a line of some megabytes.
std::string many_lines(int strokes)
{
    std::string answer = "<vant>";
    for (int i = 0; i < strokes; ++i) {
        answer += "<shape><line><start x=\"" + std::to_string(i) +
                  ".0\" y=\"0.0\" z=\"0.0\"/><end x=\"0.0\" y=\"1.0\" z=\"0.0\"/></line></shape>";
    }
    return answer + "</vant>";
}

TEST_F(HostRun, ReadsALargeAnswerWhosePeerHasClosedAtOnce)
{
    constexpr int kStrokes = support::kSanitized ? 10000 : 40000;
    FixedPortPeer peer(plugin_tests::answering(many_lines(kStrokes)));
    EXPECT_EQ(place.run_small(),
              (ProgramEnd{0, "DIR/out.svg: " + std::to_string(kStrokes) + " new paths\n", ""}));
}

TEST_F(HostRun, EndsInTheAlertWhereTheMemoryIsUsedUp)
{
    if (support::kSanitized)
        GTEST_SKIP() << "a sanitizer's address space cannot be limited";
    const Peer peer(
        {"--answer", place.file("turns.xml", "<vant><shape><circular_arc><center x=\"0\" y=\"0\"/>"
                                             "<radius>50</radius><angle start=\"0\" end=\"628318530\"/>"
                                             "</circular_arc></shape></vant>\n")});
    EXPECT_EQ(
        place.run_small({"--memory", "300"}),
        (ProgramEnd{3, "",
                    "vant-host: note: the plug-in shows an alert: VANT information: Unable to start "
                    "VANT\nvant-host: the plug-in ended with an alert (VANT information: Unable to start "
                    "VANT); DIR/out.svg was not made; if the figure is very large, allow more with --memory; "
                    "see with --trace what the plug-in did\n"}));
    EXPECT_FALSE(place.has("out.svg"));
}

// -------------------------------------------------------------------------------------------- standard streams

struct StreamsCase {
    const char* name;
    bool has_input;
    host_app_test::Stream output, errors;
};

constexpr auto kPiped = host_app_test::Stream::piped;
constexpr auto kClosed = host_app_test::Stream::closed;

const StreamsCase kStreams[] = {
    {"WithoutInput",             false, kPiped,  kPiped },
    {"WithoutOutput",            true,  kClosed, kPiped },
    {"WithoutErrors",            true,  kPiped,  kClosed},
    {"WithoutOutputAndErrors",   true,  kClosed, kClosed},
    {"WithoutAnyStandardStream", false, kClosed, kClosed},
};

class ClosedStreams : public testing::TestWithParam<StreamsCase> {
protected:
    Workplace place;
};

TEST_P(ClosedStreams, HarmNothing)
{
    const auto& [name, has_input, output, errors] = GetParam();
    const Peer peer({"--answer", place.path("line.xml"), "--save-request", place.path("request.xml")});
    const ProgramEnd end = place.run_small({"--trace", "DIR/trace.jsonl"}, {has_input, output, errors, {}});
    EXPECT_EQ(end, (ProgramEnd{0, output == kPiped ? "DIR/out.svg: 1 new path\n" : "", ""}));
    EXPECT_EQ(place.content("out.svg"), kDrawnArtwork);
    EXPECT_TRUE(place.content("request.xml").ends_with("</vant>\n"));
    EXPECT_TRUE(place.content("trace.jsonl").starts_with("{\"call\":\"IsEqual\","));
}

TEST_P(ClosedStreams, HarmNothingWhenTheRunFails)
{
    const auto& [name, has_input, output, errors] = GetParam();
    place.file("out.svg", "an older drawing");
    const Peer peer({"--fault", "garbage"});
    EXPECT_EQ(place.run_small({}, {has_input, output, errors, {}}).status, 3);
    EXPECT_EQ(place.content("out.svg"), "an older drawing");
    EXPECT_EQ(place.content("small.svg"), kSmallArtwork);
}

INSTANTIATE_TEST_SUITE_P(, ClosedStreams, testing::ValuesIn(kStreams),
                         [](const auto& row) { return row.param.name; });

// --------------------------------------------------------------------------------------------- progress

TEST_F(HostRun, ShowsOnATerminalThatItWaits)
{
    const Peer peer({"--fault", "stall"});
    const ProgramEnd end =
        place.run_small({"--timeout", "2.5"}, {true, kPiped, host_app_test::Stream::terminal, {}});
    EXPECT_EQ(end.status, 4);
    EXPECT_NE(end.errors.find("\r\033[Kvant-host: waiting for the sketch application, 1 s"),
              std::string::npos)
        << end.errors;
    EXPECT_NE(end.errors.find("\r\033[Kvant-host: waiting for the sketch application, 2 s"),
              std::string::npos)
        << end.errors;
    EXPECT_EQ(end.errors.find(", 0 s"), std::string::npos) << "shown before a second has passed";
    // A terminal makes a carriage return of its own before the line feed.
    EXPECT_TRUE(
        end.errors.ends_with("\r\033[Kvant-host: the time of --timeout is up; DIR/out.svg was not made; "
                             "give it more time, or leave --timeout out\r\n"))
        << end.errors;
}

} // namespace
