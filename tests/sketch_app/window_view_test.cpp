// How the window and what is in it take their sizes, and how the sheet lies in it.
#include "tests/sketch_app/shown_window.h"

#include "sketch/app/keys_dialog.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QScreen>
#include <QSlider>
#include <QTableWidget>

#include <memory>
#include <string>

namespace {

using namespace sketch_app_test;

class WindowViews : public testing::Test {
protected:
    void show() { shown = std::make_unique<ShownWindow>(files); }
    SketchCanvas& canvas() const { return shown->window.canvas(); }
    std::unique_ptr<ScriptedEditor> editorThatAsks() const
    {
        auto editor = std::make_unique<ScriptedEditor>(shown->port());
        editor->send(requestLine(2000));
        EXPECT_TRUE(runUntil([&] { return shown->window.session().editorWaits(); }));
        runDueEvents();
        return editor;
    }

    WindowFiles files;
    std::unique_ptr<ShownWindow> shown;
};

TEST_F(WindowViews, FitOnTheScreen)
{
    show();
    const QRect available = shown->window.screen()->availableGeometry();
    EXPECT_LE(shown->window.frameGeometry().width(), available.width());
    EXPECT_LE(shown->window.frameGeometry().height(), available.height());
}

TEST_F(WindowViews, KeepEveryPartInViewWhenTheyAreSmall)
{
    show();
    const auto editor = editorThatAsks();
    ScriptedEditor other(shown->port());
    other.send(requestLine());
    const LinkPanel& panel = shown->window.linkPanel();
    ASSERT_TRUE(runUntil([&] { return !panel.othersText().isEmpty(); }));
    for (const QSize size : {QSize(300, 300), QSize(480, 420), QSize(640, 480)}) {
        shown->window.resize(size);
        for (int i = 0; i < 5; ++i)
            runDueEvents(); // layouts ask one another
        const std::string at = std::to_string(size.width());
        EXPECT_LE(shown->window.width(), std::max(size.width(), 420)) << "a small screen has it";
        EXPECT_FALSE(panel.geometry().intersects(canvas().geometry())) << at;
        EXPECT_GE(canvas().height(), 80) << at;
        const auto widgets = panel.findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            if (!widget->isVisible())
                continue;
            EXPECT_TRUE(panel.rect().contains(widget->geometry()))
                << at << ' ' << widget->objectName().toStdString();
            const auto* label = qobject_cast<const QLabel*>(widget);
            const int wanted = label == nullptr ? widget->minimumSizeHint().height()
                                                : label->heightForWidth(widget->width());
            EXPECT_GE(widget->height(), wanted) << at << ' ' << widget->objectName().toStdString();
            for (const QWidget* beside : widgets)
                EXPECT_TRUE(beside == widget || !beside->isVisible() ||
                            !beside->geometry().intersects(widget->geometry()))
                    << at << ' ' << widget->objectName().toStdString();
        }
    }
}

TEST_F(WindowViews, ShortenAHintThatHasNoRoom)
{
    show();
    auto& hint = *shown->window.findChild<QLabel*>("hint");
    shown->window.status().say("A sentence that is much longer than the room that there is for it.");
    hint.resize(150, hint.height());
    QLabel expected;
    expected.setContentsMargins(hint.contentsMargins());
    expected.setText(
        expected.fontMetrics().elidedText(hint.text(), Qt::ElideRight, 150 - hint.contentsMargins().left()));
    expected.resize(hint.size());
    EXPECT_TRUE(expected.text().endsWith(QChar(0x2026)));
    EXPECT_EQ(difference(hint.grab().toImage(), expected.grab().toImage()), "");
    EXPECT_EQ(hint.toolTip(), hint.text()) << "the whole of it";
}

TEST_F(WindowViews, ReachTheButtonThatTriesThePortAgain)
{
    LinkServer other;
    ASSERT_TRUE(other.listen(0));
    WindowSetup setup = files.setup();
    setup.port = other.port();
    shown = std::make_unique<ShownWindow>(setup);
    shown->choose("nextPane");
    ASSERT_NE(shown->window.focusWidget(), nullptr);
    EXPECT_EQ(shown->window.focusWidget()->objectName(), "listenAgain");
    shown->choose("nextPane");
    EXPECT_TRUE(canvas().hasFocus());
}

TEST_F(WindowViews, TellWhetherTheyFillTheScreen)
{
    show();
    const QAction& fullScreen = shown->action("fullScreen");
    shown->window.setWindowState(Qt::WindowFullScreen); // as a desktop's own key does
    runDueEvents();
    EXPECT_TRUE(fullScreen.isChecked());
    shown->choose("fullScreen");
    runDueEvents();
    EXPECT_FALSE(shown->window.isFullScreen());
    EXPECT_FALSE(fullScreen.isChecked());
}

