// Editors that do what editors do: ask, wait for their turn, are answered, and leave.
#include "tests/sketch_app/heard_link.h"

#include <memory>

namespace {

using namespace sketch_app_test;
using State = LinkServer::State;

const QByteArray kFigure = "<vant><shape><line><start x=\"0\" y=\"0\" z=\"0\"/><end x=\"9\" y=\"5\" z=\"0\"/>"
                           "</line></shape></vant>";
const std::string kFigureLine = kFigure.toStdString() + "\n";

TEST(LinkStates, AreClosedUntilItListensAndThenIdle)
{
    needApplication();
    LinkServer server;
    EXPECT_EQ(server.state(), State::closed);
    EXPECT_EQ(server.problem(), "");
    ASSERT_TRUE(server.listen(0));
    EXPECT_EQ(server.state(), State::idle);
    EXPECT_NE(server.port(), 0);
    EXPECT_FALSE(server.waitingSince().isValid());
    EXPECT_FALSE(server.answer(kFigure));
    EXPECT_FALSE(server.cancel());
}

TEST(LinkStates, FollowOneExchange)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    const QDateTime before = QDateTime::currentDateTime();
    editor.send(requestLine());
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
    EXPECT_EQ(link.server.state(), State::editorWaiting);
    EXPECT_GE(link.server.waitingSince(), before);
    EXPECT_LE(link.server.waitingSince(), QDateTime::currentDateTime());
    EXPECT_TRUE(link.server.answer(kFigure));
    EXPECT_FALSE(link.server.answer(kFigure));
    EXPECT_TRUE(link.says({"answered", "sent"}));
    EXPECT_EQ(editor.receivedToItsEnd(), kFigureLine);
    EXPECT_FALSE(link.server.waitingSince().isValid());
}

TEST(LinkStates, StaySentWhenTheAnsweredEditorResets)
{
    HeardLink link;
    AskingEditor editor(link);
    link.server.answer(kFigure);
    EXPECT_EQ(editor.received(), kFigureLine);
    editor.reset();
    EXPECT_TRUE(link.says({"answered", "sent"}));
    EXPECT_EQ(link.server.state(), State::sent);
}

TEST(LinkStates, CancelSendsAnEmptyFigure)
{
    HeardLink link;
    AskingEditor editor(link);
    EXPECT_TRUE(link.server.cancel());
    EXPECT_EQ(editor.receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.says({"answered", "sent"}));
}

TEST(LinkStates, TellTheWholeRequest)
{
    HeardLink link;
    vnt::sketch::Request request;
    QObject::connect(&link.server, &LinkServer::requested, &link.server,
                     [&](const vnt::sketch::Request& told) { request = told; });
    AskingEditor editor(link);
    EXPECT_EQ(request.window.y, 22);
    EXPECT_EQ(request.window.height, 768);
    EXPECT_EQ(request.sheet.width, 1024);
    EXPECT_EQ(request.sheet.sheet_to_model.f, 768);
    ASSERT_TRUE(request.sheet.grid.has_value());
    EXPECT_EQ(request.sheet.grid->subdivisions, 4);
}

// --------------------------------------------------------------------------------------------- pieces of a line

struct PiecesCase {
    const char* name;
    std::size_t size;
};
const PiecesCase kPieces[] = {
    {"OneByteAtATime",    1      },
    {"TwoBytesAtATime",   2      },
    {"ThreeBytesAtATime", 3      },
    {"FiveBytesAtATime",  5      },
    {"InTwoHalves",       500    },
    {"AllAtOnce",         1 << 20},
};
class RequestInPieces : public testing::TestWithParam<PiecesCase> {};

TEST_P(RequestInPieces, IsOneRequest)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    ASSERT_TRUE(editor.sendInPieces(requestLine(), GetParam().size));
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
    link.server.answer(kFigure);
    EXPECT_EQ(editor.receivedToItsEnd(), kFigureLine);
}
INSTANTIATE_TEST_SUITE_P(, RequestInPieces, testing::ValuesIn(kPieces),
                         [](const auto& row) { return row.param.name; });

TEST(RequestHalf, IsNoRequestYet)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    const std::string line = requestLine();
    editor.send(line.substr(0, line.size() - 1)); // all but the line feed
    ScriptedEditor other(link.server.port());
    other.send(requestLine(800));
    EXPECT_TRUE(link.says({"waiting", "requested 800"}));
    editor.send("\n");
    EXPECT_TRUE(link.says({"others 1"}));
}

TEST(RequestWithMoreBehindIt, IsAnsweredAllTheSame)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    editor.send(requestLine() + requestLine(800));
    EXPECT_TRUE(link.says({"waiting", "requested 1024"}));
    editor.send("and more");
    link.server.answer(kFigure);
    EXPECT_EQ(editor.receivedToItsEnd(), kFigureLine);
    EXPECT_TRUE(link.says({"answered", "sent"}));
}

