#include "sketch/core/affine.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr Affine kQuarterTurn{0, 1, -1, 0, 0, 0}; // from x towards y
constexpr Affine kDouble{2, 0, 0, 2, 0, 0};
constexpr Affine kRight{1, 0, 0, 1, 10, 0};

TEST(Affine, TakesAPointAsAColumn)
{
    constexpr Affine map{1, 2, 3, 4, 5, 6};
    EXPECT_EQ(map({10, 100}), (Vec2{1 * 10 + 3 * 100 + 5, 2 * 10 + 4 * 100 + 6}));
    EXPECT_EQ(map.linear({10, 100}), (Vec2{1 * 10 + 3 * 100, 2 * 10 + 4 * 100}));
    EXPECT_EQ(Affine{}({7, -8}), (Vec2{7, -8}));
}

TEST(Affine, AppliesTheRightOneOfAProductFirst)
{
    EXPECT_EQ((kRight * kDouble)({1, 1}), (Vec2{12, 2}));
    EXPECT_EQ((kDouble * kRight)({1, 1}), (Vec2{22, 2}));
    EXPECT_EQ((kQuarterTurn * kRight)({0, 0}), (Vec2{0, 10}));
    EXPECT_EQ((kRight * kQuarterTurn)({0, 0}), (Vec2{10, 0}));
}

TEST(Affine, ScalesByTheRootOfItsArea)
{
    EXPECT_EQ(kQuarterTurn.mean_scale(), 1);
    EXPECT_EQ((Affine{8, 0, 0, -2, 3, 4}).mean_scale(), 4); // mirrored
}

TEST(Affine, ComesBackByItsInverse)
{
    const Affine maps[] = {
        {     },
        kQuarterTurn,
        kRight,
        {  0.75, 0, 0,   -0.75, 0, 595.5},
        { 3,    1, -2,  5,     700, -1e6},
        {  1e-9, 0, 0,   1e-9,  4, 5},
        {     1,    0, 1e6, 1,     0, 0},
    };
    for (const Affine& map : maps) {
        const auto inverse = try_inverse(map);
        ASSERT_TRUE(inverse);
        for (const Vec2 p : {
                 Vec2{0,  0},
                 Vec2{1,  0},
                 Vec2{-3, 8}
        }) {
            // What the translation's size takes away of the places' digits.
            const double bound = 1e-15 * (1 + length(map(p))) * (1 + length(inverse->linear({1, 1})));
            EXPECT_LT(distance((*inverse)(map(p)), p), 8 * bound);
        }
    }
}

struct FlatCase {
    const char* name;
    Affine map;
};
const FlatCase kFlat[] = {
    {"OntoALine",           {1, 2, 2, 4, 0, 0}           },
    {"OntoAPoint",          {0, 0, 0, 0, 5, 5}           },
    {"OfNoNumber",          {std::nan(""), 0, 0, 1, 0, 0}},
    {"OfInfiniteScale",     {kInfinite, 0, 0, 1, 0, 0}   },
    {"OfInfinitePlace",     {1, 0, 0, 1, kInfinite, 0}   },
    {"TooSmallToComeBack",  {1e-200, 0, 0, 1e-200, 0, 0} },
    {"WhosePlaceOverflows", {1e-9, 0, 0, 1e-9, 1e308, 0} },
};
class NoInverse : public testing::TestWithParam<FlatCase> {};
TEST_P(NoInverse, IsFound) { EXPECT_FALSE(try_inverse(GetParam().map)); }
INSTANTIATE_TEST_SUITE_P(, NoInverse, testing::ValuesIn(kFlat),
                         [](const auto& row) { return row.param.name; });

} // namespace
