// How ink becomes what was meant: offered, looked at, taken or not; and nothing silently.
#include "tests/sketch_app/canvas_hand.h"

namespace {

using namespace sketch_app_test;

Round roundOf(const StrokePtr& stroke) { return std::get<Round>(stroke->shape); }

class CanvasReading : public Canvas {
protected:
    QString offered() const { return canvas.offeredReading(); }
    void takeSoon()
    {
        change([](CanvasSettings& settings) { settings.takeMilliseconds = 0; });
    }
    bool waitUntilTaken()
    {
        return runUntil([this] { return offered().isEmpty(); });
    }
};

TEST_F(CanvasReading, StaysInkWhenThePenDoesNotRest)
{
    mouse.draw(circlePath({300, 300}, 80));
    runDueEvents();
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
    EXPECT_EQ(offered(), "");
}

TEST_F(CanvasReading, ShowsAGhostWhenThePenRestsAndTakesItWhenThePenIsLifted)
{
    holdBriefly();
    mouse.drawOn(circlePath({300, 300}, 80));
    const QImage ink = picture();
    ASSERT_TRUE(restUntilOffered());
    EXPECT_EQ(offered(), "circle");
    EXPECT_EQ(count(), 0U) << "the pen is still down";
    EXPECT_NE(picture(), ink) << "there is no ghost to see";
    mouse.release({380, 300});
    ASSERT_EQ(kinds(), (std::vector{Kind::circle}));
    EXPECT_NEAR(roundOf(top()).ellipse.centre.x, 300, 0.5);
    EXPECT_NEAR(roundOf(top()).ellipse.centre.y, 300, 0.5);
    EXPECT_NEAR(roundOf(top()).ellipse.major, 80, 0.5);
    EXPECT_EQ(offered(), "");
}

TEST_F(CanvasReading, GivesTheInkBackWithTheFirstUndo)
{
    holdBriefly();
    const Path path = circlePath({300, 300}, 80);
    mouse.drawOn(path);
    const QImage ink = picture();
    ASSERT_TRUE(restUntilOffered());
    mouse.release(point(path.back()));
    ASSERT_EQ(kinds(), (std::vector{Kind::circle}));
    model.undoStack().undo();
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
    EXPECT_EQ(difference(picture(), ink), "");
    model.undoStack().undo();
    EXPECT_EQ(count(), 0U);
}

TEST_F(CanvasReading, DoesNotWaitForAHandThatTremblesALittle)
{
    holdBriefly();
    const Path path = linePath({100, 100}, {300, 100});
    mouse.drawOn(path);
    mouse.move({301, 101});
    mouse.move({299, 102});
    ASSERT_TRUE(restUntilOffered());
    EXPECT_EQ(offered(), "line");
}

TEST_F(CanvasReading, WaitsAgainWheneverThePenMovesOn)
{
    holdBriefly();
    const Path path = linePath({100, 100}, {300, 100});
    mouse.press(point(path.front()));
    for (int i = 0; i < 5; ++i)
        runDueEvents(); // the hold time passes, and there is nothing to offer yet
    EXPECT_EQ(offered(), "");
    for (const Vec2 p : path)
        mouse.move(point(p));
    ASSERT_TRUE(restUntilOffered());
    EXPECT_EQ(offered(), "line");
}

TEST_F(CanvasReading, GoesThroughTheOthersWithTab)
{
    holdBriefly();
    mouse.drawOn(circlePath({300, 300}, 80));
    ASSERT_TRUE(restUntilOffered());
    std::vector<QString> seen = {offered()};
    for (int i = 0; i < 30; ++i) {
        key(Qt::Key_Tab);
        if (offered() == seen.front())
            break;
        seen.push_back(offered());
    }
    EXPECT_EQ(offered(), seen.front()) << "they come round again";
    for (const char* name : {"circle", "ellipse", "polygon", "free curve", "ink"})
        EXPECT_NE(std::find(seen.begin(), seen.end(), name), seen.end()) << name;
    EXPECT_EQ(seen.back(), "ink");
    key(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(offered(), "ink");
    key(Qt::Key_Tab);
    key(Qt::Key_Tab);
    EXPECT_EQ(offered(), seen[1]);
    mouse.release({380, 300});
    EXPECT_EQ(name_of(topKind()), seen[1].toStdString());
}

TEST_F(CanvasReading, KeepsTheInkWhenInkIsChosen)
{
    holdBriefly();
    mouse.drawOn(circlePath({300, 300}, 80));
    ASSERT_TRUE(restUntilOffered());
    key(Qt::Key_Backtab);
    ASSERT_EQ(offered(), "ink");
    mouse.release({380, 300});
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
    EXPECT_EQ(model.undoStack().count(), 1);
}

TEST_F(CanvasReading, KeepsTheInkOnEscapeAndGoesOnDrawing)
{
    holdBriefly();
    mouse.drawOn(linePath({100, 100}, {300, 100}));
    ASSERT_TRUE(restUntilOffered());
    key(Qt::Key_Escape);
    EXPECT_EQ(offered(), "");
    EXPECT_TRUE(canvas.isDrawing());
    mouse.move({300, 150});
    mouse.move({300, 200});
    mouse.release({300, 200});
    ASSERT_EQ(kinds(), (std::vector{Kind::ink}));
    EXPECT_EQ(top()->ink.front().x, 100);
    EXPECT_EQ(top()->ink.back().y, 200);
}

TEST_F(CanvasReading, DropsAStrokeOnEscapeWhileNothingIsOffered)
{
    mouse.drawOn(linePath({100, 100}, {300, 100}));
    key(Qt::Key_Escape);
    EXPECT_FALSE(canvas.isDrawing());
    mouse.move({300, 150});
    mouse.release({300, 150});
    EXPECT_EQ(count(), 0U);
    EXPECT_FALSE(model.undoStack().canUndo());
}

TEST_F(CanvasReading, OffersThoseOfTheLastStrokeOnTab)
{
    const QImage empty = picture();
    mouse.draw(circlePath({300, 300}, 80));
    key(Qt::Key_Tab);
    EXPECT_EQ(offered(), "circle");
    EXPECT_EQ(kinds(), (std::vector{Kind::ink})) << "only shown";
    key(Qt::Key_Tab);
    EXPECT_NE(offered(), "circle");
    key(Qt::Key_Backtab);
    key(Qt::Key_Return);
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(kinds(), (std::vector{Kind::circle}));
    // What it is now is passed over, and ink is there as well.
    key(Qt::Key_Tab);
    EXPECT_NE(offered(), "circle");
    while (offered() != "ink")
        key(Qt::Key_Tab);
    key(Qt::Key_Return);
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
    while (model.undoStack().canUndo())
        model.undoStack().undo();
    EXPECT_EQ(difference(picture(), empty), "");
}

TEST_F(CanvasReading, OffersThoseOfTheStrokeThatIsSelectedOnTab)
{
    mouse.draw(circlePath({200, 300}, 80));
    mouse.draw(linePath({400, 100}, {600, 100}));
    model.setSelection({1});
    key(Qt::Key_Tab);
    EXPECT_EQ(offered(), "circle");
    key(Qt::Key_Enter);
    EXPECT_EQ(kinds(), (std::vector{Kind::circle, Kind::ink}));
}

TEST_F(CanvasReading, LeavesTabToTheWindowWhenThereIsNothingToOffer)
{
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QWidget window;
    SketchCanvas inside(model, &window);
    QWidget next(&window);
    next.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    inside.setFocus();
    ASSERT_TRUE(runUntil([&] { return inside.hasFocus(); }));
    QCoreApplication::sendEvent(&inside, &tab);
    EXPECT_TRUE(next.hasFocus());
}

TEST_F(CanvasReading, DropsWhatIsOfferedOnEscape)
{
    mouse.draw(circlePath({300, 300}, 80));
    const QImage ink = picture();
    key(Qt::Key_Tab);
    EXPECT_NE(picture(), ink);
    key(Qt::Key_Escape);
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(difference(picture(), ink), "");
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
}

TEST_F(CanvasReading, TakesWhatIsOfferedWithTheNextStroke)
{
    mouse.draw(circlePath({200, 300}, 80));
    key(Qt::Key_Tab);
    mouse.draw(linePath({400, 100}, {600, 100}));
    EXPECT_EQ(kinds(), (std::vector{Kind::circle, Kind::ink}));
}

TEST_F(CanvasReading, ConvertsEveryStrokeAfterAMomentWhenAskedTo)
{
    change([](CanvasSettings& settings) { settings.convertAlways = true; });
    mouse.draw(circlePath({300, 300}, 80));
    EXPECT_EQ(offered(), "circle");
    EXPECT_EQ(kinds(), (std::vector{Kind::ink})) << "it is shown before it is taken";
    key(Qt::Key_Escape);
    runDueEvents();
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));