// ------------------------------------------------------------------------------------------------------- turns

TEST(LinkTurns, ComeInTheOrderOfTheRequests)
{
    HeardLink link;
    ScriptedEditor first(link.server.port());
    ScriptedEditor second(link.server.port());
    ScriptedEditor third(link.server.port());
    second.send(requestLine(2));
    ASSERT_TRUE(link.says({"waiting", "requested 2"}));
    first.send(requestLine(1));
    ASSERT_TRUE(link.says({"others 1"}));
    third.send(requestLine(3));
    ASSERT_TRUE(link.says({"others 2"}));
    EXPECT_TRUE(link.server.answer("<vant>2</vant>"));
    EXPECT_TRUE(link.says({"answered", "others 1", "waiting", "requested 1"}));
    EXPECT_TRUE(link.server.answer("<vant>1</vant>"));
    EXPECT_TRUE(link.says({"answered", "others 0", "waiting", "requested 3"}));
    EXPECT_TRUE(link.server.answer("<vant>3</vant>"));
    EXPECT_TRUE(link.says({"answered", "sent"}));
    EXPECT_EQ(first.receivedToItsEnd(), "<vant>1</vant>\n");
    EXPECT_EQ(second.receivedToItsEnd(), "<vant>2</vant>\n");
    EXPECT_EQ(third.receivedToItsEnd(), "<vant>3</vant>\n");
}

TEST(LinkTurns, TellSinceWhenTheEditorWaitsWhoseTurnItIs)
{
    HeardLink link;
    AskingEditor first(link, 1);
    const QDateTime since = link.server.waitingSince();
    ASSERT_TRUE(runUntil([&] { return QDateTime::currentDateTime() > since; }));
    AskingEditor second(link, 2, {"others 1"});
    const QDateTime asked = QDateTime::currentDateTime();
    EXPECT_EQ(link.server.waitingSince(), since);
    ASSERT_TRUE(runUntil([&] { return QDateTime::currentDateTime() > asked; }));
    link.server.cancel();
    EXPECT_GT(link.server.waitingSince(), since);
    EXPECT_LE(link.server.waitingSince(), asked); // when it asked, not when its turn came
}

struct LeavingCase {
    const char* name;
    void (ScriptedEditor::*leave)();
};
const LeavingCase kLeavings[] = {
    {"ByClosing", &ScriptedEditor::close},
    {"ByAReset",  &ScriptedEditor::reset},
};
class EditorThatLeaves : public testing::TestWithParam<LeavingCase> {};

TEST_P(EditorThatLeaves, InItsTurnIsNoticed)
{
    HeardLink link;
    AskingEditor editor(link);
    (editor.*GetParam().leave)();
    EXPECT_TRUE(link.says({"left", "gone"}));
    EXPECT_FALSE(link.server.answer(kFigure));
    EXPECT_TRUE(link.hasLogged("has left"));
    ScriptedEditor next(link.server.port());
    next.send(requestLine(2));
    EXPECT_TRUE(link.says({"waiting", "requested 2"}));
}

TEST_P(EditorThatLeaves, InItsTurnGivesItToTheNext)
{
    HeardLink link;
    AskingEditor editor(link, 1);
    AskingEditor next(link, 2, {"others 1"});
    (editor.*GetParam().leave)();
    EXPECT_TRUE(link.says({"left", "others 0", "waiting", "requested 2"}));
    link.server.answer(kFigure);
    EXPECT_EQ(next.receivedToItsEnd(), kFigureLine);
}

TEST_P(EditorThatLeaves, BeforeItsTurnNeverGetsOne)
{
    HeardLink link;
    AskingEditor first(link, 1);
    AskingEditor second(link, 2, {"others 1"});
    (second.*GetParam().leave)();
    EXPECT_TRUE(link.says({"others 0"}));
    link.server.answer(kFigure);
    EXPECT_TRUE(link.says({"answered", "sent"}));
    EXPECT_EQ(first.receivedToItsEnd(), kFigureLine);
}

TEST_P(EditorThatLeaves, AtOnceBehindItsRequestHasHadItsTurn)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    ::send(editor.socket(), requestLine().data(), requestLine().size(), 0);
    (editor.*GetParam().leave)();
    // A reset may overtake the request.
    ASSERT_TRUE(link.hasLogged("has left"));
    EXPECT_NE(link.server.state(), State::editorWaiting);
    EXPECT_EQ(link.said.empty(), link.server.state() == State::idle) << testing::PrintToString(link.said);
}
INSTANTIATE_TEST_SUITE_P(, EditorThatLeaves, testing::ValuesIn(kLeavings),
                         [](const auto& row) { return row.param.name; });

