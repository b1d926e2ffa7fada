#include "sketch/core/curve_fit.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

// The curve as a fine path.
Path flat(const Path& curve)
{
    constexpr int kPieces = 256; // their chords are off half a circle of radius 100 by 2e-3
    Path path;
    for (std::size_t i = 0; i + 3 < curve.size(); i += 4)
        for (int k = 0; k <= kPieces; ++k)
            path.push_back(point_of_cubic(&curve[i], static_cast<double>(k) / kPieces));
    return path;
}

double furthest_from(const Path& curve, const Path& points)
{
    const Path pieces = flat(curve);
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

TEST(FreeCurveThroughTremor, KeepsEachPointWithinTheTolerance)
{
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        Seeded seeded(seed);
        Path path{
            {0, 0}
        };
        double heading = 0;
        for (int i = 0; i < 300; ++i) {
            heading += seeded.between(-0.5, 0.5);
            path.push_back(path.back() + seeded.between(0, 4) * unit_at(heading));
        }
        for (const double tolerance : {0.2, 1.0, 5.0}) {
            const Path curve = fit_curve(path, tolerance);
            expect_joined(curve, path);
            EXPECT_LE(furthest_from(curve, path), tolerance * 1.01) << "seed " << seed << ", " << tolerance;
        }
    }
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