    takeSoon();
    mouse.draw(circlePath({300, 300}, 80));
    EXPECT_EQ(kinds(), (std::vector{Kind::ink, Kind::ink}));
    ASSERT_TRUE(waitUntilTaken());
    EXPECT_EQ(kinds(), (std::vector{Kind::ink, Kind::circle}));
    model.undoStack().undo();
    EXPECT_EQ(kinds(), (std::vector{Kind::ink, Kind::ink}));
}

TEST_F(CanvasReading, IsTheInkThatEscapeKeptThoughEveryStrokeIsConverted)
{
    struct Way {
        const char* name;
        Tool tool;
        bool isAlways;
    };
    holdBriefly();
    for (const Way& way : {
             Way{"convert every stroke", Tool::pen,    true },
             Way{"a tool for one kind",  Tool::circle, false}
    }) {
        change([&](CanvasSettings& settings) { settings.convertAlways = way.isAlways; });
        canvas.setTool(way.tool);
        mouse.drawOn(circlePath({300, 300}, 80));
        ASSERT_TRUE(restUntilOffered()) << way.name;
        key(Qt::Key_Escape);
        mouse.release({380, 300});
        EXPECT_EQ(offered(), "") << way.name;
        EXPECT_EQ(topKind(), Kind::ink) << way.name;
    }
    EXPECT_EQ(count(), 2U);
}

