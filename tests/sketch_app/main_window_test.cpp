#include "tests/sketch_app/shown_window.h"

#include "sketch/app/file_desk.h"
#include "sketch/app/keys_dialog.h"

#include <gtest/gtest.h>

#include <QSlider>
#include <QTableWidget>
#include <QToolButton>

#include <map>
#include <memory>
#include <string>

namespace {

using namespace sketch_app_test;

class MainWindows : public testing::Test {
protected:
    MainWindows() : shown(std::make_unique<ShownWindow>(files)) {}

    std::unique_ptr<ScriptedEditor> editorThatAsks(int width = 1024) const
    {
        auto editor = std::make_unique<ScriptedEditor>(shown->port());
        editor->send(requestLine(width));
        EXPECT_TRUE(runUntil([&] { return shown->window.session().editorWaits(); }));
        runDueEvents();
        return editor;
    }
    std::string state() const { return shown->window.linkPanel().stateText().toStdString(); }
    bool says(const std::string& part) const { return state().find(part) != std::string::npos; }
    SketchCanvas& canvas() const { return shown->window.canvas(); }
    void startAnew()
    {
        shown.reset();
        shown = std::make_unique<ShownWindow>(files);
    }

    WindowFiles files;
    std::unique_ptr<ShownWindow> shown;
};

TEST_F(MainWindows, TellHowItStandsWithTheEditor)
{
    EXPECT_EQ(state(), "Waiting for the editor: choose Start VANT there.");
    EXPECT_FALSE(shown->action("send").isEnabled());
    auto editor = editorThatAsks();
    EXPECT_TRUE(says("The editor has been waiting since ")) << state();
    EXPECT_TRUE(shown->action("send").isEnabled());
    shown->drawLine();
    shown->choose("send");
    EXPECT_TRUE(runUntil([&] { return says("Sent at "); })) << state();
    EXPECT_TRUE(says("The sketch stays here.")) << state();
    EXPECT_NE(editor->receivedToItsEnd().find("<shape>"), std::string::npos);
    shown->drawLine();
    EXPECT_TRUE(says("; the sketch was changed since.")) << state();
    editor = editorThatAsks();
    editor->reset();
    EXPECT_TRUE(runUntil([&] { return says("The editor is gone"); })) << state();
    EXPECT_EQ(shown->count(), 2U);
}

TEST_F(MainWindows, TellACancelledEditorFromOneThatHasASketch)
{
    auto editor = editorThatAsks();
    shown->drawLine();
    shown->choose("send");
    EXPECT_TRUE(runUntil([&] { return says("Sent at "); })) << state();
    editor = editorThatAsks();
    shown->choose("cancel");
    EXPECT_TRUE(runUntil([&] { return says("Cancelled"); })) << state();
    EXPECT_EQ(state(), "Cancelled: the editor has got an empty figure.");
}

TEST_F(MainWindows, OfferNoAnswerWhileOneIsOnItsWay)
{
    const auto editor = editorThatAsks();
    vnt::sketch::Straight zigzag; // more than the system takes at once, and out of sight: quick to paint
    for (int i = 0; i < 150000; ++i)
        zigzag.corners.push_back({50000 + i % 1000 + 0.25, i % 2 * 500 + 0.75});
    vnt::sketch::Stroke stroke;
    stroke.kind = vnt::sketch::Kind::polyline;
    stroke.shape = std::move(zigzag);
    shown->model().addStrokes({stroke}, "Insert");
    shown->choose("send");
    EXPECT_EQ(state(), "Sending…");
    EXPECT_FALSE(shown->action("send").isEnabled());
    EXPECT_FALSE(shown->action("cancel").isEnabled());
    EXPECT_TRUE(editor->receivedToItsEnd().ends_with("</vant>\n"));
    EXPECT_TRUE(runUntil([&] { return says("Sent at "); })) << state();
}

TEST_F(MainWindows, TellWhoWaitsForTheirTurn)
{
    const auto first = editorThatAsks();
    ScriptedEditor second(shown->port());
    second.send(requestLine(900));
    const auto others = [&] { return shown->window.linkPanel().othersText().toStdString(); };
    EXPECT_TRUE(runUntil([&] { return others() == "1 other editor waits its turn."; })) << others();
    shown->choose("cancel");
    EXPECT_TRUE(runUntil([&] { return others().empty(); }));
    EXPECT_EQ(first->receivedToItsEnd(), kEmptyFigure);
    EXPECT_EQ(shown->model().sheet().width, 900);
}

TEST_F(MainWindows, ShowTheEditorsSheetAtItsScaleAndTurn)
{
    shown->window.turnEditorSheet(15);
    auto editor = editorThatAsks();
    EXPECT_DOUBLE_EQ(canvas().viewScale(), 1);
    EXPECT_DOUBLE_EQ(canvas().viewRotation(), 15);
    shown->choose("cancel");
    editor = editorThatAsks();
    EXPECT_DOUBLE_EQ(canvas().viewRotation(), 0) << "it was for the one before";
    shown->window.turnEditorSheet(-30);
    EXPECT_DOUBLE_EQ(canvas().viewRotation(), -30) << "this one waits already";
}

TEST_F(MainWindows, BeginWithTheWholeSheetInView)
{
    const QRectF sheet(0, 0, shown->model().sheet().width, shown->model().sheet().height);
    const QRectF seen = canvas().sheetToWidget().mapRect(sheet);
    EXPECT_TRUE(QRectF(canvas().rect()).contains(seen));
    EXPECT_GT(seen.width() / canvas().width(), 0.8) << "and as large as it can be";
}

TEST_F(MainWindows, SendTheStrokeThatIsStillBeingDrawn)
{
    const auto editor = editorThatAsks();
    Mouse mouse(canvas());
    mouse.drawOn(linePath({100, 100}, {300, 180}));
    shown->choose("send");
    EXPECT_NE(editor->receivedToItsEnd().find("<shape>"), std::string::npos);
}

TEST_F(MainWindows, AskWhetherToGoOnOrToTakeANewSheet)
{
    auto editor = editorThatAsks();
    EXPECT_EQ(shown->notice("howToGoOn"), "") << "nothing is there to go on with";
    shown->drawLine();
    shown->choose("send");
    editor = editorThatAsks();
    EXPECT_NE(shown->notice("howToGoOn").find("On the sheet is the one that was sent at "),
              std::string::npos);
    ASSERT_TRUE(shown->press("howToGoOn", "New Sheet"));
    EXPECT_EQ(shown->count(), 0U);
    EXPECT_EQ(shown->notice("howToGoOn"), "");
    ASSERT_TRUE(shown->press("earlier", "Bring It Back"));
    EXPECT_EQ(shown->count(), 1U);
    EXPECT_EQ(shown->model().sheet().width, 1024) << "on the sheet of the editor that waits";
}

TEST_F(MainWindows, TakeDrawingOnForGoingOn)
{
    auto editor = editorThatAsks();
    shown->drawLine();
    shown->choose("send");
    editor = editorThatAsks();
    shown->draw(linePath({200, 300}, {400, 350}));
    EXPECT_EQ(shown->notice("howToGoOn"), "");
    EXPECT_EQ(shown->count(), 2U);
    shown->choose("send");
    const std::string answer = editor->receivedToItsEnd();
    EXPECT_NE(answer.find("<shape>"), answer.rfind("<shape>")) << "both strokes are in " << answer;
}

TEST_F(MainWindows, AnswerTheEditorWhenTheyAreClosed)
{
    const auto editor = editorThatAsks();
    shown->drawLine();
    shown->window.close();
    EXPECT_EQ(editor->receivedToItsEnd(), kEmptyFigure);
}

TEST_F(MainWindows, OfferWhatWasLeftAtTheNextStart)
{
    shown->drawLine();
    shown->drawLine();
    startAnew();
    const std::string text = shown->notice("recover");
    EXPECT_NE(text.find("A sketch of "), std::string::npos) << text;
    EXPECT_NE(text.find(" with 2 strokes was not finished."), std::string::npos) << text;
    ASSERT_TRUE(shown->press("recover", "Recover"));
    EXPECT_EQ(shown->count(), 2U);
    EXPECT_EQ(shown->notice("recover"), "");
    shown->drawLine();
    startAnew();
    ASSERT_TRUE(shown->press("recover", "Later"));
    startAnew();
    ASSERT_TRUE(shown->press("recover", "Discard"));
    EXPECT_EQ(shown->count(), 0U);
    startAnew();
    EXPECT_EQ(shown->notice("recover"), "");
}

TEST_F(MainWindows, AreAnsweredFromTheKeyboard)
{
    shown->drawLine();
    startAnew();
    QTest::keyClick(&canvas(), Qt::Key_R, Qt::AltModifier); // the letter that is underlined
    EXPECT_TRUE(runUntil([&] { return shown->count() == 1; })) << shown->notice("recover");
    startAnew();
    shown->choose("nextPane");
    auto* const button = qobject_cast<QPushButton*>(shown->window.focusWidget());
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), "&Recover");
    QTest::keyClick(button, Qt::Key_Return);
    EXPECT_EQ(shown->count(), 1U);
    EXPECT_TRUE(canvas().hasFocus()) << "to draw on";
}

