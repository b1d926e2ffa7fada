// Where strokes are in the artwork when an editor comes, whatever happened to the sketch before.
#include "sketch/app/sketch_session.h"

#include "sketch/core/journal_text.h"
#include "sketch/core/shape_outline.h"
#include "tests/sketch_app/scripted_editor.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using namespace sketch_app_test;
using namespace vnt::sketch;

// One whose view begins so far right in its artwork, a point a pixel.
constexpr double kScrolled = 500;
constexpr double kFirstX = 200;

class PlacedSketches : public testing::Test {
protected:
    PlacedSketches() : session(path("sketches"))
    {
        session.link().listen(0);
        Stroke line;
        line.kind = Kind::line;
        line.shape = Straight{
            {{kFirstX, 100}, {400, 168}},
            false
        };
        const std::string document = answer_of({std::make_shared<Stroke>(line)}, Sheet());
        file = QString::fromStdString(folder.file("line.xml", document + "\n"));
    }

    QString path(const std::string& name) const { return QString::fromStdString(folder.path(name)); }
    // Where an editor finds the first point of a stroke when it asks now; its view goes a point a pixel, and
    // begins kScrolled right of the artwork's origin.
    static double xForAnEditor(SketchSession& asked, std::size_t stroke = 0)
    {
        int times = 0;
        QObject::connect(&asked, &SketchSession::editorAsked, &asked, [&times] { ++times; });
        asked.link().listen(0);
        ScriptedEditor editor(asked.link().port());
        std::string line = requestLine();
        const std::string unscrolled = R"(m03="0")";
        line.replace(line.find(unscrolled), unscrolled.size(), R"(m03="500")");
        editor.send(line);
        EXPECT_TRUE(runUntil([&] { return times > 0; }));
        asked.disconnect(&asked);
        return cubics_of(*asked.model().document().strokes().at(stroke), kAnswerTolerance).at(0).x;
    }
    void drawOnOwnSheet()
    {
        session.model().addInk(
            {
                {kFirstX, 50, 0,  1},
                {300,     50, 8,  1},
                {400,     90, 16, 1}
        },
            {});
    }
    // What a program finds that is started after a crash now.
    std::unique_ptr<SketchSession> afterACrash()
    {
        const std::string journal = support::content_of(session.journal().file().toStdString());
        auto next = std::make_unique<SketchSession>(path("others"));
        const std::string crashed = folder.file("others/crashed.sketch", journal);
        EXPECT_TRUE(next->recover(QString::fromStdString(crashed)));
        return next;
    }

    support::TemporaryFolder folder;
    SketchSession session;
    QString file;
};

// A point is 4/3 pixels of one's own sheet.
constexpr double kPlacedX = kFirstX * 0.75 - kScrolled;

TEST_F(PlacedSketches, KeepTheirPlaceThroughACrashWhenTheyWereOpened)
{
    ASSERT_EQ(session.open(file).sentence, "");
    EXPECT_NEAR(xForAnEditor(*afterACrash()), kPlacedX, 0.01);
}

TEST_F(PlacedSketches, KeepTheirPlaceThroughACrashWhenTheyWereInserted)
{
    drawOnOwnSheet();
    ASSERT_EQ(session.insert(file).sentence, "");
    EXPECT_NEAR(xForAnEditor(*afterACrash(), 1), kPlacedX, 0.01);
}

TEST_F(PlacedSketches, KeepTheirPlaceThroughASecondCrash)
{
    ASSERT_EQ(session.open(file).sentence, "");
    const auto next = afterACrash();
    const std::string again = support::content_of(next->journal().file().toStdString());
    EXPECT_TRUE(read_journal(again).placed);
}

TEST_F(PlacedSketches, HaveNoneThroughACrashWhenTheyWereDrawnOnASheetOfOnesOwn)
{
    drawOnOwnSheet();
    EXPECT_NEAR(xForAnEditor(*afterACrash()), kFirstX, 1e-9);
}

// Journals of before do not say whether a sketch has a place; a sheet of an editor's does.
TEST_F(PlacedSketches, KeepThePlaceThatAnEditorsSheetGaveThemInAnOldJournal)
{
    Sheet sheet;
    sheet.width = 1024;
    sheet.sheet_to_model = {1, 0, 0, -1, 0, 768};
    Stroke stroke;
    stroke.id = 1;
    stroke.shape = Straight{
        {{kFirstX, 100}, {400, 168}},
        false
    };
    const std::string old =
        folder.file("sketches/old.sketch", journal_head() + journal_sheet(sheet) + journal_insert(0, stroke));
    ASSERT_TRUE(session.recover(QString::fromStdString(old)));
    EXPECT_NEAR(xForAnEditor(session), kFirstX - kScrolled, 1e-9);
}

TEST_F(PlacedSketches, HaveNoneAnyMoreWhenWhatGaveItIsUndone)
{
    drawOnOwnSheet();
    ASSERT_EQ(session.insert(file).sentence, "");
    ASSERT_TRUE(session.model().isPlaced());
    session.model().undoStack().undo();
    EXPECT_FALSE(session.model().isPlaced());
    EXPECT_NEAR(xForAnEditor(*afterACrash()), kFirstX, 1e-9) << "the journal knows it too";
    EXPECT_NEAR(xForAnEditor(session), kFirstX, 1e-9) << "it stays where it was on the screen";
}

// An answer without a shape brings no place along, and what an insert gave went with the sketch before.
TEST_F(PlacedSketches, HaveNoneWhenAnEmptyOneIsOpenedAfterAnInsert)
{
    ASSERT_EQ(session.insert(file).sentence, "");
    const std::string empty = folder.file("empty.xml", answer_of({}, Sheet()) + "\n");
    ASSERT_EQ(session.open(QString::fromStdString(empty)).sentence, "");
    EXPECT_FALSE(session.model().isPlaced());
    drawOnOwnSheet();
    EXPECT_NEAR(xForAnEditor(session), kFirstX, 1e-9);
}

TEST_F(PlacedSketches, HaveTheirPlaceAgainWhenItIsRedone)
{
    drawOnOwnSheet();
    ASSERT_EQ(session.insert(file).sentence, "");
    session.model().undoStack().undo();
    session.model().undoStack().redo();
    EXPECT_TRUE(session.model().isPlaced());
    EXPECT_NEAR(xForAnEditor(session, 1), kPlacedX, 0.01);
}

TEST_F(PlacedSketches, KeepThePlaceThatAnEditorGaveThemWhenAnInsertIsUndone)
{
    drawOnOwnSheet();
    ASSERT_EQ(session.insert(file).sentence, "");
    xForAnEditor(session);
    session.model().undoStack().undo();
    EXPECT_TRUE(session.model().isPlaced());
}

} // namespace