TEST_F(CanvasReading, IsTakenWhereTheSketchIsToBeWhatOneSees)
{
    canvas.setTool(Tool::circle);
    mouse.draw(circlePath({300, 300}, 80));
    ASSERT_EQ(offered(), "circle");
    canvas.settle();
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(kinds(), (std::vector{Kind::circle}));

    mouse.drawOn(circlePath({500, 300}, 80)); // the pen is still down
    canvas.settle();
    EXPECT_EQ(kinds(), (std::vector{Kind::circle, Kind::circle}));
}

TEST_F(CanvasReading, StaysOfferedThereWhenItWasAskedFor)
{
    mouse.draw(circlePath({300, 300}, 80));
    key(Qt::Key_Tab);
    canvas.settle();
    EXPECT_EQ(offered(), "circle");
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
}

TEST_F(CanvasReading, IsTakenBeforeTheSheetBecomesAnother)
{
    canvas.setTool(Tool::circle);
    mouse.draw(circlePath({300, 300}, 80));
    ASSERT_EQ(offered(), "circle");
    model.changeSheet(model.sheet(), {1, 0, 0, 1, 50, 0});
    ASSERT_EQ(kinds(), (std::vector{Kind::circle}));
    EXPECT_NEAR(roundOf(top()).ellipse.centre.x, 350, 0.5);
}

