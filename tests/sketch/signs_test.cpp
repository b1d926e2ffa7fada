#include "sketch/core/signs.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

// Closed ones from start on, a share of the way around.
Signs signs_of(const Path& outline, bool closed, double start = 0.06)
{
    drawn::Hand hand;
    hand.points = 240;
    hand.rotation = 0.3;
    hand.start = start;
    return measure(drawn::stroke(outline, closed, hand));
}

Path pentagram()
{
    Path outline;
    for (int i = 0; i < 5; ++i)
        outline.push_back(unit_at(4 * kPi / 5 * i));
    return outline;
}

struct BodyCase {
    const char* name;
    Path outline;
    double fill;            // within 0.02
    std::size_t sides;      // that fit without a bend; 0: none does
    std::size_t corners;    // that are seen but for the join, which is in a side
    double turn_at_corners; // at least; at most when there are none
};
// clang-format off
const BodyCase kBodies[] = {
    {"ACircle",     drawn::ellipse(1, 1),    1,    0, 0, 0.45},
    {"AnEllipse",   drawn::ellipse(2.5, 1),  1,    0, 0, 0.45},
    {"ASquare",     drawn::box(2, 2),        1,    4, 4, 0.95},
    {"ARectangle",  drawn::box(3, 1),        1,    4, 4, 0.95},
    {"ATriangle",   drawn::regular(3),       1,    3, 3, 0.95},
    {"AHexagon",    drawn::regular(6),       1,    6, 6, 0.9 },
    {"AnOctagon",   drawn::regular(8),       1,    8, 8, 0.9 },
    // An L fills 3 of the 3½ squares of its hull.
    {"AnL",         {{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}}, 6.0 / 7, 6, 6, 0.9},
};
// clang-format on
class Body : public testing::TestWithParam<BodyCase> {};
TEST_P(Body, HasItsSigns)
{
    const BodyCase& row = GetParam();
    // In the middle of the first side, or of half of the L's.
    const Signs signs =
        signs_of(row.outline, true, 0.5 / static_cast<double>(std::max<std::size_t>(row.sides, 1)));
    ASSERT_TRUE(signs.has_extent);
    ASSERT_TRUE(signs.has_body);
    const BodySigns& body = signs.body;
    EXPECT_LT(body.closing.gap, 0.01);
    EXPECT_NEAR(body.fill, row.fill, 0.02);
    EXPECT_EQ(body.corners, row.corners);
    EXPECT_LT(body.turn_at_join, 0.5); // a circle turns by 0.4 from arm to arm
    for (std::size_t sides = kFewestSides; sides <= kMostSides; ++sides) {
        if (row.sides == 0) {
            EXPECT_NEAR(body.bend(sides), 1, 0.25) << sides << " sides";
        } else if (sides < row.sides) {
            EXPECT_GT(body.bend(sides), 0.6) << sides << " sides";
        }
    }
    if (row.sides > 0) {
        EXPECT_LT(body.bend(row.sides), 0.25);
        EXPECT_GE(body.turn_at_corners, row.turn_at_corners);
    } else {
        EXPECT_LT(body.oval_error, 0.01);
        EXPECT_LE(body.turn_at_corners, row.turn_at_corners);
    }
}
INSTANTIATE_TEST_SUITE_P(, Body, testing::ValuesIn(kBodies), [](const auto& row) { return row.param.name; });

// One side runs along the gap; the others turn by as much as around a whole circle.
TEST(BodyOfAnOpenCircle, BendsAsAWholeOne)
{
    const Signs signs = signs_of(drawn::arc(0, 1.6 * kPi), false);
    ASSERT_TRUE(signs.has_body);
    EXPECT_GT(signs.body.closing.gap, 0.1);
    for (std::size_t sides = 6; sides <= kMostSides; ++sides)
        EXPECT_NEAR(signs.body.bend(sides), 1, 0.25) << sides << " sides";
}

// It goes around its middle twice, and its area is counted where it is covered twice.
TEST(BodyOfAPentagram, FillsLittleOfItsHullATurn)
{
    const Signs signs = signs_of(pentagram(), true);
    ASSERT_TRUE(signs.has_body);
    EXPECT_LT(signs.body.fill, 0.5);
}

TEST(LineSigns, OfAStraightLineAreNothing)
{
    const LineSigns line = signs_of(
                               {
                                   {0, 0},
                                   {3, 1}
    },
                               false)
                               .line;
    EXPECT_LT(line.unevenness, 1e-6);
    EXPECT_LT(line.detour, 1e-6);
    EXPECT_LT(line.ripple, 1e-6);
    EXPECT_FALSE(signs_of(
                     {
                         {0, 0},
                         {3, 1}
    },
                     false)
                     .has_body);
}

// An arc of the angle θ is off its line by θ / (12 √5) of its length to first order, and θ² / 24 longer.
TEST(LineSigns, OfAShallowArcFollowItsAngle)
{
    const double angle = 0.4;
    const LineSigns line = signs_of(drawn::arc(0, angle), false).line;
    EXPECT_NEAR(line.unevenness, angle / (12 * std::sqrt(5)), 4e-4);
    EXPECT_NEAR(line.detour, angle * angle / 24, 3e-4);
    EXPECT_LT(line.ripple, 4e-4); // an arc is a parabola to first order
}

// A wave has the root mean square of its height over √2, of which a parabola takes next to nothing.
TEST(LineSigns, OfAWaveRipple)
{
    Path wave;
    for (int i = 0; i <= 1000; ++i)
        wave.push_back({i / 1000.0, 0.005 * std::sin(8 * kPi * i / 1000)});
    EXPECT_NEAR(signs_of(wave, false).line.ripple, 0.005 / std::sqrt(2), 1e-4);
}

TEST(PieceSigns, TellAZigzagFromAWave)
{
    const ChainSigns zigzag = signs_of(drawn::zigzag(6), false).pieces;
    EXPECT_EQ(zigzag.chain.corners.size(), 7U);
    EXPECT_LT(zigzag.bend, 0.15);
    EXPECT_EQ(zigzag.corners, 5U);
    EXPECT_FALSE(zigzag.is_closed);
    Path wave;
    for (int i = 0; i <= 300; ++i)
        wave.push_back({i / 60.0, 0.5 * std::sin(i * kPi / 60)});
    EXPECT_GT(signs_of(wave, false).pieces.bend, 0.25);
    EXPECT_EQ(signs_of(wave, false).pieces.corners, 0U);
    EXPECT_TRUE(signs_of(drawn::regular(5), true).pieces.is_closed);
}

TEST(SignsOfNothing, HaveNoExtent)
{
    EXPECT_FALSE(measure({}).has_extent);
    EXPECT_FALSE(measure({
                             {4, 4, 0, 1}
    })
                     .has_extent);
    EXPECT_FALSE(measure({
                             {4, 4, 0, 1},
                             {4, 4, 5, 1}
    })
                     .has_extent);
}

} // namespace
