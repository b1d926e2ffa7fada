#include "sketch/app/sketch_session.h"

#include "sketch/core/shape_outline.h"
#include "tests/sketch_app/scripted_editor.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace sketch_app_test;
using namespace vnt::sketch;

Ink inkFrom(Vec2 from, Vec2 to)
{
    Ink ink;
    for (int i = 0; i <= 20; ++i) {
        const Vec2 at = from + (i / 20.0) * (to - from);
        ink.push_back({at.x, at.y, i * 8.0, 1});
    }
    return ink;
}

// One whose answer is more than the system takes at once.
std::vector<Stroke> largeSketch()
{
    constexpr int kCorners = 150000;
    Straight zigzag;
    for (int i = 0; i < kCorners; ++i)
        zigzag.corners.push_back({i % 1000 + 0.25, i % 2 * 500 + 0.75});
    Stroke stroke;
    stroke.kind = Kind::polyline;
    stroke.shape = std::move(zigzag);
    return {stroke};
}

class Sessions : public testing::Test {
protected:
    Sessions() : session(QString::fromStdString(folder.path("sketches")))
    {
        QObject::connect(&session, &SketchSession::said,
                         [this](const QString& text) { said = text.toStdString(); });
        QObject::connect(&session, &SketchSession::editorAsked, [this](bool isThere) {
            ++asked;
            wasThere = isThere;
        });
        session.link().listen(0);
    }

    std::unique_ptr<ScriptedEditor> editorThatAsks(int width = 1024)
    {
        const int before = asked;
        auto editor = std::make_unique<ScriptedEditor>(session.link().port());
        editor->send(requestLine(width));
        EXPECT_TRUE(runUntil([&] { return asked > before; }));
        return editor;
    }
    // One whose view begins at x = 500 of its artwork, 500 to the right of that of editorThatAsks().
    std::unique_ptr<ScriptedEditor> scrolledEditorThatAsks()
    {
        const int before = asked;
        auto editor = std::make_unique<ScriptedEditor>(session.link().port());
        std::string line = requestLine();
        const std::string unscrolled = R"(m03="0")";
        line.replace(line.find(unscrolled), unscrolled.size(), R"(m03="500")");
        editor->send(line);
        EXPECT_TRUE(runUntil([&] { return asked > before; }));
        return editor;
    }
    void draw(Vec2 from = {100, 100}, Vec2 to = {300, 180}) { session.model().addInk(inkFrom(from, to), {}); }
    // An answer that the editor does not take yet.
    void beginSendingALargeSketch()
    {
        session.model().addStrokes(largeSketch(), "Insert");
        EXPECT_TRUE(session.send());
        ASSERT_TRUE(session.isSending());
    }
    std::size_t count() { return session.model().document().strokes().size(); }
    InkPoint firstPoint() { return session.model().document().strokes().at(0)->ink.at(0); }

    support::TemporaryFolder folder;
    SketchSession session;
    std::string said;
    int asked = 0;
    bool wasThere = false;
};

TEST_F(Sessions, SendWhatIsDrawnAndKeepIt)
{
    const auto editor = editorThatAsks();
    EXPECT_EQ(session.model().sheet().width, 1024);
    ASSERT_TRUE(session.model().sheet().grid);
    EXPECT_FALSE(wasThere);
    draw();
    EXPECT_TRUE(session.send());
    const std::string answer = editor->receivedToItsEnd();
    EXPECT_EQ(answer, answer_of(session.model().document().strokes(), session.model().sheet()) + "\n");
    EXPECT_NE(answer.find("<shape>"), std::string::npos);
    EXPECT_EQ(said, "Sent: the editor has 1 stroke.");
    EXPECT_EQ(count(), 1U);
    EXPECT_TRUE(session.isAsSent());
    draw();
    EXPECT_FALSE(session.isAsSent());
    EXPECT_TRUE(session.wasSent());
    session.model().undoStack().undo();
    EXPECT_TRUE(session.isAsSent()) << "it is again what was sent";
}