TEST_F(CanvasReading, GoesWithTheFirstUndoBeforeItIsTaken)
{
    canvas.setTool(Tool::circle);
    mouse.draw(circlePath({300, 300}, 80));
    ASSERT_EQ(offered(), "circle");
    canvas.undo();
    EXPECT_EQ(offered(), "");
    EXPECT_EQ(kinds(), (std::vector{Kind::ink}));
    canvas.undo();
    EXPECT_EQ(count(), 0U);
}

TEST_F(CanvasReading, LeavesTabAloneWhileSomethingIsDone)
{
    QWidget window;
    SketchCanvas inside(model, &window);
    inside.resize(800, 600);
    QWidget next(&window);
    next.setFocusPolicy(Qt::StrongFocus);
    window.show();
    window.activateWindow();
    inside.setFocus();
    ASSERT_TRUE(runUntil([&] { return inside.hasFocus(); }));
    Mouse hand(inside);
    const auto tab = [&] {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QCoreApplication::sendEvent(&inside, &event);
    };
    hand.drawOn(circlePath({300, 300}, 80)); // nothing is there that has readings
    tab();
    EXPECT_FALSE(next.hasFocus()) << "while a stroke is drawn";
    hand.release({380, 300});
    inside.setTool(Tool::select);
    hand.drawOn(linePath({380, 300}, {420, 300}));
    tab();
    EXPECT_FALSE(next.hasFocus()) << "while a selection is dragged";
    EXPECT_EQ(inside.offeredReading(), "") << "while a selection is dragged";
}

TEST_F(CanvasReading, LeavesWhatIsSmallAsInk)
{
    change([](CanvasSettings& settings) {
        settings.convertAlways = true;
        settings.leastSizePx = 40;
    });
    mouse.draw(circlePath({300, 300}, 12)); // its box has a diagonal of 34 pixels
    EXPECT_EQ(offered(), "");
    mouse.draw(circlePath({300, 300}, 16)); // 45
    EXPECT_EQ(offered(), "circle");
    key(Qt::Key_Escape);
    canvas.setScale(0.5); // as many pixels of the screen are more of the sheet
    mouse.draw(circlePath({300, 300}, 12));
    EXPECT_EQ(offered(), "");
}

TEST_F(CanvasReading, ForgivesMoreWithALargerTolerance)
{
    drawn::Hand hand;
    hand.at = {400, 300};
    hand.jitter = 9;
    const Path path = drawn::path_of(drawn::stroke(
        {
            {-2, 0  },
            {2,  0.3}
    },
        false, hand));
    change([](CanvasSettings& settings) { settings.convertAlways = true; });
    const auto offeredAt = [&](double tolerance) {
        change([=](CanvasSettings& settings) { settings.tolerance = tolerance; });
        mouse.draw(path);
        const QString name = offered();
        key(Qt::Key_Escape);
        return name;
    };
    EXPECT_EQ(offeredAt(3), "line");
    EXPECT_EQ(offeredAt(0.1), "free curve");
}

TEST_F(CanvasReading, ForgetsWhatIsOfferedOfAStrokeThatGoes)
{
    mouse.draw(circlePath({300, 300}, 80));
    key(Qt::Key_Tab);
    model.undoStack().undo();
    EXPECT_EQ(offered(), "");
    key(Qt::Key_Tab);
    key(Qt::Key_Return);
    EXPECT_EQ(count(), 0U);
}

TEST_F(CanvasReading, EndsAStrokeAsIfThePenWereLifted)
{
    mouse.drawOn(linePath({100, 100}, {300, 100}));
    EXPECT_TRUE(canvas.isDrawing());
    canvas.finishStroke();
    EXPECT_FALSE(canvas.isDrawing());
    ASSERT_EQ(count(), 1U);
    EXPECT_EQ(top()->ink.back().x, 300);
    mouse.move({500, 500});
    mouse.release({500, 500});
    EXPECT_EQ(count(), 1U);
}

} // namespace