TEST_F(MainWindows, DoNotOfferWhatWasSent)
{
    const auto editor = editorThatAsks();
    shown->drawLine();
    shown->choose("send");
    startAnew();
    EXPECT_EQ(shown->notice("recover"), "");
    EXPECT_EQ(shown->window.session().journal().earlier().size(), 1U) << "it can be had back all the same";
}

TEST_F(MainWindows, SayThatThePortIsBusyAndTryAgain)
{
    LinkServer other;
    ASSERT_TRUE(other.listen(0));
    WindowSetup setup = files.setup();
    setup.port = other.port();
    shown = std::make_unique<ShownWindow>(setup);
    EXPECT_TRUE(says(std::to_string(other.port()))) << state();
    auto& again = *shown->window.findChild<QPushButton*>("listenAgain");
    EXPECT_TRUE(again.isVisible());
    other.shutDown();
    again.click();
    EXPECT_EQ(state(), "Waiting for the editor: choose Start VANT there.");
    EXPECT_FALSE(again.isVisible());
}

TEST_F(MainWindows, DoWithoutTheLinkWhereTheyAreToldTo)
{
    WindowSetup setup = files.setup();
    setup.isLinked = false;
    shown = std::make_unique<ShownWindow>(setup);
    EXPECT_EQ(state(), "Started without the link to an editor.");
    shown->drawLine();
    EXPECT_EQ(shown->count(), 1U);
}

