#include "sketch/core/circle_fit.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

struct ArcCase {
    const char* name;
    double from, to; // radians
    int points;
    Vec2 centre;
    double radius;
};
// clang-format off
const ArcCase kArcs[] = {
    {"AWholeCircle",              0,   2 * kPi, 60,  {300, 200},    80},
    {"ThreePoints",               0,   4,       3,   {0, 0},        10},
    {"AQuarter",                  1,   1 + kPi / 2, 40, {-50, 70},  120},
    {"AShallowArc",               0.2, 0.6,     40,  {10, 20},      500},
    {"FarFromTheOrigin",          0,   5,       50,  {1e6, -2e6},   30},
    {"ATinyOne",                  0,   6,       50,  {1, 1},        1e-3},
    {"AHugeOne",                  0,   6,       50,  {0, 0},        1e8},
};
// clang-format on
class CircleThroughAnArc : public testing::TestWithParam<ArcCase> {};
TEST_P(CircleThroughAnArc, IsFoundExactly)
{
    const ArcCase& row = GetParam();
    Path points;
    for (int i = 0; i < row.points; ++i)
        points.push_back(row.centre +
                         row.radius * unit_at(row.from + (row.to - row.from) * i / (row.points - 1)));
    const auto circle = fit_circle(points);
    ASSERT_TRUE(circle);
    // Coordinates far from the origin have lost that much themselves.
    const double bound = 1e-7 * row.radius + 1e-9 * length(row.centre);
    EXPECT_NEAR(circle->radius, row.radius, bound);
    EXPECT_LT(distance(circle->centre, row.centre), bound);
    EXPECT_LT(circle->root_mean_square, bound);
}
INSTANTIATE_TEST_SUITE_P(, CircleThroughAnArc, testing::ValuesIn(kArcs),
                         [](const auto& row) { return row.param.name; });

struct NoCircleCase {
    const char* name;
    Path points;
};
const NoCircleCase kNone[] = {
    {"OfNothing",       {}                              },
    {"OfTwoPoints",     {{0, 0}, {9, 9}}                },
    {"OfEqualPoints",   {{4, 4}, {4, 4}, {4, 4}, {4, 4}}},
    {"OfPointsInALine", {{0, 0}, {1, 2}, {2, 4}, {3, 6}}},
    {"OfAlmostALine",   {{0, 0}, {50, 1e-4}, {100, 0}}  },
};
class NoCircle : public testing::TestWithParam<NoCircleCase> {};
TEST_P(NoCircle, IsFound) { EXPECT_FALSE(fit_circle(GetParam().points)); }
INSTANTIATE_TEST_SUITE_P(, NoCircle, testing::ValuesIn(kNone),
                         [](const auto& row) { return row.param.name; });

// The fit is where no small change of centre or radius makes the sum of squared distances less.
TEST(CircleThroughTremor, HasTheLeastSquaresOfTheDistances)
{
    drawn::Hand hand;
    hand.jitter = 6;
    hand.points = 41;
    const Path points = drawn::path_of(drawn::stroke(drawn::arc(0, 2), false, hand));
    const auto circle = fit_circle(points);
    ASSERT_TRUE(circle);
    const auto sum_of = [&](Vec2 centre, double radius) {
        double sum = 0;
        for (const Vec2 p : points)
            sum += std::pow(distance(p, centre) - radius, 2);
        return sum;
    };
    const double least = sum_of(circle->centre, circle->radius);
    EXPECT_NEAR(circle->root_mean_square, std::sqrt(least / 41), 1e-9);
    for (int i = 0; i < 26; ++i) {
        const Vec2 moved = circle->centre + 0.01 * Vec2{i % 3 - 1.0, i / 3 % 3 - 1.0};
        const double grown = circle->radius + 0.01 * (i / 9 - 1.0);
        EXPECT_GE(sum_of(moved, grown), least - 1e-9);
    }
    EXPECT_LT(distance(circle->centre, hand.at), hand.jitter);
}

} // namespace
