#include "sketch/app/sketch_session.h"

#include "tests/sketch_app/scripted_editor.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

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
    void draw(Vec2 from = {100, 100}, Vec2 to = {300, 180}) { session.model().addInk(inkFrom(from, to), {}); }
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
