// Batch runs of the real editor in which no figure comes: the document stays as it was, and the run ends.
#include "tests/editor/real/desktop.h"
#include "tests/editor/real/saved_drawing.h"
#include "tests/support/program_start.h"

#include <gtest/gtest.h>

#include <signal.h>

namespace {

using namespace real_editor_test;

constexpr const char* kDrawing =
    R"(<svg id="root" xmlns="http://www.w3.org/2000/svg" width="200" height="100"><g id="g"><rect id="r" x="5" y="5" )"
    R"(width="10" height="10"/></g></svg>)";
constexpr const char* kAnswer = "<vant><shape><line><start x=\"0.0\" y=\"0.0\" z=\"0.0\"/><end x=\"100.0\" "
                                "y=\"-50.0\" z=\"0.0\"/></line></shape></vant>\n";

class BatchRun : public testing::Test {
protected:
    void SetUp() override
    {
        if (const std::string missing = Desktop::missing(); !missing.empty())
            GTEST_SKIP() << missing;
        desktop = std::make_unique<Desktop>();
        desktop->file("drawing.svg", kDrawing);
        desktop->file("answer.xml", kAnswer);
    }

    std::unique_ptr<Process> start_batch(const std::string& command = "org.vant.start",
                                         const std::string& seconds = "") const
    {
        const auto save = [&](const std::string& name) {
            return "export-filename:" + desktop->path(name) + ";export-do;";
        };
        return desktop->start({"env", "VANT_TIMEOUT=" + seconds, support::find_program("inkscape"),
                               "--app-id-tag=batch", "--batch-process",
                               "--actions=" + save("before.svg") + command + ".noprefs;" + save("after.svg"),
                               desktop->path("drawing.svg")},
                              "batch");
    }

    std::unique_ptr<Process> start_peer(const std::string& fault) const
    {
        std::vector<std::string> words{
            VNT_PEER_PROGRAM, "--fault", fault, "--answer", desktop->path("answer.xml"), "--timeout", "120"};
        if (fault != "refuse")
            words.insert(words.end(), {"--save-request", desktop->path("request.xml")});
        auto peer = desktop->start(words, "peer");
        wait_until("vant-peer", [&] { return peer->output().find('\n') != std::string::npos; });
        return peer;
    }

    Change change() const
    {
        return change_between(desktop->content("before.svg"), desktop->content("after.svg"), View::compared);
    }

    void expect_nothing_happened() const
    {
        EXPECT_EQ(change(), Change());
        EXPECT_EQ(desktop->kept(), std::vector<std::string>());
        EXPECT_EQ(desktop->placed(), std::vector<std::string>());
        desktop->wait_for_the_sketch_to_end();
    }

    std::unique_ptr<Desktop> desktop;
};

const std::string kClosed = "the sketch application closed the connection without an answer; the drawing is "
                            "as it was; start the sketch "
                            "again\n";
const std::string kAlert =
    "note: the plug-in shows an alert: VANT Information: Unable to start VANT\n"
    "the plug-in ended with an alert (VANT Information: Unable to start VANT); the drawing "
    "is as it was; look at what the sketch application says, and try again\n";

struct FaultCase {
    const char* name;
    const char* fault; // of vant-peer
    std::string log;
};
const FaultCase kFaults[] = {
    {"OfACloseBeforeTheAnswer", "close-before-answer", kClosed                                            },
    {"OfACloseWithinTheLine",   "close-mid-line",      kClosed                                            },
    {"OfBytesThatAreNoMarkup",  "garbage",             "vntClientCom( 194 ) : invalid date\n    " + kAlert},
    {"OfAReset",                "reset",               "vntClientCom( 203 ) : can't accept\n    " + kAlert},
};

class FaultInABatch : public BatchRun, public testing::WithParamInterface<FaultCase> {};
TEST_P(FaultInABatch, LeavesTheDocumentAsItWas)
{
    const auto peer = start_peer(GetParam().fault);
    const auto batch = start_batch();
    EXPECT_EQ(batch->end(), 0);
    expect_nothing_happened();
    EXPECT_EQ(desktop->log(), GetParam().log);
}
INSTANTIATE_TEST_SUITE_P(, FaultInABatch, testing::ValuesIn(kFaults),
                         [](const auto& row) { return row.param.name; });

// Whether the close comes before the request or behind it is the machine's choice: it is an alert or a closed connection.
TEST_F(BatchRun, LeavesTheDocumentAsItWasWhenTheSketchApplicationRefuses)
{
    const auto peer = start_peer("refuse");
    const auto batch = start_batch();
    EXPECT_EQ(batch->end(), 0);
    expect_nothing_happened();
    EXPECT_NE(desktop->log().find("; the drawing is as it was; "), std::string::npos) << desktop->log();
}

struct OddAnswerCase {
    const char* name;
    const char* fault; // of vant-peer
    std::size_t paths;
};
const OddAnswerCase kOddAnswers[] = {
    {"OneByteAtATime", "drip",        1 },
    {"TwiceIsOne",     "two-answers", 1 },
    {"Of64MiB",        "huge",        64},
};
class AnswerInABatch : public BatchRun, public testing::WithParamInterface<OddAnswerCase> {};
TEST_P(AnswerInABatch, IsDrawn)
{
    const auto peer = start_peer(GetParam().fault);
    const auto batch = start_batch();
    EXPECT_EQ(batch->end(), 0);
    EXPECT_EQ(change(), paths_in("root", GetParam().paths)) << desktop->log();
    EXPECT_EQ(desktop->placed().size(), 1U);
}
INSTANTIATE_TEST_SUITE_P(, AnswerInABatch, testing::ValuesIn(kOddAnswers),
                         [](const auto& row) { return row.param.name; });

TEST_F(BatchRun, LeavesTheDocumentAsItWasWhenTheSketchApplicationDies)
{
    const auto peer = start_peer("stall");
    const auto batch = start_batch();
    wait_until("the request", [&] { return desktop->has("request.xml"); });
    EXPECT_FALSE(batch->has_ended());
    peer->send_signal(SIGKILL);
    EXPECT_EQ(batch->end(), 0);
    expect_nothing_happened();
    EXPECT_EQ(desktop->log(), kClosed);
}

TEST_F(BatchRun, EndsWhenItsTimeIsUp)
{
    const auto peer = start_peer("stall");
    const auto batch = start_batch("org.vant.start", "2");
    EXPECT_EQ(batch->end(), 0);
    expect_nothing_happened();
    EXPECT_NE(desktop->log().find("the time of VANT_TIMEOUT is up; the drawing is as it was; "),
              std::string::npos)
        << desktop->log();
}

TEST_F(BatchRun, EndsWithoutASketchApplication)
{
    const auto batch = start_batch();
    EXPECT_EQ(batch->end(), 0);
    expect_nothing_happened();
    EXPECT_EQ(desktop->log(),
              "There is no sketch application: none listens on 127.0.0.1:4910, and vant-sketch is not "
              "installed. Install the package vant-sketch, or start your sketch application, and "
              "choose Start VANT again.\n");
}

TEST_F(BatchRun, EndsWithoutASketchToPlace)
{
    const auto batch = start_batch("org.vant.place");
    EXPECT_EQ(batch->end(), 0);
    expect_nothing_happened();
    EXPECT_EQ(desktop->log(), "There is no sketch to place. Start VANT begins one.\n");
}

} // namespace
