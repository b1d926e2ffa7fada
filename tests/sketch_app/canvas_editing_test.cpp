// Selecting, moving, erasing and all that is done to strokes that are there.
#include "tests/sketch_app/canvas_hand.h"

#include <random>

namespace {

using namespace sketch_app_test;

using Ids = std::vector<StrokeId>;

class CanvasEditing : public Canvas {
protected:
    CanvasEditing()
    {
        mouse.draw(linePath({100, 100}, {300, 100})); // 1
        mouse.draw(linePath({100, 200}, {300, 200})); // 2
        mouse.draw(circlePath({500, 300}, 80));       // 3
        canvas.setTool(Tool::select);
    }

    Ids ids() const
    {
        Ids all;
        for (const StrokePtr& stroke : model.document().strokes())
            all.push_back(stroke->id);
        return all;
    }
    void click(QPointF at, Qt::KeyboardModifiers modifiers = {})
    {
        mouse.press(at, Qt::LeftButton, modifiers);
        mouse.release(at, modifiers);
    }
};

TEST_F(CanvasEditing, SelectsWhatIsClicked)
{
    click({200, 104}); // four pixels beside it
    EXPECT_EQ(model.selection(), (Ids{1}));
    click({200, 200});
    EXPECT_EQ(model.selection(), (Ids{2}));
    click({500, 300}); // inside of the circle, which is not filled
    EXPECT_EQ(model.selection(), Ids());
    click({200, 108});
    EXPECT_EQ(model.selection(), Ids());
}

TEST_F(CanvasEditing, AddsAndTakesAwayWithShift)
{
    click({200, 100});
    click({200, 200}, Qt::ShiftModifier);
    EXPECT_EQ(model.selection(), (Ids{1, 2}));
    click({200, 100}, Qt::ShiftModifier);
    EXPECT_EQ(model.selection(), (Ids{2}));
    click({700, 500}, Qt::ShiftModifier);
    EXPECT_EQ(model.selection(), (Ids{2}));
}

TEST_F(CanvasEditing, SelectsTheHigherOfTwo)
{
    canvas.setTool(Tool::pen);
    mouse.draw(linePath({200, 50}, {200, 150}));
    canvas.setTool(Tool::select);
    click({200, 100});
    EXPECT_EQ(model.selection(), (Ids{4}));
}

TEST_F(CanvasEditing, SelectsWhatLiesWhollyInABand)
{
    mouse.draw({
        {50,  50 },
        {200, 150},
        {310, 250}
    });
    EXPECT_EQ(model.selection(), (Ids{1, 2}));
    mouse.draw(
        {
            {600, 400},
            {450, 250},
            {410, 210}
    },
        Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(model.selection(), (Ids{1, 2, 3}));
    mouse.draw({
        {90,  50 },
        {150, 120},
        {250, 150}
    });
    EXPECT_EQ(model.selection(), Ids()) << "half in it is not in it";
    EXPECT_EQ(model.undoStack().count(), 3) << "selecting is no step";
}

TEST_F(CanvasEditing, ShowsTheBandAndTheSelection)
{
    const QImage plain = picture();
    mouse.press({50, 50});
    mouse.move({400, 250});
    EXPECT_NE(picture(), plain);
    mouse.release({400, 250});
    EXPECT_NE(picture(), plain);
    click({700, 500});
    EXPECT_EQ(difference(picture(), plain), "");
}

TEST_F(CanvasEditing, MovesWhatIsSelectedInOneStep)
{
    click({200, 100});
    click({200, 200}, Qt::ShiftModifier);
    mouse.draw(linePath({150, 200}, {180.5, 240.25}));
    ASSERT_EQ(model.undoStack().count(), 4);
    EXPECT_NEAR(model.document().find(1)->ink.front().x, 130.5, 1e-9);
    EXPECT_NEAR(model.document().find(1)->ink.front().y, 140.25, 1e-9);
    EXPECT_NEAR(model.document().find(2)->ink.back().x, 330.5, 1e-9);
    EXPECT_EQ(model.selection(), (Ids{1, 2}));
    model.undoStack().undo();
    EXPECT_EQ(model.document().find(1)->ink.front().x, 100);
    EXPECT_EQ(ids(), (Ids{1, 2, 3}));
}

TEST_F(CanvasEditing, SelectsWhatIsDraggedAndMovesIt)
{
    click({200, 100});
    mouse.draw(linePath({200, 200}, {200, 260}));
    EXPECT_EQ(model.selection(), (Ids{2}));
    EXPECT_EQ(model.document().find(1)->ink.front().y, 100);
    EXPECT_NEAR(model.document().find(2)->ink.front().y, 260, 1e-9);
}

TEST_F(CanvasEditing, LeavesAllAsItWasWhenAMoveIsDropped)
{
    const QImage before = picture();
    mouse.drawOn(linePath({200, 200}, {250, 300}));
    EXPECT_NE(picture(), before);
    key(Qt::Key_Escape);
    model.setSelection({});
    EXPECT_EQ(difference(picture(), before), "");
    EXPECT_EQ(model.undoStack().count(), 3);
}

TEST_F(CanvasEditing, ShowsWhatIsMovedWhereItWillBe)
{
    mouse.drawOn(linePath({200, 200}, {200, 260}));
    model.setSelection({2});
    const QImage moving = picture();
    mouse.release({200, 260});
    model.setSelection({});
    QImage moved = picture();
    // What the selection's frame does not touch.
    const double ratio = moved.devicePixelRatio();
    const QRect middle(static_cast<int>(150 * ratio), static_cast<int>(180 * ratio),
                       static_cast<int>(100 * ratio), static_cast<int>(100 * ratio));
    EXPECT_EQ(difference(moving.copy(middle), moved.copy(middle)), "");
}

TEST_F(CanvasEditing, DeletesAndDuplicatesWhatIsSelected)
{
    click({200, 100});
    model.duplicate(model.selection(), {0, 50});
    EXPECT_EQ(ids(), (Ids{1, 2, 3, 4}));
    EXPECT_EQ(model.selection(), (Ids{4}));
    key(Qt::Key_Delete);
    EXPECT_EQ(ids(), (Ids{1, 2, 3}));
    click({200, 100});
    key(Qt::Key_Backspace);
    EXPECT_EQ(ids(), (Ids{2, 3}));
    model.undoStack().undo();
    EXPECT_EQ(ids(), (Ids{1, 2, 3}));
}

TEST_F(CanvasEditing, MovesByPixelsOfTheScreenWithTheArrows)
{
    canvas.setScale(2);
    canvas.setRotation(90); // right on the screen is up on the sheet
    model.setSelection({1});
    key(Qt::Key_Right);
    EXPECT_NEAR(model.document().find(1)->ink.front().x, 100, 1e-9);
    EXPECT_NEAR(model.document().find(1)->ink.front().y, 99.5, 1e-9);
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_NEAR(model.document().find(1)->ink.front().x, 105, 1e-9);
}

TEST_F(CanvasEditing, SelectsNothingOnEscape)
{
    click({200, 100});
    key(Qt::Key_Escape, Qt::ShiftModifier);
    EXPECT_EQ(model.selection(), (Ids{1})) << "that is another key";
    key(Qt::Key_Escape);
    EXPECT_EQ(model.selection(), Ids());
    EXPECT_EQ(model.undoStack().count(), 3);
}

TEST_F(CanvasEditing, TakesMovesByKeysThatFollowEachOtherForOneStep)
{
    click({200, 100});
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Down);
    ASSERT_EQ(model.undoStack().count(), 4);
    click({200, 200});
    key(Qt::Key_Right);
    EXPECT_EQ(model.undoStack().count(), 5) << "another stroke";
    model.undoStack().undo();
    model.undoStack().undo();
    EXPECT_EQ(model.document().find(1)->ink.front().x, 100);
    model.undoStack().redo();
    EXPECT_EQ(model.document().find(1)->ink.front().x, 102);
    EXPECT_EQ(model.document().find(1)->ink.front().y, 101);
    model.setNudgePause(0);
    click({202, 101});
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    EXPECT_EQ(model.undoStack().count(), 6) << "a while after each other";
}

TEST_F(CanvasEditing, TakesAMoveByHandForAStepOfItsOwn)
{
    click({200, 100});
    key(Qt::Key_Right);
    mouse.draw(linePath({200, 100}, {200, 150}));
    key(Qt::Key_Right);
    EXPECT_EQ(model.undoStack().count(), 6);
}

TEST_F(CanvasEditing, SelectsAgainWhatComesBack)
{
    model.setSelection({1, 3});
    key(Qt::Key_Delete);
    EXPECT_EQ(model.selection(), Ids());
    model.undoStack().undo();
    EXPECT_EQ(model.selection(), (Ids{1, 3}));
    model.setSelection({2});
    model.clear();
    model.undoStack().undo();
    EXPECT_EQ(model.selection(), (Ids{2})) << "what was selected of it";
}

TEST_F(CanvasEditing, ErasesWholeStrokesInOneStepAWay)
{
    canvas.setTool(Tool::eraser);
    const QImage before = picture();
    mouse.drawOn({
        {200, 50 },
        {200, 260}
    });
    EXPECT_EQ(count(), 3U) << "until the eraser is lifted";
    EXPECT_NE(picture(), before) << "what will go is seen to";
    mouse.release({200, 260});
    EXPECT_EQ(ids(), (Ids{3}));
    model.undoStack().undo();
    EXPECT_EQ(ids(), (Ids{1, 2, 3}));
    EXPECT_EQ(difference(picture(), before), "");
}

TEST_F(CanvasEditing, ErasesNothingThatItDoesNotTouch)
{
    canvas.setTool(Tool::eraser);
    mouse.draw(linePath({120, 150}, {280, 150}));
    mouse.draw(linePath({470, 300}, {530, 300})); // inside of the circle
    EXPECT_EQ(count(), 3U);
    mouse.drawOn(linePath({200, 50}, {200, 150}));
    key(Qt::Key_Escape);
    mouse.release({200, 150});
    EXPECT_EQ(count(), 3U);
    EXPECT_EQ(model.undoStack().count(), 3);
}

TEST_F(CanvasEditing, UndoesEverythingDownToTheEmptySheet)
{
    SketchModel none;
    none.setSheet(model.sheet());
    SketchCanvas untouched(none);
    untouched.resize(canvas.size());
    untouched.show();
    click({200, 100});
    mouse.draw(linePath({200, 100}, {300, 400}));
    model.duplicate(model.selection(), {5, 5});
    canvas.setTool(Tool::eraser);
    mouse.draw(linePath({500, 100}, {500, 500}));
    model.clear();
    EXPECT_EQ(count(), 0U);
    while (model.undoStack().canUndo()) {
        model.undoStack().undo();
        picture();
    }
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(difference(picture(), pictureOf(untouched)), "");
    while (model.undoStack().canRedo())
        model.undoStack().redo();
    EXPECT_EQ(count(), 0U);
    EXPECT_EQ(model.undoStack().count(), 7);
}

TEST_F(CanvasEditing, PaintsTheSketchAloneForOthers)
{
    canvas.setScale(3);
    model.setSelection({1, 2, 3});
    QImage image(800, 600, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    canvas.paintSketch(painter);
    painter.end();
    EXPECT_LT(qGray(image.pixel(200, 100)), 80);
    EXPECT_LT(qGray(image.pixel(580, 300)), 80);
    int touched = 0;
    for (int y = 0; y < 600; ++y) {
        for (int x = 0; x < 800; ++x)
            touched += image.pixel(x, y) != QColor(Qt::white).rgb() ? 1 : 0;
    }
    EXPECT_LT(touched, 3 * (200 + 200 + 503)) << "no desk, grid, or selection";
}

TEST_F(CanvasEditing, FitsTheSheetAndTheSketch)
{
    canvas.setScale(5);
    canvas.fitSheet();
    const QRectF sheet = canvas.sheetToWidget().mapRect(QRectF(0, 0, 800, 600));
    EXPECT_TRUE(QRectF(canvas.rect()).contains(sheet));
    EXPECT_NEAR(sheet.center().x(), 400, 1e-9);
    EXPECT_GT(sheet.height(), 540);
    canvas.fitSketch();
    const QRectF sketch = canvas.sheetToWidget().mapRect(QRectF(QPointF(100, 100), QPointF(580, 380)));
    EXPECT_TRUE(QRectF(canvas.rect()).adjusted(1, 1, -1, -1).contains(sketch));
    EXPECT_NEAR(sketch.width(), 800 - 2 * 24, 1);
    canvas.setRotation(90);
    canvas.fitSheet();
    EXPECT_TRUE(QRectF(canvas.rect()).contains(canvas.sheetToWidget().mapRect(QRectF(0, 0, 800, 600))));
}

} // namespace
