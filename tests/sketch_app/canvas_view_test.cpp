// How the sheet lies in the widget, and how two fingers move it.
#include "sketch/app/canvas_view.h"
#include "sketch/app/two_fingers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// Far below a pixel, far above what rounding does.
constexpr double kNone = 1e-9;

double apart(QPointF a, QPointF b) { return std::hypot(a.x() - b.x(), a.y() - b.y()); }

CanvasView view()
{
    CanvasView view;
    view.setSize({800, 600});
    view.centreOn({100, 50});
    return view;
}

TEST(CanvasViews, HaveTheirCentreInTheMiddle)
{
    EXPECT_EQ(view().toWidget({100, 50}), QPointF(400, 300));
    EXPECT_EQ(view().toSheet({410, 295}), QPointF(110, 45));
}

TEST(CanvasViews, KeepTheirCentreWhenTheWidgetGrows)
{
    CanvasView grown = view();
    grown.setSize({1000, 900});
    EXPECT_EQ(grown.toWidget({100, 50}), QPointF(500, 450));
}

TEST(CanvasViews, ScaleAboutThePointThatIsAskedFor)
{
    CanvasView scaled = view();
    const QPointF under = scaled.toSheet({123.4, 56.7});
    scaled.setScale(3, {123.4, 56.7});
    EXPECT_EQ(scaled.scale(), 3);
    EXPECT_LT(apart(scaled.toWidget(under), {123.4, 56.7}), kNone);
    EXPECT_NEAR(apart(scaled.toWidget({0, 0}), scaled.toWidget({10, 0})), 30, kNone);
}

TEST(CanvasViews, TurnClockwiseAboutThePointThatIsAskedFor)
{
    CanvasView turned = view();
    const QPointF under = turned.toSheet({200, 100});
    turned.setRotation(90, {200, 100});
    EXPECT_LT(apart(turned.toWidget(under), {200, 100}), kNone);
    // What lay right of it lies below.
    EXPECT_LT(apart(turned.toWidget(under + QPointF(10, 0)), {200, 110}), kNone);
}

TEST(CanvasViews, CountTurnsFromMinusHalfAOneToHalfAOne)
{
    CanvasView turned = view();
    const double turns[][2] = {
        {190,  -170},
        {180,  -180},
        {-190, 170 },
        {725,  5   },
        {360,  0   }
    };
    for (const auto& [asked, got] : turns) {
        turned.setRotation(asked, {0, 0});
        EXPECT_NEAR(turned.rotation(), got, kNone) << asked;
    }
}

TEST(CanvasViews, MoveByPixelsOfTheWidgetHoweverTheyAreTurnedAndScaled)
{
    CanvasView moved = view();
    moved.setScale(2.5, {0, 0});
    moved.setRotation(37, {0, 0});
    const QPointF before = moved.toWidget({12, 34});
    moved.moveBy({7, -3});
    EXPECT_LT(apart(moved.toWidget({12, 34}), before + QPointF(7, -3)), kNone);
}

TEST(CanvasViews, StayWithinTheirLimits)
{
    CanvasView scaled = view();
    scaled.setScale(1e9, {0, 0});
    EXPECT_EQ(scaled.scale(), CanvasView::kMostScale);
    scaled.setScale(0, {0, 0});
    EXPECT_EQ(scaled.scale(), CanvasView::kLeastScale);
    const CanvasView before = scaled;
    scaled.setScale(std::numeric_limits<double>::quiet_NaN(), {0, 0});
    scaled.setRotation(std::numeric_limits<double>::infinity(), {0, 0});
    EXPECT_EQ(scaled, before);
}

TEST(CanvasViews, FitWhatIsTurned)
{
    CanvasView fitted = view();
    fitted.setRotation(90, {0, 0});
    fitted.fit({0, 0, 400, 1000}); // lies on its side now
    EXPECT_NEAR(fitted.scale(), (800.0 - 48) / 1000, kNone);
    EXPECT_LT(apart(fitted.toWidget({200, 500}), {400, 300}), kNone);
    fitted.fit({10, 10, 0, 0});
    EXPECT_EQ(fitted.scale(), CanvasView::kMostScale);
}

TEST(TwoFingersOnTheView, MoveItTogether)
{
    TwoFingers fingers(0, 1, {100, 100}, {200, 100});
    const Pinch pinch = fingers.moved({110, 105}, {210, 105});
    EXPECT_EQ(pinch.move, QPointF(10, 5));
    EXPECT_EQ(pinch.factor, 1);
    EXPECT_EQ(pinch.degrees, 0);
    EXPECT_EQ(pinch.about, QPointF(160, 105));
}

TEST(TwoFingersOnTheView, ScaleItByTheirDistance)
{
    TwoFingers fingers(0, 1, {100, 100}, {200, 100});
    EXPECT_DOUBLE_EQ(fingers.moved({50, 100}, {250, 100}).factor, 2);
    EXPECT_DOUBLE_EQ(fingers.moved({100, 100}, {200, 100}).factor, 0.5);
    EXPECT_EQ(fingers.moved({150, 100}, {151, 100}).factor, 1) << "nearer than fingers are wide";
}

TEST(TwoFingersOnTheView, TurnItOnlyWhenTheyMeanTo)
{
    TwoFingers fingers(0, 1, {0, 0}, {100, 0});
    const auto turnTo = [&](double degrees) {
        const double angle = degrees * 3.14159265358979323846 / 180;
        return fingers.moved({0, 0}, {100 * std::cos(angle), 100 * std::sin(angle)}).degrees;
    };
    EXPECT_EQ(turnTo(7), 0);
    EXPECT_EQ(turnTo(-7), 0);
    EXPECT_NEAR(turnTo(20), 12, 1e-6);
    EXPECT_NEAR(turnTo(30), 10, 1e-6);
    EXPECT_NEAR(turnTo(0), -22, 1e-6);
}

} // namespace
