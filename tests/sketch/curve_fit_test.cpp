#include "sketch/core/curve_fit.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

// The curve as a fine path.
Path flat(const Path& curve, int pieces = 256) // its chords are off half a circle of radius 100 by 2e-3
{
    Path path;
    for (std::size_t i = 0; i + 3 < curve.size(); i += 4)
        for (int k = 0; k <= pieces; ++k)
            path.push_back(point_of_cubic(&curve[i], static_cast<double>(k) / pieces));
    return path;
}

double furthest_from(const Path& curve, const Path& points, int pieces_of_one = 256)
{
    const Path pieces = flat(curve, pieces_of_one);
    double furthest = 0;
    for (const Vec2 p : points) {
        double nearest = distance(p, pieces.front());
        for (std::size_t i = 1; i < pieces.size(); ++i)
            nearest = std::min(nearest, distance_from_piece(p, pieces[i - 1], pieces[i]));
        furthest = std::max(furthest, nearest);
    }
    return furthest;
}

void expect_joined(const Path& curve, const Path& path)
{
    ASSERT_FALSE(curve.empty());
    ASSERT_EQ(curve.size() % 4, 0U);
    EXPECT_EQ(curve.front(), path.front());
    EXPECT_EQ(curve.back(), path.back());
    for (std::size_t i = 4; i < curve.size(); i += 4)
        EXPECT_EQ(curve[i], curve[i - 1]) << "between segments " << i / 4 - 1 << " and " << i / 4;
}

// By how much the curve turns at a segment's start.
double turn_at(const Path& curve, std::size_t i)
{
    return turn_between(curve[i - 1] - curve[i - 2], curve[i + 1] - curve[i]);
}

struct CurveCase {
    const char* name;
    Path outline;
    int points;
    double tolerance;
    std::size_t most_segments;
};
// A circle's quarter as one cubic is off by 2.7e-4 of its radius, and half of it by 1.8e-2 at best.
// clang-format off
const CurveCase kCurves[] = {
    {"AHalfCircleToAPixel",       drawn::arc(0, kPi),     120, 1,    2},
    {"ACircleToAPixel",           drawn::arc(0, 2 * kPi), 200, 1,    4},
    {"ACircleFinely",             drawn::arc(0, 2 * kPi), 200, 0.05, 8},
    {"AStraightLine",             drawn::zigzag(1),       50,  0.5,  1},
    {"AZigzagWithoutSharpPlaces", drawn::zigzag(3),       90,  0.5,  12},
};
// clang-format on
class FreeCurve : public testing::TestWithParam<CurveCase> {};
TEST_P(FreeCurve, StaysWithinItsToleranceInFewSegments)
{
    drawn::Hand hand;
    hand.points = GetParam().points;
    const Path path = drawn::path_of(drawn::stroke(GetParam().outline, false, hand));
    const Path curve = fit_curve(path, GetParam().tolerance);
    expect_joined(curve, path);
    EXPECT_LE(furthest_from(curve, path), GetParam().tolerance + 3e-3);
    EXPECT_LE(curve.size() / 4, GetParam().most_segments);
    for (std::size_t i = 4; i < curve.size(); i += 4)
        EXPECT_NEAR(turn_at(curve, i), 0, 1e-6) << "at segment " << i / 4;
}
INSTANTIATE_TEST_SUITE_P(, FreeCurve, testing::ValuesIn(kCurves),
                         [](const auto& row) { return row.param.name; });

TEST(FreeCurveWithSharpPlaces, TakesAStraightSegmentForEachLeg)
{
    drawn::Hand hand;
    hand.points = 91;
    const Path path = drawn::path_of(drawn::stroke(drawn::zigzag(3), false, hand));
    const Path curve = fit_curve(path, 0.5, {0, 30, 60, 90});
    expect_joined(curve, path);
    ASSERT_EQ(curve.size(), 12U);
    EXPECT_EQ(curve[4], path[30]);
    EXPECT_GT(std::abs(turn_at(curve, 4)), kPi / 2);
}

// The path with places between its points.
Path dense(const Path& path, double step)
{
    Path all{path.front()};
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double pieces = std::ceil(distance(path[i - 1], path[i]) / step);
        for (double k = 1; k <= pieces; ++k)
            all.push_back(path[i - 1] + (k / pieces) * (path[i] - path[i - 1]));
    }
    return all;
}

constexpr int kPieces = 64; // off a segment by less than a hundredth of any tolerance here

constexpr double kStrictly = 1 + 1e-9; // but for the rounding of numbers

