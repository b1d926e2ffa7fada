#include "sketch/core/line_fit.h"

#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9;

TEST(FitLine, GoesThroughPointsOnALineInEveryDirection)
{
    for (int degrees = 0; degrees < 360; degrees += 7) {
        const Vec2 along = unit_at(degrees * kPi / 180);
        Path points;
        for (const double t : {-50.0, -10.0, 20.0, 100.0})
            points.push_back(Vec2{1e5, -2e5} + t * along);
        const LineFit line = fit_line(points);
        EXPECT_LT(distance(line.direction, along), kRounding) << degrees << " degrees";
        EXPECT_LT(largest_distance(line, points), 1e-8);
        EXPECT_LT(std::sqrt(line.square_sum), 1e-5); // the root of a difference of sums of squares
    }
}

// The four corners of a box 2a by 2b: along the longer side, and 4 b² off it.
TEST(FitLine, TakesTheLongerSideOfABox)
{
    const LineFit line = fit_line({
        {-3, -1},
        {3,  -1},
        {3,  1 },
        {-3, 1 }
    });
    EXPECT_NEAR(std::abs(line.direction.x), 1, kRounding);
    EXPECT_NEAR(line.square_sum, 4, kRounding);
    EXPECT_LT(length(line.centre), kRounding);
}

TEST(FitLine, OfNoExtentHasADirectionNevertheless)
{
    EXPECT_EQ(length(fit_line({}).direction), 1);
    EXPECT_EQ(length(fit_line({
                                  {5, 5}
    })
                         .direction),
              1);
    EXPECT_EQ(fit_line({
                           {5, 5},
                           {5, 5}
    })
                  .square_sum,
              0);
}

TEST(LineMoments, AddUpAndTakeAway)
{
    Seeded seeded(11);
    LineMoments first, second, both;
    for (int i = 0; i < 40; ++i) {
        const Vec2 p{seeded.between(0, 100), seeded.between(0, 30)};
        (i < 15 ? first : second).add(p);
        both.add(p);
    }
    EXPECT_NEAR(first.with(second).square_sum(), both.square_sum(), 1e-7);
    EXPECT_NEAR(both.without(first).square_sum(), second.square_sum(), 1e-7);
    EXPECT_EQ(both.without(first).count(), 25);
}

TEST(PieceOn, EndsAtTheFeetOfThePathsEnds)
{
    const LineFit line{
        {0, 10},
        {1, 0 },
        0
    };
    const Piece piece = piece_on(line, {3, 0}, {50, 90});
    EXPECT_EQ(piece.start, (Vec2{3, 10}));
    EXPECT_EQ(piece.end, (Vec2{50, 10}));
}

} // namespace
