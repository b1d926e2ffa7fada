#include "host/kit/path_art.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::host;
using host_test::corner;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

struct FiniteCase {
    const char* name;
    PathArt path;
    bool finite;
};
// clang-format off
const FiniteCase kFinite[] = {
    {"NothingIsFinite", {}, true},
    {"TheLargestIsFinite", {corner(3.4e38F, -3.4e38F)}, true},
    {"AnAnchorMayNotBe", {corner(1, 2), corner(kNan, 0)}, false},
    {"AHandleMayNotBe", {{{1, 2}, {1, kInfinity}, {1, 2}}}, false},
    {"TheOtherHandleMayNot", {{{1, 2}, {1, 2}, {-kInfinity, 2}}}, false},
};
// clang-format on
class PathArtFinite : public testing::TestWithParam<FiniteCase> {};
TEST_P(PathArtFinite, LooksAtEveryNumber) { EXPECT_EQ(is_finite(GetParam().path), GetParam().finite); }
INSTANTIATE_TEST_SUITE_P(, PathArtFinite, testing::ValuesIn(kFinite),
                         [](const auto& row) { return row.param.name; });

struct BoundsCase {
    const char* name;
    std::vector<PathArt> paths;
    ArtBox box;
};
// clang-format off
const BoundsCase kBounds[] = {
    {"OneAnchor", {{corner(3, -4)}}, {3, -4, 3, -4}},
    {"LinesOfTwoPaths", {{corner(1, 2), corner(5, 0)}, {corner(-1, 7)}}, {-1, 0, 5, 7}},
    // Control points 0, 4, 4, 0: the middle is at 3/4 of their height.
    {"AnArchIsLowerThanItsHandles", {{{{0, 0}, {0, 0}, {0, 4}}, {{8, 0}, {8, 4}, {8, 0}}}}, {0, 0, 8, 3}},
    // Control points 0, 1, -1, 0: extremes ±√3/6 where t = (3 ∓ √3)/6.
    {"AWaveHasTwoExtremes", {{{{0, 0}, {0, 0}, {0, 1}}, {{8, 0}, {8, -1}, {8, 0}}}},
     {0, -0.28867513459481287, 8, 0.28867513459481287}},
    // Control points 0, -3, 0, 9: the curve is 18 t² - 9 t, lowest where t = 1/4.
    {"AHandleBeyondTheStart", {{{{0, 0}, {0, 0}, {-3, 0}}, {{9, 0}, {0, 0}, {9, 0}}}}, {-1.125, 0, 9, 0}},
    {"HandlesThatNoCurveUsesDoNotCount", {{{{0, 0}, {-50, -50}, {0, 0}}, {{2, 2}, {2, 2}, {50, 50}}}},
     {0, 0, 2, 2}},
    {"PathsThatAreNotFiniteDoNotCount", {{corner(kInfinity, 0)}, {}, {corner(1, 1)}}, {1, 1, 1, 1}},
};
// clang-format on
class PathArtBounds : public testing::TestWithParam<BoundsCase> {};
TEST_P(PathArtBounds, HoldTheCurves)
{
    const ArtBox box = bounds_of(GetParam().paths).value();
    constexpr double kRounding = 1e-14;
    EXPECT_NEAR(box.left, GetParam().box.left, kRounding);
    EXPECT_NEAR(box.bottom, GetParam().box.bottom, kRounding);
    EXPECT_NEAR(box.right, GetParam().box.right, kRounding);
    EXPECT_NEAR(box.top, GetParam().box.top, kRounding);
}
INSTANTIATE_TEST_SUITE_P(, PathArtBounds, testing::ValuesIn(kBounds),
                         [](const auto& row) { return row.param.name; });

TEST(PathArtWithoutAnchors, HasNoBounds)
{
    EXPECT_FALSE(bounds_of({}).has_value());
    EXPECT_FALSE(bounds_of({{}, {corner(kNan, 1)}}).has_value());
}

} // namespace