TEST_F(WindowViews, KeepTheEditorsScaleWhateverComesOntoItsSheet)
{
    show();
    const auto editor = editorThatAsks();
    shown->window.turnEditorSheet(15);
    EXPECT_DOUBLE_EQ(canvas().viewScale(), 1);
    shown->drawLine();
    shown->choose("newSheet");
    EXPECT_DOUBLE_EQ(canvas().viewScale(), 1);
    EXPECT_DOUBLE_EQ(canvas().viewRotation(), 15);
    ASSERT_TRUE(shown->press("earlier", "Bring It Back"));
    EXPECT_EQ(shown->count(), 1U);
    EXPECT_DOUBLE_EQ(canvas().viewScale(), 1);
    shown->choose("cancel");
    ASSERT_FALSE(shown->window.session().editorWaits());
    canvas().setScale(5);
    shown->choose("newSheet");
    EXPECT_LT(canvas().viewScale(), 1) << "nobody waits: the whole of one's own is seen";
}

TEST_F(WindowViews, KeepTheViewOfTheEditorThatWaitsWhenAFileIsOpened)
{
    show();
    shown->drawLine();
    const QString file = files.path("sketch.xml");
    ASSERT_EQ(shown->window.session().save(file).sentence, "");
    const auto editor = editorThatAsks();
    shown->window.turnEditorSheet(15);
    const QTransform before = canvas().sheetToWidget();
    ASSERT_TRUE(shown->window.openFile(file));
    runDueEvents();
    EXPECT_EQ(shown->count(), 1U);
    EXPECT_EQ(canvas().sheetToWidget(), before);
    shown->choose("cancel");
    ASSERT_TRUE(shown->window.openFile(file));
    EXPECT_NE(canvas().sheetToWidget(), before) << "nobody waits: what is drawn comes into view";
}

TEST_F(WindowViews, BeginWithWhatIsDrawnInAFileInView)
{
    show();
    shown->drawLine();
    const QString file = files.path("sketch.xml");
    ASSERT_EQ(shown->window.session().save(file).sentence, "");
    shown.reset();
    MainWindow window(files.setup());
    ASSERT_TRUE(window.openFile(file));
    window.show();
    runDueEvents();
    const QTransform before = window.canvas().sheetToWidget();
    window.canvas().fitSketch();
    EXPECT_EQ(before, window.canvas().sheetToWidget());
    window.canvas().fitSheet();
    EXPECT_NE(before, window.canvas().sheetToWidget());
}

TEST_F(WindowViews, FollowTheDesktopsColours)
{
    show();
    const auto sheet = [&] {
        const QImage image = canvas().grab().toImage();
        return qGray(image.pixel(image.width() / 2, image.height() / 2));
    };
    EXPECT_GT(sheet(), 128);
    QApplication::setPalette(QPalette(QColor(0x30, 0x30, 0x30), QColor(0x30, 0x30, 0x30)));
    EXPECT_TRUE(runUntil([&] { return sheet() < 128; }, 3000));
    QApplication::setPalette(QPalette());
    EXPECT_TRUE(runUntil([&] { return sheet() > 128; }, 3000));
}

TEST_F(WindowViews, WriteTheirSettingsWhenASliderHasComeToRest)
{
    show();
    auto& slider = *shown->window.findChild<QSlider*>("tolerance");
    const auto written = [&] { return SettingsStore(files.path("settings.ini")).load().canvas.tolerance; };
    const double before = written();
    for (int i = 0; i < 5; ++i)
        slider.setValue(slider.value() + 1);
    EXPECT_DOUBLE_EQ(written(), before);
    EXPECT_TRUE(runUntil([&] { return written() == slider.value() / 50.0; }));
    slider.setValue(slider.value() + 1);
    const double last = slider.value() / 50.0;
    shown.reset();
    EXPECT_DOUBLE_EQ(written(), last) << "whatever ends first";
}

TEST_F(WindowViews, ListKeysThatHaveNamesAndActionsThatKeepTheirs)
{
    show();
    shown->drawLine();
    shown->choose("selectAll");
    shown->choose("duplicate");
    shown->choose("shortcuts");
    const auto* table = shown->window.findChild<KeysDialog*>()->findChild<QTableWidget*>();
    EXPECT_EQ(table->findItems("Undo", Qt::MatchExactly).size(), 1);
    EXPECT_EQ(table->findItems("Full stop (.)", Qt::MatchExactly).size(), 1);
    EXPECT_EQ(table->findItems("Comma (,)", Qt::MatchExactly).size(), 1);
}

TEST_F(WindowViews, NeverSaveOverAFileThatHoldsNoSketch)
{
    show();
    const QString own = files.path("own.xml");
    shown->drawLine();
    ASSERT_EQ(shown->window.session().save(own).sentence, "");
    const std::string picture = files.folder.file("picture.svg", "<svg><path d=\"M0 0L9 9\"/></svg>\n");
    EXPECT_FALSE(shown->window.openFile(QString::fromStdString(picture)));
    EXPECT_NE(shown->notice("file").find("it holds no sketch"), std::string::npos) << shown->notice("file");
    EXPECT_EQ(shown->count(), 1U);
    EXPECT_EQ(shown->window.session().file(), own);
    shown->drawLine();
    shown->choose("save");
    EXPECT_EQ(support::content_of(picture), "<svg><path d=\"M0 0L9 9\"/></svg>\n");
}

} // namespace