TEST_F(MainWindows, HaveNoKeyTwice)
{
    std::map<std::string, std::string> actions; // of a key
    for (const QAction* action : shown->window.actions()) {
        for (const QKeySequence& key : action->shortcuts()) {
            const std::string text = key.toString(QKeySequence::PortableText).toStdString();
            EXPECT_TRUE(actions.try_emplace(text, action->objectName().toStdString()).second)
                << text << " is of " << actions[text] << " and of " << action->objectName().toStdString();
        }
    }
    EXPECT_GT(actions.size(), 40U);
}

TEST_F(MainWindows, ListTheirKeys)
{
    shown->choose("shortcuts");
    const auto* dialog = shown->window.findChild<KeysDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    const auto* table = dialog->findChild<QTableWidget*>();
    EXPECT_EQ(table->findItems("Ctrl+Return", Qt::MatchStartsWith).size(), 1);
}

struct KeyCase {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    Tool tool;
};
const KeyCase kToolKeys[] = {
    {"LForALine",         Qt::Key_L, {}, Tool::line       },
    {"NForATriangle",     Qt::Key_N, {}, Tool::triangle   },
    {"CForACircle",       Qt::Key_C, {}, Tool::circle     },
    {"IForAnEllipticArc", Qt::Key_I, {}, Tool::ellipticArc},
    {"XForTheEraser",     Qt::Key_X, {}, Tool::eraser     },
    {"SForSelecting",     Qt::Key_S, {}, Tool::select     },
    {"HForTheHand",       Qt::Key_H, {}, Tool::hand       },
    {"FForAFreeCurve",    Qt::Key_F, {}, Tool::freeCurve  },
};
class ToolKeys : public MainWindows, public testing::WithParamInterface<KeyCase> {};
TEST_P(ToolKeys, ChooseTheTool)
{
    QTest::keyClick(&canvas(), static_cast<Qt::Key>(GetParam().key), GetParam().modifiers);
    EXPECT_EQ(canvas().tool(), GetParam().tool);
}
INSTANTIATE_TEST_SUITE_P(, ToolKeys, testing::ValuesIn(kToolKeys),
                         [](const auto& row) { return row.param.name; });

