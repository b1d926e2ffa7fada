#include "sketch/core/free_curve.h"

#include "sketch/core/curve_fit.h"
#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

constexpr double kTolerance = 0.5; // sheet pixels, on shapes of about 200

Path trefoil()
{
    Path outline;
    for (int i = 0; i < 720; ++i)
        outline.push_back((1 + 0.3 * std::cos(3 * i * kPi / 360)) * unit_at(i * kPi / 360));
    return outline;
}

// Round but for a corner of a right angle at its beginning, where two straight sides touch a circle of
// radius 1.
Path drop()
{
    Path outline{
        {std::sqrt(2), 0}
    };
    for (int i = 0; i <= 270; ++i)
        outline.push_back(unit_at((45 + i) * kPi / 180));
    return outline;
}

// Begun a little outside, so that it comes back beside its beginning by 3 % of its size.
Path snail()
{
    Path path;
    for (int i = 0; i <= 720; ++i)
        path.push_back((1 + 0.2 * std::cos(i * kPi / 180) - 0.03 * i / 720) * unit_at(i * kPi / 360));
    return path;
}

// A loop with two tails that cross, each a seventh of the way.
Path ribbon()
{
    return {
        {-0.7, -0.7},
        {0.6,  0.6 },
        {1.4,  0.6 },
        {1.7,  0   },
        {1.4,  -0.6},
        {0.6,  -0.6},
        {-0.7, 0.7 }
    };
}

Curve curve_of(const Path& outline, bool closed, const drawn::Hand& hand)
{
    return free_curve_of(measure(drawn::stroke(outline, closed, hand)), kTolerance);
}

// By how much the curve turns at a segment's start, or at the join of a closed one.
double turn_at(const Path& curve, std::size_t i)
{
    const Vec2 in = i == 0 ? curve.back() - curve[curve.size() - 2] : curve[i - 1] - curve[i - 2];
    return std::abs(turn_between(in, curve[i + 1] - curve[i]));
}

Path flat(const Path& curve)
{
    constexpr int kPieces = 32;
    Path path;
    for (std::size_t i = 0; i + 3 < curve.size(); i += 4)
        for (int k = 0; k <= kPieces; ++k)
            path.push_back(point_of_cubic(&curve[i], static_cast<double>(k) / kPieces));
    return path;
}

double furthest_from(const Path& curve, const Path& points)
{
    return drawn::furthest_from(flat(curve), points);
}

// By how much it turns about the join, over three steps of the hand: a corner is found to a step.
double turn_about_the_join(const Path& curve)
{
    constexpr double kAway = 12;
    const Path line = flat(curve);
    const auto is_away = [&](Vec2 p) { return distance(p, line.front()) > kAway; };
    const Vec2 after = *std::find_if(line.begin(), line.end(), is_away);
    const Vec2 before = *std::find_if(line.rbegin(), line.rend(), is_away);
    return std::abs(turn_between(line.front() - before, after - line.front()));
}

struct ClosedCase {
    const char* name;
    Path outline;
    bool closed; // of the outline
    double more; // of the way around: too far, or a gap
    bool has_corner;
    std::size_t most_segments; // a hand's tremor takes some more than the outline
    double off;                // sheet pixels: the tolerance, and by how much the ends are bent
};
// clang-format off
const ClosedCase kClosed[] = {
    {"ThatMeetsItsBeginning",       trefoil(), true,  0,     false, 14, 0.6},
    {"ThatStopsShort",              trefoil(), true,  -0.02, false, 14, 6.5},
    {"ThatGoesOnTooFar",            trefoil(), true,  0.03,  false, 14, 3  },
    {"ThatComesBackBeside",         snail(),   false, 0,     false, 14, 2.5},
    {"WithACornerWhereItIsClosed",  drop(),    true,  0,     true,  8,  3  },
};
// clang-format on
class ClosedFreeCurve : public testing::TestWithParam<ClosedCase> {};
TEST_P(ClosedFreeCurve, EndsWhereItBeginsAndTurnsAtItsCornersAlone)
{
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        SCOPED_TRACE(seed);
        drawn::Hand hand;
        hand.points = 160;
        hand.jitter = 0.4;
        hand.more = GetParam().more;
        hand.rotation = 0.5 * static_cast<double>(seed);
        hand.reversed = seed % 2 == 0;
        hand.seed = seed;
        const Curve curve = curve_of(GetParam().outline, GetParam().closed, hand);
        ASSERT_TRUE(curve.closed);
        const Path& points = curve.points;
        EXPECT_EQ(points.front(), points.back());
        EXPECT_LE(points.size() / 4, GetParam().most_segments);
        // A curve with a corner begins there.
        for (std::size_t i = GetParam().has_corner ? 4 : 0; i < points.size(); i += 4)
            EXPECT_NEAR(turn_at(points, i), 0, 1e-6) << "at segment " << i / 4;
        EXPECT_EQ(turn_about_the_join(points) > kPi / 3, GetParam().has_corner);
        // Tremor and tolerance, and the bend at the ends.
        EXPECT_LT(furthest_from(points, drawn::placed(GetParam().outline, hand)),
                  GetParam().off + hand.jitter * 1.5);
    }
}
INSTANTIATE_TEST_SUITE_P(, ClosedFreeCurve, testing::ValuesIn(kClosed),
                         [](const auto& row) { return row.param.name; });

