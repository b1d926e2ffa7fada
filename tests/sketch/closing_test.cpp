#include "sketch/core/closing.h"

#include "sketch/core/resampling.h"
#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

Closing closing_of(const Path& path) { return close_path(resample(path, 128)); }

struct GapCase {
    const char* name;
    double more;        // of the way around a circle
    double least, most; // gap
};
// The chord of the missing angle over the rest of the way with the chord.
const GapCase kGaps[] = {
    {"ClosedExactly",   0,     0,     1e-9 },
    {"AQuarterMissing", -0.25, 0.229, 0.232}, // √2 / (3/2 π + √2)
    {"AHalfMissing",    -0.5,  0.388, 0.390}, // 2 / (π + 2)
    {"ATenthTooFar",    0.1,   0,     0.009},
};
class GapOfACircle : public testing::TestWithParam<GapCase> {};
TEST_P(GapOfACircle, IsAShareOfTheWayAround)
{
    drawn::Hand hand;
    hand.more = GetParam().more;
    const double gap = closing_of(drawn::path_of(drawn::stroke(drawn::ellipse(1, 1), true, hand))).gap;
    EXPECT_GE(gap, GetParam().least);
    EXPECT_LE(gap, GetParam().most);
}
INSTANTIATE_TEST_SUITE_P(, GapOfACircle, testing::ValuesIn(kGaps),
                         [](const auto& row) { return row.param.name; });

TEST(Closing, CutsOffTailsThatCross)
{
    // A triangle whose sides run past the corner at the origin, by 20 and by 30.
    const Closing closing = closing_of({
        {-20, 0  },
        {100, 0  },
        {50,  100},
        {-15, -30}
    });
    EXPECT_LT(closing.gap, 0.02);
    EXPECT_LT(distance(closing.loop.front(), {0, 0}), 8);
    EXPECT_LT(distance(closing.loop.back(), {0, 0}), 8);
}

TEST(Closing, LeavesOpenPathsWhole)
{
    const Path zigzag = resample(drawn::zigzag(5), 128);
    const Closing closing = close_path(zigzag);
    EXPECT_GT(closing.gap, 0.2);
    EXPECT_EQ(closing.loop, zigzag);
}

TEST(Closing, SaysHowMuchStandsOver)
{
    // Of a way of 120 + 112 + 145 = 377 the tails are 20 and 34 long; the places are 3 apart.
    const Closing closing = closing_of({
        {-20, 0  },
        {100, 0  },
        {50,  100},
        {-15, -30}
    });
    EXPECT_NEAR(closing.before, 20.0 / 377, 0.02);
    EXPECT_NEAR(closing.after, 34.0 / 377, 0.02);
}

TEST(EndsThatMeet, DoSoHalfWayAndBendNothingFurtherOn)
{
    // Three sides of a square, and of the fourth all but 10.
    const Path path = resample(
        {
            {0,   0  },
            {200, 0  },
            {200, 200},
            {0,   200},
            {0,   10 }
    },
        400);
    const Path loop = with_ends_met(path, {path, 0.0125, 0, 0});
    ASSERT_EQ(loop.size(), path.size() - 1);
    EXPECT_LT(distance(loop.front(), {0, 5}), 1e-9);
    EXPECT_LT(distance(loop.back(), loop.front()), 5); // a step and its bend
    double furthest = 0;
    for (std::size_t i = 0; i < loop.size(); ++i) {
        furthest = std::max(furthest, distance(loop[i], path[i]));
        if (i > 35 && i < 364) { // 6 gaps from the ends are 31 places
            EXPECT_EQ(loop[i], path[i]) << i;
        }
    }
    EXPECT_LE(furthest, 5 + 1e-9);
}

TEST(EndsThatMeet, DoWithoutWhatStandsOver)
{
    const Path line = resample(
        {
            {0,   0},
            {100, 0}
    },
        11);
    // A tenth and a quarter: from 10 to 75, and there a place of their own.
    const Path loop = with_ends_met(line, {line, 0, 0.1, 0.25});
    ASSERT_EQ(loop.size(), 7U); // 10, 20 .. 70, without the one that has met the first
    EXPECT_NEAR(loop.front().x, 42.5, 1e-9);
}

TEST(Closing, OfTooFewPointsIsOpen)
{
    EXPECT_EQ(close_path({}).gap, 1);
    EXPECT_EQ(close_path({
                             {1, 1},
                             {2, 2}
    })
                  .gap,
              1);
}

} // namespace
