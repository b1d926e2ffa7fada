// What the canvas snaps to, how it shows it, and how it is kept from it.
#include "tests/sketch_app/canvas_hand.h"

namespace {

using namespace sketch_app_test;

class CanvasSnapping : public Canvas {
protected:
    CanvasSnapping()
    {
        Sheet sheet = model.sheet();
        sheet.grid = vnt::sketch::Grid{
            {20, 0, 0, 20, 0, 0},
            4
        };
        model.setSheet(sheet);
        change([](CanvasSettings& settings) {
            settings.snapToGrid = settings.snapToShapes = settings.snapToAngles = true;
            settings.holdMilliseconds = 0;
        });
        QObject::connect(&canvas, &SketchCanvas::snappedTo, &canvas,
                         [this](const QString& what) { last = what; });
    }

    void offer(const Path& path)
    {
        mouse.drawOn(path);
        ASSERT_TRUE(restUntilOffered());
    }
    Path corners() const { return std::get<Straight>(top()->shape).corners; }

    QString last;
};

// Pixels of the colour within a distance of a place; both in the widget's.
int pixelsOf(const QImage& image, QColor colour, QPointF at, int reach)
{
    const double ratio = image.devicePixelRatio();
    int found = 0;
    for (int y = static_cast<int>((at.y() - reach) * ratio); y <= (at.y() + reach) * ratio; ++y) {
        for (int x = static_cast<int>((at.x() - reach) * ratio); x <= (at.x() + reach) * ratio; ++x)
            found += image.pixelColor(x, y) == colour ? 1 : 0;
    }
    return found;
}

TEST_F(CanvasSnapping, PutsTheEndsOfALineOnTheGridAndMarksThem)
{
    const QColor marker = CanvasColours::light().marker;
    offer(linePath({103, 97}, {297, 164}));
    EXPECT_EQ(last, "grid crossing");
    EXPECT_GT(pixelsOf(picture(), marker, {100, 100}, 9), 10);
    EXPECT_GT(pixelsOf(picture(), marker, {300, 160}, 9), 10);
    EXPECT_EQ(pixelsOf(picture(), marker, {200, 300}, 9), 0);
    mouse.release({297, 164});
    EXPECT_EQ(last, "");
    EXPECT_EQ(pixelsOf(picture(), marker, {100, 100}, 9), 0) << "the marker goes with the offer";
    EXPECT_NEAR(distance(corners()[0], {100, 100}), 0, 1e-6);
    EXPECT_NEAR(distance(corners()[1], {300, 160}), 0, 1e-6);
}

TEST_F(CanvasSnapping, SnapsAgainWhereAnEndIsDraggedTo)
{
    offer(linePath({103, 97}, {297, 164}));
    mouse.move({378, 221});
    mouse.release({378, 221});
    EXPECT_NEAR(distance(corners()[1], {380, 220}), 0, 1e-6);
}

TEST_F(CanvasSnapping, IsSuspendedByAlt)
{
    offer(linePath({103, 97}, {297, 164}));
    keyDown(Qt::Key_Alt);
    EXPECT_EQ(last, "");
    mouse.release({297, 164}, Qt::AltModifier);
    EXPECT_NEAR(distance(corners()[0], {103, 97}), 0, 0.01);
    EXPECT_NEAR(distance(corners()[1], {297, 164}), 0, 0.01);
}

TEST_F(CanvasSnapping, IsSuspendedByCtrlWhileTheStrokeIsDrawn)
{
    offer(linePath({103, 97}, {297, 164}));
    keyDown(Qt::Key_Control);
    EXPECT_EQ(last, "");
    mouse.release({297, 164}, Qt::ControlModifier);
    EXPECT_NEAR(distance(corners()[0], {103, 97}), 0, 0.01);
    EXPECT_NEAR(distance(corners()[1], {297, 164}), 0, 0.01);
}

TEST_F(CanvasSnapping, IsNotSuspendedByCtrlThatBeginsACommand)
{
    change([](CanvasSettings& settings) { settings.holdMilliseconds = kNever; });
    canvas.setTool(Tool::line);
    mouse.draw(linePath({103, 97}, {297, 164}));
    ASSERT_EQ(last, "grid crossing");
    keyDown(Qt::Key_Control);
    EXPECT_EQ(last, "grid crossing");
    canvas.settle();
    EXPECT_NEAR(distance(corners()[0], {100, 100}), 0, 1e-6);
}

TEST_F(CanvasSnapping, HoldsForWhatIsShownWhenItIsSwitched)
{
    canvas.setTool(Tool::line);
    mouse.draw(linePath({103, 97}, {297, 164}));
    ASSERT_EQ(last, "grid crossing");
    change([](CanvasSettings& settings) {
        settings.snapToGrid = settings.snapToShapes = settings.snapToAngles = false;
    });
    EXPECT_EQ(last, "");
    canvas.takeOffered();
    EXPECT_NEAR(distance(corners()[0], {103, 97}), 0, 0.01);
}

TEST_F(CanvasSnapping, HoldsForWhatIsShownWhenTheGridBecomesAnother)
{
    change([](CanvasSettings& settings) { settings.holdMilliseconds = kNever; });
    mouse.draw(linePath({103, 97}, {297, 164}));
    key(Qt::Key_Tab);
    ASSERT_EQ(last, "grid crossing");
    canvas.setScale(2);
    const QTransform view = canvas.sheetToWidget();
    Sheet sheet = model.sheet();
    sheet.grid.reset();
    model.setSheet(sheet);
    EXPECT_EQ(last, "");
    EXPECT_EQ(canvas.sheetToWidget(), view) << "the sheet is as large as before: nothing moves";
    sheet.width += 100;
    model.setSheet(sheet);
    EXPECT_EQ(canvas.viewScale(), 1);
    EXPECT_EQ(canvas.sheetToWidget().map(QPointF(450, 300)), QPointF(400, 300));
}

TEST_F(CanvasSnapping, ComesBackWhenAltIsReleased)
{
    offer(linePath({103, 97}, {297, 164}));
    key(Qt::Key_Alt);
    EXPECT_EQ(last, "grid crossing");
    mouse.release({297, 164});
    EXPECT_NEAR(distance(corners()[0], {100, 100}), 0, 1e-6);
}

TEST_F(CanvasSnapping, PrefersWhatIsDrawnAndLeavesTheInsideOfFreeCurvesAlone)
{
    change([](CanvasSettings& settings) { settings.snapToGrid = false; });
    offer(linePath({103, 97}, {297, 164}));
    mouse.release({297, 164});
    offer(linePath({300, 168}, {500, 400}));
    EXPECT_EQ(last, "end");
    mouse.release({500, 400});
    EXPECT_NEAR(distance(corners()[0], {297, 164}), 0, 0.01);

    // Across the middle of ink, whose ends alone count.
    change([](CanvasSettings& settings) { settings.holdMilliseconds = kNever; });
    mouse.draw(linePath({600, 100}, {600, 300}));
    change([](CanvasSettings& settings) { settings.holdMilliseconds = 0; });
    offer(linePath({598, 203}, {700, 290}));
    EXPECT_EQ(last, "");
    mouse.release({700, 290});
    EXPECT_NEAR(distance(corners()[0], {598, 203}), 0, 0.01);
}

TEST_F(CanvasSnapping, DoesNotSnapToTheStrokeItself)
{
    change([](CanvasSettings& settings) { settings.snapToGrid = settings.snapToAngles = false; });
    change([](CanvasSettings& settings) { settings.holdMilliseconds = kNever; });
    mouse.draw(linePath({103, 97}, {297, 164}));
    key(Qt::Key_Tab);
    EXPECT_EQ(canvas.offeredReading(), "line");
    EXPECT_EQ(last, "");
}

TEST_F(CanvasSnapping, ReachesAsFarOnTheScreenInEveryView)
{
    change([](CanvasSettings& settings) { settings.snapToAngles = false; });
    canvas.setScale(4);
    const auto place = [&](Vec2 sheet) {
        const QPointF at = canvas.sheetToWidget().map(point(sheet));
        return Vec2{at.x(), at.y()};
    };
    offer(linePath(place({397, 303}), place({450, 301}))); // 4.2 sheet pixels off, 17 on the screen
    mouse.release(point(place({450, 301})));
    EXPECT_NEAR(distance(corners()[0], {397, 303}), 0, 0.01);
}

TEST_F(CanvasSnapping, TurnsALineOfAlmostThirtyDegrees)
{
    change([](CanvasSettings& settings) { settings.snapToGrid = settings.snapToShapes = false; });
    const Vec2 end = Vec2{100, 100} + 300.0 * vnt::sketch::unit_at(28.5 * vnt::sketch::kPi / 180);
    offer(linePath({100, 100}, end));
    EXPECT_EQ(last, "angle");
    mouse.release(point(end));
    const Vec2 along = corners()[1] - corners()[0];
    EXPECT_NEAR(angle_of(along) * 180 / vnt::sketch::kPi, 30, 1e-6);
}

TEST_F(CanvasSnapping, HoldsForWhatIsMoved)
{
    offer(linePath({100, 100}, {200, 100}));
    mouse.release({200, 100});
    canvas.setTool(Tool::select);
    mouse.press({150, 100});
    mouse.move({170, 120});
    mouse.move({187, 144}); // by (37, 44): the end comes near (140, 140) and (240, 140)
    EXPECT_EQ(last, "grid crossing");
    mouse.release({187, 144});
    EXPECT_NEAR(distance(corners()[0], {140, 140}), 0, 1e-6);
    EXPECT_NEAR(distance(corners()[1], {240, 140}), 0, 1e-6);
    mouse.press({190, 140});
    mouse.move({210, 150}, Qt::AltModifier);
    mouse.release({227, 184}, Qt::AltModifier);
    EXPECT_NEAR(distance(corners()[0], {177, 184}), 0, 1e-6);
}

} // namespace