TEST(EditorThatEndsItsSending, StillGetsItsTurnAndItsAnswer)
{
    HeardLink link;
    ScriptedEditor first(link.server.port());
    first.send(requestLine(1));
    first.endSending();
    ASSERT_TRUE(link.says({"waiting", "requested 1"}));
    ScriptedEditor second(link.server.port());
    second.send(requestLine(2));
    second.endSending();
    ASSERT_TRUE(link.says({"others 1"}));
    letPass(700); // several looks whether it is still there
    EXPECT_TRUE(link.said.empty());
    EXPECT_TRUE(link.server.answer(kFigure));
    EXPECT_TRUE(link.says({"answered", "others 0", "waiting", "requested 2"}));
    EXPECT_EQ(first.receivedToItsEnd(), kFigureLine);
    EXPECT_TRUE(link.server.cancel());
    EXPECT_EQ(second.receivedToItsEnd(), kEmptyFigure);
    EXPECT_TRUE(link.says({"answered", "sent"}));
}

TEST(EditorThatEndsItsSending, IsMissedWhenItCloses)
{
    HeardLink link;
    ScriptedEditor editor(link.server.port());
    editor.send(requestLine());
    editor.endSending();
    ASSERT_TRUE(link.says({"waiting", "requested 1024"}));
    letPass(300);
    ASSERT_EQ(link.server.state(), State::editorWaiting);
    editor.close();
    EXPECT_TRUE(link.says({"left", "gone"}));
}

// ------------------------------------------------------------------------------------------------ large answers

const QByteArray kLargeFigure = "<vant>" + QByteArray(32 * 1024 * 1024, ' ') + "</vant>";

TEST(LargeAnswer, ReachesASlowEditorWhole)
{
    HeardLink link;
    AskingEditor editor(link, 1);
    AskingEditor next(link, 2, {"others 1"});
    EXPECT_TRUE(link.server.answer(kLargeFigure));
    EXPECT_TRUE(link.server.isSending());
    EXPECT_FALSE(link.server.answer(kFigure)); // would be the next editor's before its turn
    EXPECT_FALSE(link.server.cancel());
    EXPECT_TRUE(link.said.empty());
    const std::string received = editor.receivedToItsEnd();
    EXPECT_TRUE(received == kLargeFigure.toStdString() + "\n") << received.size();
    EXPECT_TRUE(link.says({"answered", "others 0", "waiting", "requested 2"}));
    EXPECT_FALSE(link.server.isSending());
    EXPECT_EQ(next.received(), "");
}

// The system has all of it, and the link has closed its end, before the editor reads the first byte.
TEST(LargeAnswer, ReachesAnEditorThatReadsLate)
{
    HeardLink link;
    const QByteArray figure = kLargeFigure.right(1024 * 1024);
    AskingEditor editor(link);
    EXPECT_TRUE(link.server.answer(figure));
    EXPECT_TRUE(link.says({"answered", "sent"}));
    ASSERT_TRUE(runUntil([&] { return runDueEvents(), link.server.findChildren<QObject*>().isEmpty(); }));
    EXPECT_TRUE(editor.receivedToItsEnd() == figure.toStdString() + "\n");
}

TEST(LargeAnswer, IsNotSentWhenTheEditorLeavesWithinIt)
{
    HeardLink link;
    AskingEditor editor(link);
    EXPECT_TRUE(link.server.answer(kLargeFigure));
    EXPECT_FALSE(editor.received().empty());
    editor.close();
    EXPECT_TRUE(link.says({"left", "gone"}));
}

// ----------------------------------------------------------------------------------------- what slots may do

TEST(LinkSlots, MayAnswerWithinTheRequest)
{
    HeardLink link;
    QObject::connect(&link.server, &LinkServer::requested, &link.server, [&] { link.server.cancel(); });
    ScriptedEditor first(link.server.port());
    ScriptedEditor second(link.server.port());
    first.send(requestLine(1));
    second.send(requestLine(2));
    EXPECT_EQ(first.receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(second.receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(link.server.state(), State::sent);
}

TEST(LinkSlots, MayShutDownWithinAnAnswer)
{
    HeardLink link;
    QObject::connect(&link.server, &LinkServer::answered, &link.server, [&] { link.server.shutDown(); });
    AskingEditor first(link, 1);
    AskingEditor second(link, 2, {"others 1"});
    link.server.answer(kFigure);
    EXPECT_EQ(first.receivedToItsEnd(), kFigureLine);
    EXPECT_EQ(second.receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(link.server.state(), State::closed);
    EXPECT_EQ(link.server.othersWaiting(), 0);
}

} // namespace
