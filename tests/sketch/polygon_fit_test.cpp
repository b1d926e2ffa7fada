#include "sketch/core/polygon_fit.h"

#include "sketch/core/line_fit.h"
#include "sketch/core/resampling.h"
#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

// The furthest of the true corners from the nearest found one.
double furthest_corner(const Path& found, const Path& expected)
{
    double furthest = 0;
    for (const Vec2 corner : expected) {
        double nearest = 1e300;
        for (const Vec2 p : found)
            nearest = std::min(nearest, distance(p, corner));
        furthest = std::max(furthest, nearest);
    }
    return furthest;
}

struct RegularCase {
    const char* name;
    int sides;
    double start; // share of the way around
    bool reversed;
};
const RegularCase kRegulars[] = {
    {"ATriangle",                3, 0,    false},
    {"ATriangleFromWithinASide", 3, 0.4,  false},
    {"ASquareTheOtherWayAround", 4, 0.05, true },
    {"APentagon",                5, 0.33, false},
    {"AHexagon",                 6, 0,    true },
    {"AnOctagonFromWithinASide", 8, 0.56, false},
};
class ClosedChainAroundARegularPolygon : public testing::TestWithParam<RegularCase> {};
TEST_P(ClosedChainAroundARegularPolygon, HasItsCorners)
{
    drawn::Hand hand;
    hand.start = GetParam().start;
    hand.reversed = GetParam().reversed;
    hand.points = 200;
    const Path outline = drawn::regular(GetParam().sides);
    const Path points = resample(drawn::path_of(drawn::stroke(outline, true, hand)), 96);
    const auto chains = fit_closed_chains(points, 8);
    ASSERT_EQ(chains.size(), 6U);
    const Chain& chain = chains[static_cast<std::size_t>(GetParam().sides) - 3];
    ASSERT_EQ(chain.corners.size(), static_cast<std::size_t>(GetParam().sides));
    EXPECT_EQ(chain.meetings.size(), chain.corners.size());
    // Even points miss corners by up to half a step; the sides through the others do not.
    EXPECT_LT(furthest_corner(chain.corners, drawn::placed(outline, hand)), 1.0);
    EXPECT_LT(chain.root_mean_square, 0.5);
}
INSTANTIATE_TEST_SUITE_P(, ClosedChainAroundARegularPolygon, testing::ValuesIn(kRegulars),
                         [](const auto& row) { return row.param.name; });

TEST(ClosedChains, BridgeAGapWithTheCornerThatIsMissing)
{
    // A square that begins and ends 12 before and behind a corner.
    const Path square = resample(
        {
            {112, 0  },
            {200, 0  },
            {200, 100},
            {100, 100},
            {100, 12 }
    },
        96);
    const auto chains = fit_closed_chains(square, 4);
    EXPECT_LT(furthest_corner(chains[1].corners,
                              {
                                  {100, 0  },
                                  {200, 0  },
                                  {200, 100},
                                  {100, 100}
    }),
              1.0);
}

// The point furthest from the middle is no corner.
TEST(ClosedChains, AreNotLedAstrayByOnePointFarOut)
{
    Path square = resample_closed(drawn::box(100, 100), 96);
    square[13] = {4, -85};
    const auto chains = fit_closed_chains(square, 4);
    EXPECT_LT(furthest_corner(chains[1].corners, drawn::box(100, 100)), 4.0);
}

TEST(ClosedChains, LieBetterTheMoreSidesTheyHave)
{
    Seeded seeded(3);
    Path points;
    for (int i = 0; i < 96; ++i)
        points.push_back((1 + seeded.between(-0.2, 0.2)) * unit_at(2 * kPi * i / 96));
    const auto chains = fit_closed_chains(points, 8);
    for (std::size_t i = 1; i < chains.size(); ++i)
        EXPECT_LE(chains[i].root_mean_square, chains[i - 1].root_mean_square) << i + 3 << " sides";
}

// All ways to choose where three and four sides meet, tried one by one.
TEST(ClosedChains, AreTheBestOfAll)
{
    for (std::uint64_t seed = 1; seed <= 5; ++seed) {
        drawn::Hand hand;
        hand.seed = seed;
        hand.jitter = 2;
        hand.points = 24;
        hand.more = -1.0 / 24;
        hand.start = 0.1 * static_cast<double>(seed);
        const Path points = drawn::path_of(drawn::stroke(drawn::regular(3), true, hand));
        const std::size_t n = points.size();
        const auto cost = [&](std::size_t first, std::size_t last) {
            LineMoments moments;
            for (std::size_t i = first; i <= last; ++i)
                moments.add(points[i % n] - points[0]);
            return moments.square_sum();
        };
        double least = 1e300;
        for (std::size_t a = 0; a < n; ++a)
            for (std::size_t b = a + 1; b < n; ++b)
                for (std::size_t c = b + 1; c < n; ++c)
                    least = std::min(least, cost(a, b) + cost(b, c) + cost(c, a + n));
        const Chain triangle = fit_closed_chains(points, 3).front();
        EXPECT_NEAR(triangle.root_mean_square, std::sqrt(least / static_cast<double>(n)), 1e-9)
            << "seed " << seed;
    }
}

