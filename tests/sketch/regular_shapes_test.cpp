#include "sketch/core/regular_shapes.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9;

void expect_corners(const Path& got, const Path& expected)
{
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_LT(distance(got[i], expected[i]), kRounding)
            << "corner " << i << " is (" << got[i].x << ", " << got[i].y << ')';
}

Path turned(Path path, double angle, bool reversed)
{
    for (Vec2& p : path)
        p = p.x * unit_at(angle) + p.y * turned_a_quarter(unit_at(angle));
    return reversed ? Path{path.rbegin(), path.rend()} : path;
}

TEST(RectangleOf, ARectangleIsItselfHoweverItStands)
{
    for (int degrees = 0; degrees < 360; degrees += 5) {
        // What leans by little is put upright.
        const double lean = std::remainder(degrees * kPi / 180, kPi / 2);
        if (lean != 0 && std::abs(lean) < kUpright)
            continue;
        for (const bool reversed : {false, true}) {
            const Path corners = turned(
                {
                    {0,  0 },
                    {50, 0 },
                    {50, 20},
                    {0,  20}
            },
                degrees * kPi / 180, reversed);
            SCOPED_TRACE(degrees);
            EXPECT_TRUE(rectangle_of(corners).closed);
            expect_corners(rectangle_of(corners).corners, corners);
            EXPECT_NEAR(skew_of(corners), 0, kRounding);
            EXPECT_NEAR(elongation_of(corners), 2.5, kRounding);
        }
    }
}

TEST(RectangleOf, OneThatLeansALittleStandsUpright)
{
    const Path corners = turned(
        {
            {-25, -10},
            {25,  -10},
            {25,  10 },
            {-25, 10 }
    },
        5 * kPi / 180, false);
    expect_corners(rectangle_of(corners).corners, {
                                                      {-25, -10},
                                                      {25,  -10},
                                                      {25,  10 },
                                                      {-25, 10 }
    });
}

TEST(RectangleOf, OppositeSidesAreAveraged)
{
    // A trapezium: 60 and 40 wide, its slanted sides √(40² + 10²) long.
    const Path corners = {
        {-30, -20},
        {30,  -20},
        {20,  20 },
        {-20, 20 }
    };
    const double half = std::sqrt(1700.0) / 2;
    expect_corners(rectangle_of(corners).corners, {
                                                      {-25, -half},
                                                      {25,  -half},
                                                      {25,  half },
                                                      {-25, half }
    });
}

TEST(SquareOf, AllSidesAreAveraged)
{
    expect_corners(square_of({
                                 {-30, -20},
                                 {30,  -20},
                                 {30,  20 },
                                 {-30, 20 }
    })
                       .corners,
                   {{-25, -25}, {25, -25}, {25, 25}, {-25, 25}});
}

TEST(SkewOf, GrowsWithTheLean)
{
    double before = -1;
    for (int degrees = 0; degrees <= 50; degrees += 5) {
        const Vec2 side = 30.0 * unit_at(kPi / 2 - degrees * kPi / 180);
        const double skew = skew_of({
            {0,  0},
            {60, 0},
            Vec2{60, 0}
            + side, side
        });
        EXPECT_GT(skew, before) << degrees << " degrees";
        before = skew;
    }
}

// The square of the same sides has its corners on the same diagonals, √((p² + q²) / 2) from the middle.
TEST(SkewOf, ARhombusIsHowFarItsDiagonalsAreFromEqual)
{
    const double h = std::sqrt(2.5);
    EXPECT_NEAR(skew_of({
                    {2,  0 },
                    {0,  1 },
                    {-2, 0 },
                    {0,  -1}
    }),
                std::sqrt(((2 - h) * (2 - h) + (1 - h) * (1 - h)) / 2) / 4, kRounding);
}

TEST(ArcAlong, FollowsThePathsOwnWay)
{
    const Ellipse circle{
        {0, 0},
        100, 100, 0
    };
    struct {
        double from, to;
    } const kWays[] = {
        {0,    1  },
        {1,    0  },
        {3,    4  }, // over the place where angles begin anew
        {-3,   -4 },
        {0.5,  5.5}, // the long way around
        {-0.5, -6 },
        {2,    8.2},
    };
    for (const auto& way : kWays) {
        const Round arc = arc_along(circle, drawn::arc(way.from, way.to));
        EXPECT_NEAR(arc.sweep, way.to - way.from, kRounding);
        EXPECT_NEAR(std::remainder(arc.start - way.from, 2 * kPi), 0, kRounding);
        EXPECT_NEAR(length_of(arc), 100 * std::abs(way.to - way.from), 0.3);
    }
}

TEST(ArcAlong, IsNeverMoreThanAWholeTurn)
{
    EXPECT_NEAR(arc_along(
                    {
                        {0, 0},
                        10, 10, 0
    },
                    drawn::arc(0, 9))
                    .sweep,
                2 * kPi, kRounding);
    EXPECT_NEAR(arc_along(
                    {
                        {0, 0},
                        10, 10, 0
    },
                    drawn::arc(0, -9))
                    .sweep,
                -2 * kPi, kRounding);
}

TEST(WholeRound, BeginsWhereThePathBegins)
{
    const Round round = whole_round(
        {
            {0, 0},
            100, 50, 0
    },
        drawn::arc(2, -4));
    EXPECT_EQ(round.sweep, -2 * kPi);
    const Vec2 start = round.ellipse.at(round.start);
    EXPECT_NEAR(std::atan2(start.y / 50, start.x / 100), std::atan2(std::sin(2) / 50, std::cos(2) / 100),
                kRounding);
}

} // namespace
