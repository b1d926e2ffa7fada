#include "sketch/core/corners.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::sketch;

// y = 4 x², whose bend is tight at the bottom.
Path parabola()
{
    Path path;
    for (int i = -100; i <= 100; ++i)
        path.push_back({i / 100.0, i * i / 2500.0});
    return path;
}

struct CornerCase {
    const char* name;
    Path outline; // open; of the unit size
    Path corners; // inner ones
};
// clang-format off
const CornerCase kCorners[] = {
    {"ALineHasNone",              {{0, 0}, {2, 1}},                         {}},
    {"ARightAngleHasOne",         {{0, 0}, {1, 0}, {1, 1}},                 {{1, 0}}},
    {"AnOpenSquareHasThree",      {{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0.05}}, {{1, 0}, {1, 1}, {0, 1}}},
    {"AnObtuseBendHasOne",        {{0, 0}, {1, 0}, {1.7, 0.7}},             {{1, 0}}},
    {"AHalfCircleHasNone",        drawn::arc(0, kPi),                       {}},
    {"AWholeCircleHasNone",       drawn::arc(0, 2 * kPi),                   {}},
    {"AParabolaHasNone", parabola(), {}},
    {"AZigzagHasItsTips",         drawn::zigzag(4),                         {{0.5, 1}, {1, 0}, {1.5, 1}}},
};
// clang-format on
class CornersOf : public testing::TestWithParam<CornerCase> {};
TEST_P(CornersOf, AreWhereItTurnsAtOnce)
{
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        drawn::Hand hand;
        hand.points = 150;
        hand.jitter = 0.4;
        hand.rotation = 0.37 * static_cast<double>(seed);
        hand.seed = seed;
        const Path path = drawn::path_of(drawn::stroke(GetParam().outline, false, hand));
        const std::vector<std::size_t> found = find_corners(path);
        const Path expected = drawn::placed(GetParam().corners, hand);
        ASSERT_EQ(found.size(), expected.size() + 2) << "seed " << seed;
        EXPECT_EQ(found.front(), 0U);
        EXPECT_EQ(found.back(), path.size() - 1);
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_LT(distance(path[found[i + 1]], expected[i]), 6) << "seed " << seed << ", corner " << i;
    }
}
INSTANTIATE_TEST_SUITE_P(, CornersOf, testing::ValuesIn(kCorners),
                         [](const auto& row) { return row.param.name; });

struct ClosedCornerCase {
    const char* name;
    Path outline;
    double start; // where the path begins, as a share of the way around
    Path corners;
};
// clang-format off
const ClosedCornerCase kClosedCorners[] = {
    {"ASquareBegunInASide",        drawn::box(2, 2),     0.13, {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}},
    {"ASquareBegunAtACorner",      drawn::box(2, 2),     0,    {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}},
    {"ASquareBegunNearACorner",    drawn::box(2, 2),     0.01, {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}},
    {"ACircle",                    drawn::ellipse(1, 1), 0.4,  {}},
};
// clang-format on
class ClosedCornersOf : public testing::TestWithParam<ClosedCornerCase> {};
TEST_P(ClosedCornersOf, AreFoundWhereverThePathBegins)
{
    drawn::Hand hand;
    hand.points = 161;
    hand.start = GetParam().start;
    Path path = drawn::path_of(drawn::stroke(GetParam().outline, true, hand));
    path.pop_back(); // the first again
    const std::vector<std::size_t> found = find_closed_corners(path);
    EXPECT_EQ(found.size(), GetParam().corners.size());
    EXPECT_TRUE(std::is_sorted(found.begin(), found.end()));
    for (const Vec2 corner : drawn::placed(GetParam().corners, hand)) {
        double nearest = 1e9;
        for (const std::size_t i : found)
            nearest = std::min(nearest, distance(path[i], corner));
        EXPECT_LT(nearest, 8);
    }
}
INSTANTIATE_TEST_SUITE_P(, ClosedCornersOf, testing::ValuesIn(kClosedCorners),
                         [](const auto& row) { return row.param.name; });

TEST(CornersOfFewPoints, AreAllOfThem)
{
    EXPECT_TRUE(find_corners({}).empty());
    EXPECT_EQ(find_corners({
                  {1, 2}
    }),
              (std::vector<std::size_t>{0}));
    EXPECT_EQ(find_corners({
                  {1, 2},
                  {3, 4}
    }),
              (std::vector<std::size_t>{0, 1}));
}

TEST(CornersOfALongScribble, StayBounded)
{
    Seeded seeded(5);
    Path path;
    for (int i = 0; i < 20000; ++i)
        path.push_back({seeded.between(0, 300), seeded.between(0, 300)});
    EXPECT_LE(find_corners(path).size(), 1000U);
}

} // namespace
