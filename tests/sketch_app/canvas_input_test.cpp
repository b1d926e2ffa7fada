// Mouse, pen and fingers: what each of them does, and which of them counts.
#include "tests/sketch_app/canvas_hand.h"

namespace {

using namespace sketch_app_test;

class CanvasInput : public Canvas {
protected:
    CanvasInput()
    {
        canvas.setClock([this] { return now; });
    }

    QTest::QTouchEventWidgetSequence fingers() { return QTest::touchEvent(&canvas, &touchScreen()); }
    void fingerDraws()
    {
        fingers().press(0, QPoint(100, 100), &canvas);
        for (int x = 110; x <= 200; x += 10)
            fingers().move(0, QPoint(x, 100), &canvas);
        fingers().release(0, QPoint(200, 100), &canvas);
    }
    QPointF inWidget(QPointF sheet) const { return canvas.sheetToWidget().map(sheet); }

    qint64 now = 1000;
};

TEST_F(CanvasInput, TakesThePensPressureAndPlaceAsTheyCome)
{
    pen.press({100.25, 100.75}, 0.25);
    pen.move({150.5, 100.75}, 0.5);
    pen.move({200.125, 100.75}, 0.75);
    pen.release({210.125, 100.75}); // without pressure, as pens are lifted
    ASSERT_EQ(count(), 1U);
    const Ink& ink = top()->ink;
    EXPECT_EQ(ink.front().x, 100.25);
    EXPECT_EQ(ink.front().y, 100.75);
    EXPECT_EQ(ink.front().pressure, 0.25);
    EXPECT_EQ(ink.back().x, 210.125);
    EXPECT_EQ(ink.back().pressure, 0.75);
}

TEST_F(CanvasInput, GivesTheKeyboardToTheSheetThatThePenTouches)
{
    QWidget window;
    SketchCanvas inside(model, &window);
    inside.resize(800, 600);
    QWidget other(&window);
    other.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    other.setFocus();
    ASSERT_TRUE(runUntil([&] { return other.hasFocus(); }));
    Pen tip(inside);
    tip.hover({100, 100});
    EXPECT_FALSE(inside.hasFocus());
    tip.press({100, 100});
    EXPECT_TRUE(inside.hasFocus());
}

TEST_F(CanvasInput, ErasesWithTheEndOfThePen)
{
    mouse.draw(linePath({100, 100}, {300, 100}));
    Pen eraser(canvas, Pen::Tip::Eraser);
    eraser.draw(linePath({200, 50}, {200, 150}));
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(canvas.tool(), Tool::pen);
    pen.draw(linePath({100, 100}, {300, 100}));
    EXPECT_EQ(count(), 1U);
}

TEST_F(CanvasInput, ErasesWithThePensButtonAndPansWithTheOther)
{
    mouse.draw(linePath({100, 100}, {300, 100}));
    pen.draw(linePath({200, 150}, {230, 200}), 1, Qt::MiddleButton);
    EXPECT_EQ(count(), 1U);
    EXPECT_EQ(inWidget({0, 0}), QPointF(30, 50));
    pen.draw(linePath({200, 100}, {200, 200}), 1, Qt::RightButton);
    EXPECT_EQ(count(), 0U);
}

TEST_F(CanvasInput, DrawsWithOneFinger)
{
    fingerDraws();
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(top()->ink.front().x, 100);
    EXPECT_EQ(top()->ink.back().x, 200);
}

TEST_F(CanvasInput, PansWithOneFingerWhenFingersDoNotDraw)
{
    change([](CanvasSettings& settings) { settings.fingersDraw = false; });
    fingerDraws();
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(inWidget({0, 0}), QPointF(100, 0));
}

TEST_F(CanvasInput, IgnoresTheHandWhileAPenIsNearAndHalfASecondAfter)
{
    pen.comeNear();
    fingerDraws();
    EXPECT_EQ(count(), 0U);
    now += 5000;
    pen.hover({50, 50});
    fingerDraws();
    EXPECT_EQ(count(), 0U) << "a pen that hovers is near";
    pen.goAway();
    now += 499;
    fingerDraws();
    EXPECT_EQ(count(), 0U);
    now += 2;
    fingerDraws();
    EXPECT_EQ(count(), 1U);
}

TEST_F(CanvasInput, DropsWhatTheHandHasBegunWhenAPenComes)
{
    fingers().press(0, QPoint(100, 100), &canvas);
    fingers().move(0, QPoint(150, 100), &canvas);
    EXPECT_TRUE(canvas.isDrawing());
    pen.comeNear();
    EXPECT_FALSE(canvas.isDrawing());
    pen.draw(linePath({300, 300}, {400, 300}));
    fingers().move(0, QPoint(200, 100), &canvas);
    fingers().release(0, QPoint(200, 100), &canvas);
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(top()->ink.front().x, 300);
}

TEST_F(CanvasInput, HearsFingersAgainWhenAPenWentWithoutAWord)
{
    pen.comeNear();
    now += 10'001;
    fingerDraws();
    EXPECT_EQ(count(), 1U);
}

TEST_F(CanvasInput, DropsTheFirstFingersStrokeAndMovesTheViewWithTwo)
{
    fingers().press(0, QPoint(300, 300), &canvas);
    fingers().move(0, QPoint(320, 300), &canvas);
    EXPECT_TRUE(canvas.isDrawing());
    fingers().move(0, QPoint(320, 300), &canvas).press(1, QPoint(420, 300), &canvas);
    EXPECT_FALSE(canvas.isDrawing());
    const QPointF first = canvas.sheetToWidget().inverted().map(QPointF(320, 300));
    const QPointF second = canvas.sheetToWidget().inverted().map(QPointF(420, 300));
    fingers().move(0, QPoint(250, 320), &canvas).move(1, QPoint(450, 320), &canvas);
    EXPECT_NEAR(canvas.viewScale(), 2, 1e-6);
    EXPECT_NEAR((inWidget(first) - QPointF(250, 320)).manhattanLength(), 0, 1e-6);
    EXPECT_NEAR((inWidget(second) - QPointF(450, 320)).manhattanLength(), 0, 1e-6);
    fingers().move(0, QPoint(350, 220), &canvas).move(1, QPoint(350, 420), &canvas);
    // A quarter turn, less what fingers turn without meaning it.
    EXPECT_NEAR(canvas.viewRotation(), 90 - 8, 1e-6);
    EXPECT_NEAR(canvas.viewScale(), 2, 1e-6);
    // The one that stays draws nothing.
    fingers().move(0, QPoint(350, 220), &canvas).release(1, QPoint(350, 420), &canvas);
    fingers().move(0, QPoint(100, 100), &canvas);
    fingers().release(0, QPoint(100, 100), &canvas);
    EXPECT_EQ(count(), 0U);
    EXPECT_FALSE(model.undoStack().canUndo());
}

TEST_F(CanvasInput, PansWithTheMiddleButtonAndWithSpace)
{
    mouse.draw(linePath({100, 100}, {140, 130}), Qt::MiddleButton);
    EXPECT_EQ(inWidget({0, 0}), QPointF(40, 30));
    keyDown(Qt::Key_Space);
    mouse.draw(linePath({100, 100}, {110, 90}));
    key(Qt::Key_Space);
    EXPECT_EQ(inWidget({0, 0}), QPointF(50, 20));
    EXPECT_EQ(count(), 0U);
    mouse.draw(linePath({100, 100}, {110, 90}));
    EXPECT_EQ(count(), 1U);
}

void turnWheel(SketchCanvas& canvas, QPointF at, QPoint eighths, Qt::KeyboardModifiers modifiers)
{
    QWheelEvent event(at, canvas.mapToGlobal(at), {}, eighths, {}, modifiers, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&canvas, &event);
}

TEST_F(CanvasInput, ZoomsAboutThePointerWithTheWheelAndScrollsWithIt)
{
    const QPointF under = canvas.sheetToWidget().inverted().map(QPointF(200, 150));
    turnWheel(canvas, {200, 150}, {0, 240}, Qt::ControlModifier);
    EXPECT_NEAR(canvas.viewScale(), 1.2 * 1.2, 1e-9);
    EXPECT_NEAR((inWidget(under) - QPointF(200, 150)).manhattanLength(), 0, 1e-9);
    turnWheel(canvas, {200, 150}, {0, -240}, Qt::ControlModifier);
    const QPointF before = inWidget({0, 0});
    turnWheel(canvas, {200, 150}, {0, -120}, Qt::NoModifier);
    EXPECT_EQ((inWidget({0, 0}) - before).toPoint(), QPoint(0, -64));
    turnWheel(canvas, {200, 150}, {0, -120}, Qt::ShiftModifier);
    EXPECT_EQ((inWidget({0, 0}) - before).toPoint(), QPoint(-64, -64));
}

TEST_F(CanvasInput, SaysWhereThePointerIsOnTheSheet)
{
    std::vector<QPointF> said;
    QObject::connect(&canvas, &SketchCanvas::pointerMoved, &canvas,
                     [&](const QPointF& at) { said.push_back(at); });
    canvas.setScale(2);
    mouse.move({400, 300});
    pen.hover({402.5, 300});
    ASSERT_EQ(said.size(), 2U);
    EXPECT_EQ(said[0], QPointF(400, 300));
    EXPECT_EQ(said[1], QPointF(401.25, 300));
}

TEST_F(CanvasInput, HearsOnlyTheFirstButtonUntilItIsReleased)
{
    mouse.drawOn(linePath({100, 100}, {200, 100}));
    QMouseEvent other(QEvent::MouseButtonPress, QPointF(200, 100), canvas.mapToGlobal(QPointF(200, 100)),
                      Qt::RightButton, Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&canvas, &other);
    EXPECT_TRUE(canvas.isDrawing());
    mouse.release({200, 100});
    EXPECT_EQ(count(), 1U);
}

TEST_F(CanvasInput, EndsAStrokeWhenTheCanvasIsHidden)
{
    mouse.drawOn(linePath({100, 100}, {200, 100}));
    canvas.hide();
    EXPECT_EQ(count(), 1U);
    EXPECT_FALSE(canvas.isDrawing());
}

TEST_F(CanvasInput, EndsAStrokeWhoseReleaseWentElsewhere)
{
    mouse.drawOn(linePath({100, 100}, {200, 100}));
    QMouseEvent move(QEvent::MouseMove, QPointF(500, 500), canvas.mapToGlobal(QPointF(500, 500)),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&canvas, &move);
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(top()->ink.back().x, 200);

    pen.press({300, 300});
    pen.move({350, 300});
    pen.goAway();
    ASSERT_EQ(count(), 2U);
    EXPECT_EQ(top()->ink.back().x, 350);
}

struct ClaimCase {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    bool isClaimed;
};
const ClaimCase kClaims[] = {
    {"Return",        Qt::Key_Return, {},                                       true },
    {"EnterOfThePad", Qt::Key_Enter,  Qt::KeypadModifier,                       true },
    {"Escape",        Qt::Key_Escape, {},                                       true },
    {"CtrlReturn",    Qt::Key_Return, Qt::ControlModifier,                      false},
    {"CtrlEnter",     Qt::Key_Enter,  Qt::ControlModifier | Qt::KeypadModifier, false},
    {"ShiftEscape",   Qt::Key_Escape, Qt::ShiftModifier,                        false},
    {"MetaReturn",    Qt::Key_Return, Qt::MetaModifier,                         false},
};
class CanvasClaims : public Canvas, public testing::WithParamInterface<ClaimCase> {
protected:
    bool isClaimed()
    {
        QKeyEvent event(QEvent::ShortcutOverride, GetParam().key, GetParam().modifiers);
        event.ignore();
        QCoreApplication::sendEvent(&canvas, &event);
        return event.isAccepted();
    }
};
TEST_P(CanvasClaims, TheKeysThatAnswerWhatIsShownOrEndWhatIsDone)
{
    EXPECT_FALSE(isClaimed()) << "nothing is shown";
    mouse.drawOn(circlePath({300, 300}, 80));
    EXPECT_EQ(isClaimed(), GetParam().isClaimed) << "a stroke is drawn";
    key(GetParam().key, GetParam().modifiers);
    EXPECT_EQ(canvas.isDrawing(), GetParam().key != Qt::Key_Escape || !GetParam().isClaimed);
    if (!canvas.isDrawing())
        mouse.drawOn(circlePath({300, 300}, 80));
    mouse.release({380, 300});
    key(Qt::Key_Tab);
    ASSERT_NE(canvas.offeredReading(), "");
    EXPECT_EQ(isClaimed(), GetParam().isClaimed) << "a reading is shown";
    key(GetParam().key, GetParam().modifiers);
    EXPECT_EQ(canvas.offeredReading().isEmpty(), GetParam().isClaimed);
}
INSTANTIATE_TEST_SUITE_P(, CanvasClaims, testing::ValuesIn(kClaims),
                         [](const auto& row) { return row.param.name; });

} // namespace