TEST_F(Sessions, SendAnEmptyFigureOfNothing)
{
    const auto editor = editorThatAsks();
    EXPECT_TRUE(session.send());
    EXPECT_EQ(editor->receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(said, "Nothing was drawn: the editor has got an empty figure.");
    EXPECT_FALSE(session.wasSent());
}

TEST_F(Sessions, CancelWithAnEmptyFigureAndKeepTheSketch)
{
    const auto editor = editorThatAsks();
    draw();
    EXPECT_TRUE(session.cancel());
    EXPECT_EQ(editor->receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(count(), 1U);
    EXPECT_FALSE(session.wasSent());
}

TEST_F(Sessions, TellACancelledAnswerFromOneThatWasSentBefore)
{
    auto editor = editorThatAsks();
    draw();
    EXPECT_TRUE(session.send());
    EXPECT_FALSE(session.wasCancelled());
    editor = editorThatAsks();
    EXPECT_TRUE(session.cancel());
    EXPECT_TRUE(session.wasCancelled());
    EXPECT_EQ(said, "Cancelled: the editor has got an empty figure. The sketch is kept.");
    EXPECT_TRUE(session.isAsSent()) << "to the editor before";
    editor = editorThatAsks();
    EXPECT_TRUE(session.send());
    EXPECT_FALSE(session.wasCancelled());
}

TEST_F(Sessions, TakeASketchForSentWhenTheWholeOfItIs)
{
    const auto first = editorThatAsks();
    ScriptedEditor second(session.link().port());
    second.send(requestLine(900));
    ASSERT_TRUE(runUntil([&] { return session.link().othersWaiting() == 1; }));
    bool wasAsSent = false;
    QObject::connect(&session.link(), &LinkServer::requested, &session,
                     [&] { wasAsSent = session.isAsSent(); });
    beginSendingALargeSketch();
    EXPECT_EQ(said, "");
    EXPECT_FALSE(session.wasSent());
    EXPECT_FALSE(session.isSafe());
    const std::string received = first->receivedToItsEnd();
    EXPECT_TRUE(received.ends_with("</vant>\n"));
    ASSERT_TRUE(runUntil([&] { return asked == 2; }));
    EXPECT_EQ(said, "Sent: the editor has 1 stroke.");
    EXPECT_TRUE(wasAsSent);
    EXPECT_TRUE(session.isSafe());
    EXPECT_TRUE(session.editorWaits());
}

TEST_F(Sessions, NeitherSendNorCancelWhileTheySend)
{
    const auto editor = editorThatAsks();
    beginSendingALargeSketch();
    EXPECT_FALSE(session.editorWaits());
    for (const auto answer : {&SketchSession::send, &SketchSession::cancel}) {
        said.clear();
        EXPECT_FALSE((session.*answer)());
        EXPECT_EQ(said, "The answer before is still on its way to the editor.");
    }
    EXPECT_TRUE(editor->receivedToItsEnd().ends_with("</vant>\n"));
    EXPECT_TRUE(runUntil([&] { return session.isAsSent(); }));
    EXPECT_FALSE(session.wasCancelled());
}

TEST_F(Sessions, DoNotTakeForSentWhatFailsMidway)
{
    auto editor = editorThatAsks();
    draw();
    session.send();
    const QDateTime sentBefore = session.sentAt();
    editor = editorThatAsks();
    beginSendingALargeSketch();
    editor->reset();
    EXPECT_TRUE(runUntil([&] { return session.link().state() == LinkServer::State::editorGone; }));
    EXPECT_EQ(said, "The sketch could not be sent: the editor is gone. It is kept.");
    EXPECT_FALSE(session.isAsSent());
    EXPECT_FALSE(session.isSafe());
    EXPECT_EQ(session.sentAt(), sentBefore);
    EXPECT_EQ(count(), 2U);
    session.model().undoStack().undo();
    EXPECT_TRUE(session.isAsSent()) << "the first editor has this";
}

TEST_F(Sessions, DoNotTakeForSentWhatTheirEndCutsOff)
{
    const auto editor = editorThatAsks();
    beginSendingALargeSketch();
    session.end();
    EXPECT_TRUE(editor->receivedToItsEnd().ends_with("[reset]"));
    EXPECT_FALSE(session.wasSent());
    EXPECT_FALSE(session.isSafe()) << "so it is offered at the next start";
}

TEST_F(Sessions, DoNotTakeASheetForSentThatCameWhileTheOneBeforeWasSent)
{
    const auto editor = editorThatAsks();
    beginSendingALargeSketch();
    session.newSheet();
    draw();
    EXPECT_TRUE(editor->receivedToItsEnd().ends_with("</vant>\n"));
    EXPECT_TRUE(runUntil([&] { return session.link().state() == LinkServer::State::sent; }));
    EXPECT_EQ(said, "Sent: the editor has 1 stroke.");
    EXPECT_FALSE(session.wasSent());
    EXPECT_FALSE(session.isSafe());
}

TEST_F(Sessions, SayThatNoEditorWaits)
{
    draw();
    EXPECT_FALSE(session.send());
    EXPECT_FALSE(session.cancel());
    EXPECT_NE(said.find("No editor waits"), std::string::npos) << said;
}

TEST_F(Sessions, AnswerTheEditorBeforeTheyEnd)
{
    const auto first = editorThatAsks();
    ScriptedEditor second(session.link().port());
    second.send(requestLine());
    EXPECT_TRUE(runUntil([&] { return session.link().othersWaiting() == 1; }));
    draw();
    session.end();
    EXPECT_EQ(first->receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(second.receivedToItsEnd(), kEmptyFigure);
}

TEST_F(Sessions, KeepTheSketchOfAnEditorThatIsGone)
{
    const auto editor = editorThatAsks();
    draw();
    editor->reset();
    EXPECT_TRUE(runUntil([&] { return session.link().state() == LinkServer::State::editorGone; }));
    EXPECT_EQ(said, "The editor is gone. The sketch is kept.");
    EXPECT_EQ(count(), 1U);
    EXPECT_FALSE(session.isSafe());
    editorThatAsks();
    EXPECT_TRUE(wasThere) << "so the window asks";
}

TEST_F(Sessions, GiveTheNextEditorItsTurnWithTheSketchThatWasSent)
{
    const auto first = editorThatAsks();
    ScriptedEditor second(session.link().port());
    second.send(requestLine(900));
    EXPECT_TRUE(runUntil([&] { return session.link().othersWaiting() == 1; }));
    draw();
    session.send();
    EXPECT_TRUE(runUntil([&] { return asked == 2; }));
    EXPECT_TRUE(wasThere);
    EXPECT_TRUE(session.isAsSent());
    EXPECT_EQ(session.model().sheet().width, 900);
}

// The editor's window has moved over its artwork: 100 points to the right, at half the points a pixel.
TEST_F(Sessions, KeepStrokesWhereTheyAreInTheArtwork)
{
    auto editor = editorThatAsks();
    draw({200, 168}, {400, 168}); // at (200, 600) in the artwork
    session.send();
    editor = std::make_unique<ScriptedEditor>(session.link().port());
    std::string line = requestLine();
    const auto replace = [&line](const std::string& from, const std::string& to) {
        line.replace(line.find(from), from.size(), to);
    };
    replace(R"(m00="1" m01="0" m02="0" m03="0" m10="0" m11="-1" m12="0" m13="768")",
            R"(m00="0.5" m01="0" m02="0" m03="100" m10="0" m11="-0.5" m12="0" m13="700")");
    editor->send(line);
    EXPECT_TRUE(runUntil([&] { return asked == 2; }));
    EXPECT_NEAR(firstPoint().x, 200, 1e-9); // (200 - 100) / 0.5
    EXPECT_NEAR(firstPoint().y, 200, 1e-9); // (700 - 600) / 0.5
    EXPECT_TRUE(session.isAsSent()) << "only the view has changed";
}

TEST_F(Sessions, UndoAndRedoWhatWasDrawnAndNotTheView)
{
    auto editor = editorThatAsks();
    draw();
    draw();
    session.model().undoStack().undo();
    session.send();
    editor = scrolledEditorThatAsks();
    EXPECT_EQ(firstPoint().x, -400);
    EXPECT_EQ(session.model().undoStack().count(), 2);
    session.model().undoStack().redo();
    EXPECT_EQ(session.model().document().strokes().at(1)->ink.at(0).x, -400);
    session.model().undoStack().undo();
    EXPECT_TRUE(session.isAsSent());
    session.model().undoStack().undo();
    EXPECT_EQ(count(), 0U) << "the first stroke was drawn last";
    session.model().undoStack().redo();
    EXPECT_EQ(firstPoint().x, -400);
    EXPECT_TRUE(session.isAsSent());
}

TEST_F(Sessions, BringBackWhatWasClearedToItsPlaceInTheArtwork)
{
    auto editor = editorThatAsks();
    draw();
    session.model().clear();
    session.cancel();
    editor = scrolledEditorThatAsks();
    EXPECT_FALSE(wasThere);
    session.model().undoStack().undo();
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(firstPoint().x, -400);
}

TEST_F(Sessions, StaySavedWhenOnlyTheViewChanges)
{
    auto editor = editorThatAsks();
    draw();
    EXPECT_EQ(session.save(QString::fromStdString(folder.path("kept.xml"))).sentence, "");
    session.cancel();
    editor = scrolledEditorThatAsks();
    EXPECT_EQ(firstPoint().x, -400);
    EXPECT_TRUE(session.isSafe());
}

using ReadFile = FileProblem (SketchSession::*)(const QString&);
class SessionsWithAFile : public Sessions, public testing::WithParamInterface<ReadFile> {};
TEST_P(SessionsWithAFile, KeepItsPlaceInTheArtworkWhenAnEditorAsksAfterwards)
{
    const QString file = QString::fromStdString(folder.path("kept.xml"));
    auto editor = editorThatAsks();
    draw({200, 168}, {400, 168}); // from (200, 600) in the artwork
    EXPECT_EQ(session.save(file).sentence, "");
    session.cancel();
    session.newSheet(); // of one's own
    EXPECT_EQ((session.*GetParam())(file).sentence, "");
    editor = scrolledEditorThatAsks();
    session.send();
    const std::string answer = editor->receivedToItsEnd();
    const auto read = strokes_of_answer(answer, session.model().sheet(), 1);
    ASSERT_TRUE(std::holds_alternative<std::vector<Stroke>>(read));
    const std::vector<Stroke> strokes = std::get<std::vector<Stroke>>(read);
    ASSERT_EQ(strokes.size(), 1U);
    const Vec2 first = cubics_of(strokes[0], kAnswerTolerance).at(0);
    EXPECT_NEAR(first.x, -300, 0.01);
    EXPECT_NEAR(first.y, 168, 0.01);
    session.newSheet();
    draw({200, 168}, {400, 168});
    editor = editorThatAsks();
    EXPECT_EQ(firstPoint().x, 200) << "no file's any more";
}
INSTANTIATE_TEST_SUITE_P(, SessionsWithAFile, testing::Values(&SketchSession::open, &SketchSession::insert),
                         [](const auto& row) {
                             return row.param == &SketchSession::open ? "Opened" : "Inserted";
                         });

TEST_F(Sessions, TakeARecoveredSketchToItsPlaceOnTheSheetThatWaits)
{
    auto editor = editorThatAsks();
    draw();
    session.cancel();
    session.newSheet();
    editor = scrolledEditorThatAsks();
    ASSERT_TRUE(session.recover(session.journal().earlier().at(0).file));
    EXPECT_EQ(firstPoint().x, -400);
    EXPECT_FALSE(session.model().undoStack().canUndo());
}

// The canvas makes a stroke of what is being drawn when the sheet is about to change.
TEST_F(Sessions, TakeTheStrokeInProgressAlongWhenAnEditorAsks)
{
    auto editor = editorThatAsks();
    session.cancel();
    QObject::connect(&session.model(), &SketchModel::sheetIsToChange, [this] { draw(); });
    editor = scrolledEditorThatAsks();
    EXPECT_TRUE(wasThere);
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(firstPoint().x, -400) << "it was drawn on the sheet before";
    session.send();
    editor = editorThatAsks();
    EXPECT_EQ(count(), 2U);
    EXPECT_FALSE(session.isAsSent());
}

TEST_F(Sessions, KeepStrokesOfAnOwnSheetWhereTheyAreOnTheScreen)
{
    draw({200, 168}, {400, 168});
    editorThatAsks();
    EXPECT_EQ(firstPoint().x, 200);
    EXPECT_EQ(firstPoint().y, 168);
}

TEST_F(Sessions, BeginANewSheetOfTheEditorThatWaitsElseOfTheirOwn)
{
    const auto editor = editorThatAsks();
    draw();
    session.newSheet();
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(session.model().sheet().width, 1024);
    ASSERT_EQ(session.journal().earlier().size(), 1U);
    session.send();
    session.setOwnGrid(20);
    session.newSheet();
    EXPECT_EQ(session.model().sheet().width, Sheet().width);
    ASSERT_TRUE(session.model().sheet().grid);
    EXPECT_EQ(session.model().sheet().grid->grid_to_sheet.a, 20);
    ASSERT_TRUE(session.recover(session.journal().earlier()[0].file));
    EXPECT_EQ(count(), 1U);
}

TEST_F(Sessions, AreSafeWhenSavedUntilSomethingChanges)
{
    EXPECT_TRUE(session.isSafe()) << "there is nothing to lose";
    draw();
    EXPECT_FALSE(session.isSafe());
    const QString file = QString::fromStdString(folder.path("kept.xml"));
    EXPECT_EQ(session.save(file).sentence, "");
    EXPECT_TRUE(session.isSafe());
    EXPECT_EQ(session.file(), file);
    draw();
    EXPECT_FALSE(session.isSafe());
    EXPECT_EQ(session.open(file).sentence, "");
    EXPECT_EQ(count(), 1U);
    EXPECT_TRUE(session.isSafe());
    EXPECT_EQ(session.insert(file).sentence, "");
    EXPECT_EQ(count(), 2U);
    EXPECT_EQ(session.model().selection().size(), 1U);
    EXPECT_FALSE(session.isSafe());
    EXPECT_NE(session.open(QString::fromStdString(folder.path("none.xml"))).sentence, "");
    EXPECT_EQ(count(), 2U) << "the sketch is as it was";
}

} // namespace