TEST(ClosedFreeCurveOfADrop, BegunAnywhereHasItsCornerWhereItIs)
{
    for (const double start : {0.2, 0.5, 0.8}) {
        drawn::Hand hand;
        hand.points = 200;
        hand.start = start;
        const Curve curve = curve_of(drop(), true, hand);
        ASSERT_TRUE(curve.closed);
        // It begins at the corner, which it may turn at.
        EXPECT_LT(distance(curve.points.front(), drawn::placed({std::sqrt(2), 0}, hand)), 4) << start;
        EXPECT_NEAR(turn_about_the_join(curve.points), kPi / 2, 0.4) << start;
    }
}

TEST(FreeCurve, WithLongTailsStaysOpenAndKeepsThem)
{
    drawn::Hand hand;
    hand.points = 200;
    const Curve curve = curve_of(ribbon(), false, hand);
    EXPECT_FALSE(curve.closed);
    EXPECT_LT(distance(curve.points.front(), drawn::placed(ribbon().front(), hand)), 1);
    EXPECT_LT(distance(curve.points.back(), drawn::placed(ribbon().back(), hand)), 1);
}

// A mouse that is moved fast: its places lie on a circle, and so does the curve between them.
TEST(FreeCurve, IsRoundBetweenFewPoints)
{
    drawn::Hand hand;
    hand.points = 16;
    const Path outline = drawn::arc(0, 1.5 * kPi);
    const Curve curve = curve_of(outline, false, hand);
    EXPECT_FALSE(curve.closed);
    // The chords are off by 100 (1 - cos(π / 20)) = 1.2 in their middles.
    EXPECT_LT(furthest_from(curve.points, drawn::placed(outline, hand)), 0.8);
    for (std::size_t i = 4; i < curve.points.size(); i += 4)
        EXPECT_NEAR(turn_at(curve.points, i), 0, 1e-6);
}

struct RoundingCase {
    const char* name;
    double radius, step; // sheet pixels, of a circle and along it
    int points;          // added in each step
};
// Off its chord an arc is by step² / 8 over the radius, a square of the chords less: the flatness is 0.05.
const RoundingCase kRoundings[] = {
    {"AddsNoneInAShortStep",          20,   3.9, 0},
    {"AddsNoneInALongStepThatIsFlat", 1000, 15,  0},
    {"AddsOneInAFlatterStep",         400,  20,  1},
    {"AddsWhatABendTakes",            100,  20,  3},
    {"AddsNoMoreThanItMay",           100,  60,  4},
};
class RoundedForAFreeCurve : public testing::TestWithParam<RoundingCase> {};
TEST_P(RoundedForAFreeCurve, Path)
{
    const RoundingCase& row = GetParam();
    constexpr int kSteps = 6;
    Path circle;
    for (int i = 0; i <= kSteps; ++i)
        circle.push_back(row.radius * unit_at(i * row.step / row.radius));
    const Path rounded = rounded_for_free_curve(circle, kTolerance);
    ASSERT_EQ(rounded.size(), static_cast<std::size_t>(1 + kSteps * (1 + row.points)));
    for (std::size_t i = 0; i < circle.size(); ++i)
        EXPECT_EQ(rounded[i * static_cast<std::size_t>(1 + row.points)], circle[i]);
}
INSTANTIATE_TEST_SUITE_P(, RoundedForAFreeCurve, testing::ValuesIn(kRoundings),
                         [](const auto& row) { return row.param.name; });

} // namespace
