// What becomes of shapes when the pen is dragged on before it is lifted.
#include "sketch/app/shape_adjusting.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

// Far below what one sees.
constexpr double kNone = 1e-9;

const Straight kBox{
    {{0, 0}, {100, 0}, {100, 60}, {0, 60}},
    true
};

Path cornersOf(const Shape& shape) { return std::get<Straight>(shape).corners; }

void expectNear(const Path& path, const Path& expected)
{
    ASSERT_EQ(path.size(), expected.size());
    for (std::size_t i = 0; i < path.size(); ++i)
        EXPECT_NEAR(distance(path[i], expected[i]), 0, kNone) << i;
}

TEST(AdjustedShapes, OfNoMoveAreThemselves)
{
    EXPECT_EQ(cornersOf(adjusted(kBox, Kind::rectangle, {3, 4}, {3, 4})), kBox.corners);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(adjusted({}, Kind::ink, {0, 0}, {9, 9})));
}

TEST(AdjustedShapes, TakeTheLastCornerAlong)
{
    const Straight line{
        {{0, 0}, {50, 0}},
        false
    };
    // The pen was not quite at the end, and stays as far from it.
    expectNear(cornersOf(adjusted(line, Kind::line,
                                  {
                                      51, 1
    },
                                  {61, 21})),
               {{0, 0}, {60, 20}});
    const Straight pieces{
        {{0, 0}, {50, 0}, {50, 50}},
        false
    };
    expectNear(cornersOf(adjusted(pieces, Kind::polyline,
                                  {
                                      50, 50
    },
                                  {30, 70})),
               {{0, 0}, {50, 0}, {30, 70}});
    EXPECT_EQ(cornersOf(adjusted(line, Kind::line, {50, 0}, {0.01, 0})), line.corners) << "no line is left";
}

TEST(AdjustedShapes, DragTheCornerOfARectangleNextToThePen)
{
    expectNear(cornersOf(adjusted(kBox, Kind::rectangle,
                                  {
                                      98, 61
    },
                                  {118, 91})),
               {{0, 0}, {120, 0}, {120, 90}, {0, 90}});
    expectNear(cornersOf(adjusted(kBox, Kind::rectangle,
                                  {
                                      0, 0
    },
                                  {-10, 5})),
               {{-10, 5}, {100, 5}, {100, 60}, {-10, 60}});
    // Over the opposite corner, and on.
    expectNear(cornersOf(adjusted(kBox, Kind::rectangle,
                                  {
                                      100, 60
    },
                                  {-20, -30})),
               {{0, 0}, {-20, 0}, {-20, -30}, {0, -30}});
}

TEST(AdjustedShapes, KeepATurnedRectangleRight)
{
    Straight turned = kBox;
    for (Vec2& corner : turned.corners)
        corner = corner.x * unit_at(0.5) + corner.y * turned_a_quarter(unit_at(0.5));
    const Vec2 move = 20.0 * unit_at(0.5) + 30.0 * turned_a_quarter(unit_at(0.5));
    const Path corners =
        cornersOf(adjusted(turned, Kind::rectangle, turned.corners[2], turned.corners[2] + move));
    EXPECT_NEAR(distance(corners[0], corners[1]), 120, kNone);
    EXPECT_NEAR(distance(corners[1], corners[2]), 90, kNone);
    EXPECT_NEAR(dot(corners[1] - corners[0], corners[3] - corners[0]), 0, 1e-6);
}

TEST(AdjustedShapes, KeepASquareSquare)
{
    const Straight square{
        {{0, 0}, {50, 0}, {50, 50}, {0, 50}},
        true
    };
    expectNear(cornersOf(adjusted(square, Kind::square,
                                  {
                                      50, 50
    },
                                  {80, 60})),
               {{0, 0}, {80, 0}, {80, 80}, {0, 80}});
}

TEST(AdjustedShapes, ScaleWhatIsClosedAboutItsCentre)
{
    Round circle;
    circle.ellipse = {
        {10, 20},
        50, 50, 0
    };
    const auto larger = std::get<Round>(adjusted(circle, Kind::circle, {60, 20}, {85, 20}));
    EXPECT_NEAR(larger.ellipse.major, 75, 0.1);
    EXPECT_NEAR(distance(larger.ellipse.centre, {10, 20}), 0, 0.1);
    const Straight triangle{
        {{0, 0}, {100, 0}, {50, 80}},
        true
    };
    // From 50 above the middle of its box to 25: half as large.
    expectNear(cornersOf(adjusted(triangle, Kind::triangle,
                                  {
                                      50, -10
    },
                                  {50, 15})),
               {{25, 20}, {75, 20}, {50, 60}});
}

TEST(AdjustedShapes, NeverVanish)
{
    Round circle;
    circle.ellipse = {
        {0, 0},
        50, 50, 0
    };
    const auto least = std::get<Round>(adjusted(circle, Kind::circle, {50, 0}, {0, 0}));
    EXPECT_GT(least.ellipse.major, 0.1);
    // A pen near the centre does not make it a hundred times as large.
    const auto calm = std::get<Round>(adjusted(circle, Kind::circle, {0.5, 0}, {20, 0}));
    EXPECT_LT(calm.ellipse.major, 150);
    const Path corners = cornersOf(adjusted(kBox, Kind::rectangle, {100, 60}, {0, 0}));
    EXPECT_GE(distance(corners[0], corners[1]), 0.1 - kNone);
    EXPECT_GE(distance(corners[1], corners[2]), 0.1 - kNone);
}

TEST(AdjustedShapes, SwingWhatIsBentAndOpenAboutItsBeginning)
{
    Round arc;
    arc.ellipse = {
        {0, 0},
        50, 50, 0
    };
    arc.start = kPi;
    arc.sweep = kPi; // from (-50, 0) over (0, -50) to (50, 0)
    const auto swung = std::get<Round>(adjusted(arc, Kind::arc, {50, 0}, {-50, 100}));
    const auto& ellipse = swung.ellipse;
    EXPECT_NEAR(distance(ellipse.at(swung.start), {-50, 0}), 0, 0.01);
    EXPECT_NEAR(distance(ellipse.at(swung.start + swung.sweep), {-50, 100}), 0, 0.01);
    EXPECT_NEAR(distance(ellipse.at(swung.start + swung.sweep / 2), {0, 50}), 0, 0.01);
    const Curve curve{
        {{0, 0}, {10, 10}, {20, 10}, {30, 0}},
        false
    };
    const auto moved = std::get<Curve>(adjusted(curve, Kind::free_curve, {30, 0}, {60, 0}));
    expectNear(moved.points, {
                                 {0,  0 },
                                 {20, 20},
                                 {40, 20},
                                 {60, 0 }
    });
}

} // namespace
