// What the window's commands make of a reading that is shown and not taken yet.
#include "tests/sketch_app/shown_window.h"

#include "sketch/app/file_desk.h"
#include "sketch/app/questions.h"
#include "sketch/core/journal_text.h"

#include <gtest/gtest.h>

#include <QMenu>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace sketch_app_test;

class WindowOffers : public testing::Test {
protected:
    WindowOffers()
    {
        CanvasSettings settings = canvas().settings();
        settings.takeMilliseconds = kNever;
        canvas().setSettings(settings);
        shown.choose("toolCircle");
    }

    SketchCanvas& canvas() { return shown.window.canvas(); }
    std::string offered() { return canvas().offeredReading().toStdString(); }
    void drawCircle() { shown.draw(circlePath({300, 300}, 80)); }
    Kind kind() { return shown.count() == 0 ? Kind::ink : shown.model().document().strokes().front()->kind; }
    // Of the sketch that was put away last.
    static std::vector<Kind> kindsPutAway(ShownWindow& of)
    {
        std::vector<Kind> kinds;
        const auto earlier = of.window.session().journal().earlier();
        if (earlier.empty())
            return kinds;
        const auto reading =
            vnt::sketch::read_journal(support::content_of(earlier.front().file.toStdString()));
        for (const StrokePtr& stroke : reading.document.strokes())
            kinds.push_back(stroke->kind);
        return kinds;
    }
    std::unique_ptr<ScriptedEditor> editorThatAsks()
    {
        auto editor = std::make_unique<ScriptedEditor>(shown.port());
        editor->send(requestLine(1024));
        EXPECT_TRUE(runUntil([&] { return shown.window.session().editorWaits(); }));
        runDueEvents();
        return editor;
    }

    WindowFiles files;
    ShownWindow shown{files};
};

class WindowCommands : public WindowOffers, public testing::WithParamInterface<const char*> {};
TEST_P(WindowCommands, AreAboutTheSketchAsOneSeesIt)
{
    ASSERT_TRUE(shown.window.findChild<FileDesk*>()->saveAs(files.path("sketch.xml")));
    drawCircle();
    ASSERT_EQ(offered(), "circle");
    ASSERT_EQ(kind(), Kind::ink);
    shown.choose(GetParam());
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(kind(), Kind::circle);
}
INSTANTIATE_TEST_SUITE_P(, WindowCommands, testing::Values("save", "selectAll", "selectNext"),
                         [](const auto& row) { return std::string(row.param); });

TEST_F(WindowOffers, AreTakenBeforeTheSheetIsCleared)
{
    drawCircle();
    shown.choose("clear");
    EXPECT_EQ(shown.count(), 0U);
    shown.choose("undo");
    EXPECT_EQ(kind(), Kind::circle);
}

// The sketch that is put away is the one that was seen.
TEST_F(WindowOffers, AreTakenBeforeAnEarlierSketchIsBroughtBack)
{
    drawCircle();
    shown.choose("newSheet");
    drawCircle();
    ASSERT_EQ(offered(), "circle");
    ASSERT_EQ(kind(), Kind::ink);
    QMenu menu;
    shown.window.findChild<Questions*>()->fillEarlier(menu);
    menu.actions().at(0)->trigger();
    EXPECT_EQ(kindsPutAway(shown), (std::vector{Kind::circle}));
    EXPECT_EQ(kind(), Kind::circle);
}

TEST_F(WindowOffers, AreTakenBeforeASketchThatWasLeftIsRecovered)
{
    const WindowFiles others;
    ShownWindow(others).drawLine();
    ShownWindow next(others);
    next.window.canvas().setSettings(canvas().settings());
    next.choose("toolCircle");
    next.draw(circlePath({300, 300}, 80));
    ASSERT_NE(next.window.canvas().offeredReading(), "");
    ASSERT_TRUE(next.press("recover", "Recover"));
    EXPECT_EQ(kindsPutAway(next), (std::vector{Kind::circle}));
    EXPECT_EQ(next.model().document().strokes().at(0)->kind, Kind::ink);
}

TEST_F(WindowOffers, AreTakenWithTheStrokeInProgressBeforeANewSheetForTheEditor)
{
    drawCircle();
    const auto editor = editorThatAsks();
    Mouse mouse(canvas());
    mouse.drawOn(circlePath({500, 300}, 60));
    ASSERT_TRUE(canvas().isDrawing());
    ASSERT_TRUE(shown.press("howToGoOn", "New Sheet"));
    EXPECT_EQ(shown.count(), 0U);
    EXPECT_EQ(kindsPutAway(shown), (std::vector{Kind::circle, Kind::circle}));
}

TEST_F(WindowOffers, StayWhereANoticeIsOnlyClosed)
{
    shown.window.notices().showProblem("file", "Something went wrong.");
    drawCircle();
    ASSERT_EQ(offered(), "circle");
    ASSERT_TRUE(shown.press("file", "Close"));
    EXPECT_EQ(offered(), "circle");
}

TEST_F(WindowOffers, AreTakenBeforeTheWindowGoes)
{
    drawCircle();
    shown.window.close();
    EXPECT_EQ(kind(), Kind::circle);
}

TEST_F(WindowOffers, AreSentByTheKeyForSending)
{
    const auto editor = editorThatAsks();
    drawCircle();
    ASSERT_EQ(offered(), "circle");
    QTest::keyClick(&canvas(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(kind(), Kind::circle);
    EXPECT_NE(editor->receivedToItsEnd().find("<shape>"), std::string::npos);
}

TEST_F(WindowOffers, DoNotKeepTheKeyForCancellingFromTheWindow)
{
    const auto editor = editorThatAsks();
    drawCircle();
    ASSERT_EQ(offered(), "circle");
    QTest::keyClick(&canvas(), Qt::Key_Escape, Qt::ShiftModifier);
    EXPECT_EQ(editor->receivedToItsEnd(), kEmptyFigure);
}

TEST_F(WindowOffers, GoWithTheFirstUndoAndTheInkWithTheNext)
{
    drawCircle();
    QTest::keyClick(&canvas(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(shown.count(), 1U);
    EXPECT_EQ(kind(), Kind::ink);
    QTest::keyClick(&canvas(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(shown.count(), 0U);
}

TEST_F(WindowOffers, ShowAnotherReadingByTheCommandForIt)
{
    drawCircle();
    ASSERT_EQ(offered(), "circle");
    shown.choose("otherReadings");
    EXPECT_NE(offered(), "");
    EXPECT_EQ(kind(), Kind::ink);
}

TEST_F(WindowOffers, SnapNoMoreWhenSnappingIsSwitchedOff)
{
    std::string last;
    QObject::connect(&canvas(), &SketchCanvas::snappedTo, &canvas(),
                     [&](const QString& what) { last = what.toStdString(); });
    shown.choose("toolLine");
    shown.draw(linePath({100, 100}, {400, 103})); // nearly level
    ASSERT_EQ(offered(), "line");
    ASSERT_NE(last, "");
    for (const char* name : {"snapToGrid", "snapToShapes", "snapToAngles"})
        shown.choose(name);
    EXPECT_EQ(offered(), "line");
    EXPECT_EQ(last, "");
}

TEST_F(WindowOffers, LeaveNothingSelectedByTheCommandForIt)
{
    shown.drawLine();
    EXPECT_FALSE(shown.action("selectNone").isEnabled());
    QTest::keyClick(&canvas(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(shown.action("selectNone").isEnabled());
    ASSERT_EQ(shown.model().selection().size(), 1U);
    QTest::keyClick(&canvas(), Qt::Key_A, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(shown.model().selection().empty());
}

} // namespace