TEST_F(MainWindows, AreWorkedFromTheKeyboard)
{
    const auto editor = editorThatAsks();
    shown->drawLine();
    QTest::keyClick(&canvas(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(shown->count(), 1U) << "nothing is selected";
    QTest::keyClick(&canvas(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&canvas(), Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(shown->count(), 2U);
    const double before = shown->model().document().strokes()[1]->ink[0].x;
    QTest::keyClick(&canvas(), Qt::Key_Right);
    EXPECT_NEAR(shown->model().document().strokes()[1]->ink[0].x, before + 1, 1e-9);
    QTest::keyClick(&canvas(), Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NEAR(shown->model().document().strokes()[1]->ink[0].x, before, 1e-9);
    QTest::keyClick(&canvas(), Qt::Key_Delete);
    EXPECT_EQ(shown->count(), 1U);
    QTest::keyClick(&canvas(), Qt::Key_Plus);
    EXPECT_DOUBLE_EQ(canvas().viewScale(), 1.25);
    QTest::keyClick(&canvas(), Qt::Key_0);
    EXPECT_DOUBLE_EQ(canvas().viewScale(), 1);
    QTest::keyClick(&canvas(), Qt::Key_BracketRight);
    EXPECT_DOUBLE_EQ(canvas().viewRotation(), 15);
    QTest::keyClick(&canvas(), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_NE(editor->receivedToItsEnd().find("<shape>"), std::string::npos);
}

TEST_F(MainWindows, LeaveTheArrowKeysToASliderThatHasTheFocus)
{
    shown->drawLine();
    shown->choose("selectAll");
    auto& slider = *shown->window.findChild<QSlider*>("tolerance");
    slider.setFocus();
    const int before = slider.value();
    const double x = shown->model().document().strokes()[0]->ink[0].x;
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.value(), before + 1);
    EXPECT_EQ(shown->model().document().strokes()[0]->ink[0].x, x);
    EXPECT_DOUBLE_EQ(canvas().settings().tolerance, slider.value() / 50.0);
}

TEST_F(MainWindows, KeepTheirSettings)
{
    shown->choose("snapToAngles");
    shown->choose("convertAlways");
    EXPECT_FALSE(canvas().settings().snapToAngles);
    startAnew();
    EXPECT_FALSE(canvas().settings().snapToAngles);
    EXPECT_TRUE(canvas().settings().convertAlways);
    EXPECT_TRUE(shown->action("convertAlways").isChecked());
}

TEST_F(MainWindows, ExportWhatIsDrawn)
{
    shown->drawLine();
    auto& desk = *shown->window.findChild<FileDesk*>();
    ASSERT_TRUE(desk.exportSvg(files.path("sketch.svg")));
    ASSERT_TRUE(desk.exportPng(files.path("sketch.png")));
    EXPECT_NE(support::content_of(files.folder.path("sketch.svg")).find("<path d=\"M"), std::string::npos);
    const QImage image(files.path("sketch.png"));
    EXPECT_EQ(image.size(), QSize(2246, 1588)) << "the sheet at twice its size";
    const auto ink = shown->model().document().strokes()[0]->ink;
    const auto& middle = ink[ink.size() / 2];
    ASSERT_TRUE(image.valid(static_cast<int>(middle.x * 2), static_cast<int>(middle.y * 2)));
    EXPECT_LT(qGray(image.pixel(static_cast<int>(middle.x * 2), static_cast<int>(middle.y * 2))), 128);
    EXPECT_EQ(image.pixel(20, 20), qRgb(255, 255, 255));
}

TEST_F(MainWindows, TellWhatFailedAndGoOn)
{
    shown->drawLine();
    auto& desk = *shown->window.findChild<FileDesk*>();
    EXPECT_FALSE(desk.saveAs(files.path("no-such-folder/sketch.xml")));
    EXPECT_NE(shown->notice("file").find("Cannot write "), std::string::npos);
    EXPECT_FALSE(shown->window.openFile(files.path("none.xml")));
    EXPECT_NE(shown->notice("file").find("none.xml"), std::string::npos);
    EXPECT_EQ(shown->count(), 1U);
    EXPECT_TRUE(desk.saveAs(files.path("sketch.xml")));
    EXPECT_EQ(shown->notice("file"), "") << "it is mended";
    EXPECT_FALSE(shown->window.isWindowModified());
}

// What has no words on it is told by its name.
TEST_F(MainWindows, HaveANameForEverythingThatOneCanReach)
{
    for (const QWidget* widget : shown->window.findChildren<QWidget*>()) {
        const auto* button = qobject_cast<const QToolButton*>(widget);
        const bool isReached = qobject_cast<const QSlider*>(widget) != nullptr || widget == &canvas() ||
                               (button != nullptr && button->defaultAction() != nullptr);
        const bool isNamed =
            !widget->accessibleName().isEmpty() || (button != nullptr && !button->text().isEmpty());
        EXPECT_TRUE(isNamed || !isReached)
            << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
    }
}

} // namespace
