#include "sketch/core/ellipse_fit.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

struct EllipseCase {
    const char* name;
    Ellipse ellipse;
    double from, to; // parameters
    int points;
};
// clang-format off
const EllipseCase kEllipses[] = {
    {"AWholeOne",            {{300, 200}, 90, 40, 0.4},       0,   6.2, 60},
    {"AlongX",               {{0, 0}, 50, 20, 0},             0,   6.2, 30},
    {"AlongY",               {{0, 0}, 50, 20, kPi / 2},       0,   6.2, 30},
    {"AlmostBackAtX",        {{0, 0}, 50, 20, 3.1},           0,   6.2, 30},
    {"AFlatOne",             {{10, 10}, 400, 8, 1.2},         0,   6.2, 90},
    {"HalfOfOne",            {{-70, 30}, 120, 70, 2.0},       0.3, 3.6, 60},
    {"FivePoints",           {{5, 6}, 7, 3, 1},               0,   5,   5},
    {"FarFromTheOrigin",     {{1e6, -3e6}, 80, 50, 0.7},      0,   6.2, 60},
    {"AHugeOne",             {{0, 0}, 3e8, 1e8, 0.7},         0,   6.2, 60},
};
// clang-format on
class EllipseThroughPoints : public testing::TestWithParam<EllipseCase> {};
TEST_P(EllipseThroughPoints, IsFoundExactly)
{
    const EllipseCase& row = GetParam();
    Path points;
    for (int i = 0; i < row.points; ++i)
        points.push_back(row.ellipse.at(row.from + (row.to - row.from) * i / (row.points - 1)));
    const auto fit = fit_ellipse(points);
    ASSERT_TRUE(fit);
    const double bound = 1e-6 * row.ellipse.major + 1e-9 * length(row.ellipse.centre);
    EXPECT_NEAR(fit->ellipse.major, row.ellipse.major, bound);
    EXPECT_NEAR(fit->ellipse.minor, row.ellipse.minor, bound);
    EXPECT_LT(distance(fit->ellipse.centre, row.ellipse.centre), bound);
    // Half a turn is none.
    EXPECT_NEAR(std::remainder(fit->ellipse.rotation - row.ellipse.rotation, kPi), 0, 1e-6);
    EXPECT_GE(fit->ellipse.rotation, 0);
    EXPECT_LT(fit->ellipse.rotation, kPi);
    EXPECT_LT(fit->root_mean_square, bound);
}
INSTANTIATE_TEST_SUITE_P(, EllipseThroughPoints, testing::ValuesIn(kEllipses),
                         [](const auto& row) { return row.param.name; });

TEST(EllipseThroughACircle, HasTwoEqualHalfAxes)
{
    const auto fit = fit_ellipse(drawn::path_of(drawn::stroke(drawn::ellipse(1, 1), true)));
    ASSERT_TRUE(fit);
    // Its outline is a polygon of 720 corners, inside the circle by up to 1e-5 of the radius.
    EXPECT_NEAR(fit->ellipse.major, 100, 1e-3);
    EXPECT_NEAR(fit->ellipse.minor, 100, 1e-3);
}

TEST(EllipseThroughTremor, IsNearTheTrueOne)
{
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        drawn::Hand hand;
        hand.jitter = 2;
        hand.rotation = 0.3;
        hand.seed = seed;
        const auto fit = fit_ellipse(drawn::path_of(drawn::stroke(drawn::ellipse(1.5, 0.7), true, hand)));
        ASSERT_TRUE(fit);
        // 24 offsets of standard deviation 2 / √3 each leave some 0.3 of a mean; six times that.
        EXPECT_NEAR(fit->ellipse.major, 150, 2) << "seed " << seed;
        EXPECT_NEAR(fit->ellipse.minor, 70, 2) << "seed " << seed;
        EXPECT_LT(distance(fit->ellipse.centre, hand.at), 2) << "seed " << seed;
        EXPECT_NEAR(fit->ellipse.rotation, 0.3, 0.03) << "seed " << seed;
    }
}

// No small change of the ellipse makes the sum of squared distances less; the direct fit alone likes smaller
// ellipses.
TEST(EllipseThroughTremor, HasTheLeastSquaresOfTheDistances)
{
    drawn::Hand hand;
    hand.jitter = 8;
    hand.more = -0.5;
    const Path points = drawn::path_of(drawn::stroke(drawn::ellipse(1.5, 0.7), true, hand));
    const auto fit = fit_ellipse(points);
    ASSERT_TRUE(fit);
    const auto error_of = [&](const Ellipse& ellipse) {
        double sum = 0;
        for (const Vec2 p : points)
            sum += std::pow(ellipse.distance_of(p), 2);
        return std::sqrt(sum / static_cast<double>(points.size()));
    };
    EXPECT_NEAR(fit->root_mean_square, error_of(fit->ellipse), 1e-9);
    for (const double change : {-0.5, 0.5}) {
        Ellipse other = fit->ellipse;
        other.major += change;
        EXPECT_GT(error_of(other), fit->root_mean_square - 1e-3);
        other = fit->ellipse;
        other.minor += change;
        EXPECT_GT(error_of(other), fit->root_mean_square - 1e-3);
        other = fit->ellipse;
        other.centre.x += change;
        EXPECT_GT(error_of(other), fit->root_mean_square - 1e-3);
        other = fit->ellipse;
        other.centre.y += change;
        EXPECT_GT(error_of(other), fit->root_mean_square - 1e-3);
        other = fit->ellipse;
        other.rotation += 0.01 * change;
        EXPECT_GT(error_of(other), fit->root_mean_square - 1e-3);
    }
}

TEST(NoEllipse, IsFoundWherePointsHaveNone)
{
    EXPECT_FALSE(fit_ellipse({}));
    EXPECT_FALSE(fit_ellipse({
        {0, 0},
        {1, 0},
        {1, 1},
        {0, 1}
    }));
    EXPECT_FALSE(fit_ellipse(Path(9, {3, 3})));
    EXPECT_FALSE(fit_ellipse({
        {0, 0 },
        {1, 2 },
        {2, 4 },
        {3, 6 },
        {4, 8 },
        {5, 10}
    }));
}

TEST(DistanceOfAnEllipse, IsExactForACircleAndOnTheAxes)
{
    const Ellipse circle{
        {3, 4},
        10, 10, 0.6
    };
    for (const Vec2 p : {
             Vec2{3,  20},
             Vec2{9,  4 },
             Vec2{40, -7}
    })
        EXPECT_NEAR(circle.distance_of(p), distance(p, {3, 4}) - 10, 1e-12);
    const Ellipse ellipse{
        {0, 0},
        20, 5, 0
    };
    EXPECT_NEAR(ellipse.distance_of({0, 6}), 1, 1e-12);
    EXPECT_NEAR(ellipse.distance_of({0, 3}), -2, 1e-12);
    EXPECT_NEAR(ellipse.distance_of({21, 0}), 1, 1e-12);
}

TEST(ParameterOfAnEllipse, LeadsBackToThePoint)
{
    const Ellipse ellipse{
        {30, -20},
        70, 25, 2.2
    };
    for (double t = -3; t < 3; t += 0.1)
        EXPECT_NEAR(ellipse.parameter_of(ellipse.at(t)), t, 1e-12);
}

} // namespace