double furthest_from_path(const Path& path, const Path& curve)
{
    double furthest = 0;
    for (const Vec2 p : flat(curve, kPieces)) {
        double nearest = distance(p, path.front());
        for (std::size_t i = 1; i < path.size(); ++i)
            nearest = std::min(nearest, distance_from_piece(p, path[i - 1], path[i]));
        furthest = std::max(furthest, nearest);
    }
    return furthest;
}

struct BetweenCase {
    const char* name;
    double longest_step; // sheet pixels
    double most_turn;    // radians a point
};
const BetweenCase kBetween[] = {
    {"OfShortSteps",             4,  0.5},
    {"OfLongSteps",              60, 0.3},
    {"OfLongStepsInSharpTurns",  60, 2.5},
    {"OfShortStepsBackAndForth", 2,  3.1},
};
class FreeCurveBetween : public testing::TestWithParam<BetweenCase> {};
TEST_P(FreeCurveBetween, PointsIsWithinTheToleranceBothWays)
{
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        Seeded seeded(seed);
        Path path{
            {0, 0}
        };
        double heading = 0;
        for (int i = 0; i < 60; ++i) {
            heading += seeded.between(-GetParam().most_turn, GetParam().most_turn);
            path.push_back(path.back() + seeded.between(0, GetParam().longest_step) * unit_at(heading));
        }
        for (const double tolerance : {0.2, 1.0, 5.0}) {
            const Path curve = fit_curve(path, tolerance);
            expect_joined(curve, path);
            // A hundredth for the chords on which this is measured.
            EXPECT_LE(furthest_from(curve, dense(path, 3), kPieces), tolerance * 1.01)
                << seed << ", " << tolerance;
            EXPECT_LE(furthest_from_path(path, curve), tolerance * kStrictly) << seed << ", " << tolerance;
            Path closed = path;
            closed.push_back(path.front());
            const Path ring = fit_closed_curve(path, tolerance);
            EXPECT_EQ(ring.front(), ring.back());
            EXPECT_LE(furthest_from(ring, dense(closed, 3), kPieces), tolerance * 1.01)
                << seed << ", " << tolerance;
            EXPECT_LE(furthest_from_path(closed, ring), tolerance * kStrictly) << seed << ", " << tolerance;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(, FreeCurveBetween, testing::ValuesIn(kBetween),
                         [](const auto& row) { return row.param.name; });

// There and almost back: beyond the tip the curve is furthest off aslant, neither straight on nor beside.
struct TipCase {
    const char* name;
    double there, back; // sheet pixels a step
    double bend;        // radians a point
    double open;        // radians between there and back
    int steps;          // either way
};
const TipCase kTips[] = {
    {"OfShortSteps",         1.4889788648754134, 2.301134825404819, 0.026399027940772452, 0.45177288510776792, 9 },
    {"OfNoBend",             1.5,                1.5,               0,                    0.4,                 12},
    {"OfABendToTheOtherWay", 1.0,                2.0,               -0.05,                0.33,                12},
    {"OfNoWidth",            2.0,                1.0,               0.05,                 0,                   10},
};
class FreeCurveAroundATip : public testing::TestWithParam<TipCase> {};
TEST_P(FreeCurveAroundATip, IsNowhereFurtherThanItsTolerance)
{
    const TipCase& tip = GetParam();
    Path path{
        {0, 0}
    };
    double heading = 0;
    const auto go = [&](double step) {
        for (int i = 0; i < tip.steps; ++i) {
            heading += tip.bend;
            path.push_back(path.back() + step * unit_at(heading));
        }
    };
    go(tip.there);
    heading += kPi - tip.open;
    go(tip.back);
    for (const double tolerance : {0.25, 0.5, 1.0}) {
        const Path curve = fit_curve(path, tolerance);
        expect_joined(curve, path);
        EXPECT_LE(furthest_from_path(path, curve), tolerance * kStrictly) << tolerance;
        EXPECT_LE(furthest_from(curve, dense(path, 0.1)), tolerance * 1.01) << tolerance;
    }
}
INSTANTIATE_TEST_SUITE_P(, FreeCurveAroundATip, testing::ValuesIn(kTips),
                         [](const auto& row) { return row.param.name; });

TEST(FreeCurveAroundACircle, ClosesAlongTheTangent)
{
    const Path circle = drawn::placed(drawn::ellipse(1, 1), {}); // of radius 100 about (500, 400)
    const Path curve = fit_closed_curve(circle, 0.5);
    EXPECT_EQ(curve.front(), curve.back());
    EXPECT_LE(curve.size() / 4, 4U);
    const Vec2 out = unit(curve[1] - curve[0]);
    const Vec2 in = unit(curve.back() - curve[curve.size() - 2]);
    EXPECT_LT(distance(out, in), 1e-9);
    EXPECT_NEAR(dot(out, unit(curve[0] - Vec2{500, 400})), 0, 0.05); // a cubic within 0.5 turns off so much
    EXPECT_LE(furthest_from(curve, circle), 0.5 + 3e-3);
}

TEST(FreeCurveAroundASquare, BeginsAtItsFirstSharpPlace)
{
    const Path square = resample_closed(drawn::placed(drawn::box(2, 2), {}), 80);
    const Path curve = fit_closed_curve(square, 0.5, {20, 40, 60});
    EXPECT_EQ(curve.front(), square[20]);
    EXPECT_EQ(curve.back(), square[20]);
    EXPECT_EQ(fit_closed_curve(square, 0.5, {0, 20, 40, 60}).size(), 16U);
}

TEST(FreeCurveOfFewPoints, IsASegmentNevertheless)
{
    EXPECT_TRUE(fit_curve({}, 1).empty());
    EXPECT_EQ(fit_curve(
                  {
                      {2, 3}
    },
                  1),
              Path(4, {2, 3}));
    EXPECT_EQ(fit_curve(
                  {
                      {2, 3},
                      {2, 3},
                      {2, 3}
    },
                  1),
              Path(4, {2, 3}));
    const Path line = fit_curve(
        {
            {0,  0 },
            {30, 60}
    },
        1);
    ASSERT_EQ(line.size(), 4U);
    EXPECT_LT(distance(line[1], {10, 20}), 1e-9);
    EXPECT_LT(distance(line[2], {20, 40}), 1e-9);
}

TEST(ClosedFreeCurveOfFewPoints, EndsWhereItBegins)
{
    EXPECT_TRUE(fit_closed_curve({}, 1).empty());
    EXPECT_EQ(fit_closed_curve(Path(3, {2, 3}), 1), Path(4, {2, 3}));
    Path path{
        {0,  0 },
        {30, 60}
    };
    for (const Vec2 next : {
             Vec2{90, 0},
             Vec2{0,  0},
             Vec2{0,  0}
    }) {
        const Path curve = fit_closed_curve(path, 1);
        path.push_back(next);
        ASSERT_GE(curve.size(), 4U);
        EXPECT_EQ(curve.front(), curve.back());
        EXPECT_LE(furthest_from(curve, {path.begin(), path.end() - 1}), 1);
    }
}

struct ExtremeCase {
    const char* name;
    Path path;
};
// clang-format off
const ExtremeCase kExtremes[] = {
    {"StepsThatTheirSumLoses",  {{0, 0}, {1e9, 0}, {1e9, 1e-7}, {1e9, 2e-7}, {1e9 - 1, 1}}},
    {"CoordinatesOfNoSheet",    {{0, 0}, {1e300, 0}, {-1e300, 1e300}, {5, 5}}},
    {"DistancesNextToNothing",  {{0, 0}, {1e-200, 0}, {1e-200, 1e-200}, {0, 3e-200}}},
    {"NoNumbers",               {{0, 0}, {std::nan(""), 1}, {2, std::nan("")}, {3, 3}, {4, 0}}},
};
// clang-format on
class ExtremeFreeCurve : public testing::TestWithParam<ExtremeCase> {};
TEST_P(ExtremeFreeCurve, ComesToAnEndInWholeSegments)
{
    for (const double tolerance : {1e-300, 0.5, 1e300}) {
        EXPECT_EQ(fit_curve(GetParam().path, tolerance).size() % 4, 0U);
        EXPECT_EQ(fit_closed_curve(GetParam().path, tolerance).size() % 4, 0U);
        EXPECT_EQ(fit_curve(GetParam().path, tolerance).back().x, GetParam().path.back().x);
    }
}
INSTANTIATE_TEST_SUITE_P(, ExtremeFreeCurve, testing::ValuesIn(kExtremes),
                         [](const auto& row) { return row.param.name; });

TEST(FreeCurveOfOddInput, TakesRepeatedPointsAndSharpPlacesOutOfRange)
{
    const Path path = {
        {0,  0},
        {0,  0},
        {10, 0},
        {10, 0},
        {10, 9}
    };
    const Path curve = fit_curve(path, 0.1, {0, 1, 2, 3, 4, 5, 900});
    expect_joined(curve, path);
    EXPECT_EQ(curve.size(), 8U);
}

} // namespace
