#include "sketch/core/resampling.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9; // of paths of some hundred pixels

void expect_near(const Path& got, const Path& expected)
{
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_LT(distance(got[i], expected[i]), kRounding) << "point " << i;
}

const Path kCorner = {
    {0,  0 },
    {30, 0 },
    {30, 10}
};

TEST(Resample, SpreadsPointsAlongTheWay)
{
    expect_near(resample(kCorner, 5), {
                                          {0,  0 },
                                          {10, 0 },
                                          {20, 0 },
                                          {30, 0 },
                                          {30, 10}
    });
}

TEST(Resample, ReachesTheEndExactlyAfterManyPoints)
{
    const Path path = drawn::path_of(drawn::stroke(drawn::ellipse(1, 0.7), true));
    const Path even = resample(path, 977);
    EXPECT_EQ(even.front(), path.front());
    EXPECT_EQ(even.back(), path.back());
    // A chord is at most as long as the way between its ends.
    const double step = path_length(path) / 976;
    for (std::size_t i = 1; i < even.size(); ++i)
        EXPECT_LE(distance(even[i - 1], even[i]), step + kRounding);
}

TEST(Resample, LeavesAPointAlone)
{
    EXPECT_EQ(resample({}, 8), Path{});
    EXPECT_EQ(resample(
                  {
                      {2, 3}
    },
                  8),
              (Path{{2, 3}}));
    EXPECT_EQ(resample(
                  {
                      {2, 3},
                      {2, 3}
    },
                  8),
              (Path{{2, 3}}));
}

TEST(ResampleClosed, GoesAroundAndStopsOneStepBeforeTheStart)
{
    expect_near(resample_closed(
                    {
                        {0,  0 },
                        {10, 0 },
                        {10, 10},
                        {0,  10}
    },
                    8),
                {{0, 0}, {5, 0}, {10, 0}, {10, 5}, {10, 10}, {5, 10}, {0, 10}, {0, 5}});
}

struct HookCase {
    const char* name;
    Path path;
    Vec2 start, end; // within a step of the even spacing
};
// clang-format off
const HookCase kHooks[] = {
    {"AtTheStartGoes",            {{0, 6}, {0, 0}, {200, 0}},            {0, 0},  {200, 0}},
    {"AtTheEndGoes",              {{0, 0}, {200, 0}, {197, -7}},         {0, 0},  {200, 0}},
    {"AtBothEndsGo",              {{5, 5}, {0, 0}, {200, 0}, {196, 6}},  {0, 0},  {200, 0}},
    {"OfALengthThatWasMeantStays", {{0, 40}, {0, 0}, {200, 0}},          {0, 40}, {200, 0}},
    {"ThatBendsLittleStays",      {{-8, 3}, {0, 0}, {200, 0}},           {-8, 3}, {200, 0}},
};
// clang-format on
class Hook : public testing::TestWithParam<HookCase> {};
TEST_P(Hook, IsTold)
{
    const HookCase& row = GetParam();
    const Path path = without_hooks(row.path);
    const double step = path_length(row.path) / 127;
    EXPECT_LT(distance(path.front(), row.start), 1.5 * step);
    EXPECT_LT(distance(path.back(), row.end), 1.5 * step);
}
INSTANTIATE_TEST_SUITE_P(, Hook, testing::ValuesIn(kHooks), [](const auto& row) { return row.param.name; });

TEST(LongSteps, OfAFastCircleAreRounded)
{
    drawn::Hand hand;
    hand.points = 13;
    const Path few = drawn::path_of(drawn::stroke(drawn::ellipse(1, 1), true, hand));
    const Path rounded = with_long_steps_rounded(few);
    EXPECT_GT(rounded.size(), 4 * few.size());
    double furthest = 0; // from the circle of radius 100; the chords' middles are 3.4 off it
    for (const Vec2 p : rounded)
        furthest = std::max(furthest, std::abs(distance(p, hand.at) - hand.scale));
    EXPECT_LT(furthest, 1.0);
}

TEST(LongSteps, OfASquareStayStraight)
{
    const Path square = {
        {0,   0  },
        {100, 0  },
        {100, 100},
        {0,   100},
        {0,   0  }
    };
    for (const Vec2 p : with_long_steps_rounded(square)) {
        double nearest = 1e9;
        for (std::size_t i = 1; i < square.size(); ++i)
            nearest = std::min(nearest, distance_from_piece(p, square[i - 1], square[i]));
        EXPECT_LT(nearest, kRounding) << p.x << ' ' << p.y;
    }
}

TEST(LongSteps, OfAPathOfManyPointsAreNone)
{
    const Path path = drawn::path_of(drawn::stroke(drawn::ellipse(1, 1), true));
    EXPECT_EQ(with_long_steps_rounded(path), path);
}

TEST(PathPart, HasItsOwnPointsBetweenTheCuts)
{
    const Path path = {
        {0,  0 },
        {10, 0 },
        {10, 30},
        {50, 30}
    };
    const Path expected = {
        {5,  0 },
        {10, 0 },
        {10, 30},
        {20, 30}
    };
    EXPECT_EQ(part_of(path, 5, 50), expected);
    EXPECT_EQ(part_of(path, 0, 80), path);
}

// What a curve is fitted to has to be the hand's own places.
TEST(Hooks, GoWithoutMovingAnyOtherPoint)
{
    Path path{
        {0,  6},
        {-2, 3}
    };
    for (int i = 0; i <= 60; ++i)
        path.push_back({10.0 * i + 3, 0.5 * (i % 2)});
    const Path without = without_hooks(path);
    EXPECT_LT(without.size(), path.size());
    for (std::size_t i = 1; i < without.size(); ++i)
        EXPECT_EQ(without[without.size() - i], path[path.size() - i]) << i;
}

TEST(LongSteps, AreThoseOverAGivenLength)
{
    const Path path = {
        {0,  0},
        {4,  0},
        {10, 1},
        {14, 3}
    };
    const Path rounded = with_long_steps_rounded(path, 5);
    ASSERT_EQ(rounded.size(), path.size() + 4);
    EXPECT_EQ(rounded[1], path[1]);
    EXPECT_EQ(rounded[6], path[2]);
    EXPECT_EQ(rounded[7], path[3]);
}

} // namespace