TEST(ClosedChains, OfTooFewPointsAreNone)
{
    EXPECT_TRUE(fit_closed_chains(
                    {
                        {0, 0},
                        {1, 0},
                        {0, 1}
    },
                    4)
                    .empty());
    EXPECT_TRUE(fit_closed_chains({}, 3).empty());
}

TEST(OpenChain, FollowsAZigzag)
{
    for (int legs = 1; legs <= 12; ++legs) {
        drawn::Hand hand;
        hand.points = 300;
        hand.jitter = 0.5;
        const Path outline = drawn::zigzag(legs);
        const Path points = resample(drawn::path_of(drawn::stroke(outline, false, hand)), 128);
        const Chain chain = fit_open_chain(points, 128 * 4.0);
        ASSERT_EQ(chain.corners.size(), static_cast<std::size_t>(legs) + 1) << legs << " legs";
        EXPECT_LT(furthest_corner(chain.corners, drawn::placed(outline, hand)), 5.0) << legs << " legs";
        EXPECT_EQ(chain.meetings.front(), 0U);
        EXPECT_EQ(chain.meetings.back(), points.size() - 1);
    }
}

TEST(OpenChain, DoesNotTakeThereAndBackForOneSide)
{
    const Path points = resample(
        {
            {0,   0  },
            {100, 0  },
            {100, -80},
            {101, 0  },
            {200, 0  }
    },
        128);
    const Chain chain = fit_open_chain(points, 128 * 4.0);
    EXPECT_EQ(chain.corners.size(), 5U);
}

TEST(OpenChain, OfFewPoints)
{
    EXPECT_TRUE(fit_open_chain({}, 1).corners.empty());
    EXPECT_TRUE(fit_open_chain(
                    {
                        {1, 1}
    },
                    1)
                    .corners.empty());
    EXPECT_EQ(fit_open_chain(
                  {
                      {1, 1},
                      {5, 1}
    },
                  1)
                  .corners.size(),
              2U);
}

// Chains around many points of a circle come to the closed form; a regular one is the best there.
TEST(ChainErrorOfACircle, IsThatOfTheBestChain)
{
    Path circle;
    for (int i = 0; i < 600; ++i)
        circle.push_back(unit_at(2 * kPi * i / 600));
    const auto chains = fit_closed_chains(circle, 8);
    for (std::size_t sides = 3; sides <= 8;
         ++sides) // the points where sides meet count twice, and are the furthest
        EXPECT_NEAR(chains[sides - 3].root_mean_square / chain_error_of_circle(sides), 1, 0.04) << sides;
}

// A quarter of a circle of radius 100 as one chain of two chords: each turns by 45°.
TEST(ChainErrorOfACurve, IsThatOfAnArc)
{
    Path points;
    for (int i = 0; i <= 127; ++i)
        points.push_back(100.0 * unit_at(kPi / 2 * i / 127));
    Chain chain;
    chain.corners = {points[0], points[64], points[127]};
    chain.meetings = {0, 64, 127};
    LineMoments first, second;
    for (std::size_t i = 0; i <= 127; ++i)
        (i < 64 ? first : second).add(points[i]);
    const double error = std::sqrt((first.square_sum() + second.square_sum()) / 128);
    EXPECT_NEAR(chain_error_of_curve(chain) / error, 1, 0.05);
    chain.corners.pop_back();
    chain.meetings.pop_back();
    EXPECT_EQ(chain_error_of_curve(chain), 0); // one side turns nowhere
}

struct JoinCase {
    const char* name;
    Path open, joined;
};
const JoinCase kJoins[] = {
    {"AtACornerThatIsOvershot", {{-5, 0}, {100, 0}, {50, 80}, {-3, -6}}, {{0, 0}, {100, 0}, {50, 80}}},
    {"InTheMiddleOfASide",
     {{50, 1}, {100, 0}, {100, 100}, {0, 100}, {0, 0}, {51, -1}},
     {{100, 0}, {100, 100}, {0, 100}, {0, 0}}                                                        },
    {"TooShortToClose",         {{0, 0}, {50, 50}, {2, 0}},              {{0, 0}, {50, 50}, {2, 0}}  },
};
class JoinedEnds : public testing::TestWithParam<JoinCase> {};
TEST_P(JoinedEnds, MakeOneCornerOrNone)
{
    Chain chain;
    chain.corners = GetParam().open;
    EXPECT_LT(furthest_corner(with_ends_joined(chain).corners, GetParam().joined), 3);
    EXPECT_EQ(with_ends_joined(chain).corners.size(), GetParam().joined.size());
}
INSTANTIATE_TEST_SUITE_P(, JoinedEnds, testing::ValuesIn(kJoins),
                         [](const auto& row) { return row.param.name; });

} // namespace
