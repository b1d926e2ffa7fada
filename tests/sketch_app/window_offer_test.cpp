// What the window's commands make of a reading that is shown and not taken yet.
#include "tests/sketch_app/shown_window.h"

#include "sketch/app/file_desk.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

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
