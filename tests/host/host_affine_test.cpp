#include "host/kit/affine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace vnt::host;

TEST(AffineProduct, AppliesTheRightMapFirst)
{
    const Vec there = (Affine::translation(10, 20) * Affine::scaling(2, 3))({1, 1});
    EXPECT_EQ(there.x, 12);
    EXPECT_EQ(there.y, 23);
}

struct TurnCase {
    const char* name;
    double degrees;
    double x, y; // where (1, 0) goes
};
const TurnCase kTurns[] = {
    {"None",               0,    1,  0 },
    {"AQuarterFromXToY",   90,   0,  1 },
    {"AHalf",              180,  -1, 0 },
    {"ThreeQuarters",      270,  0,  -1},
    {"AQuarterBack",       -90,  0,  -1},
    {"ThreeQuartersBack",  -270, 0,  1 },
    {"MoreThanOnceAround", 810,  0,  1 },
};
class AffineQuarterTurn : public testing::TestWithParam<TurnCase> {};
TEST_P(AffineQuarterTurn, IsExact)
{
    const Vec there = Affine::rotation(GetParam().degrees)({1, 0});
    EXPECT_EQ(there.x, GetParam().x);
    EXPECT_EQ(there.y, GetParam().y);
}
INSTANTIATE_TEST_SUITE_P(, AffineQuarterTurn, testing::ValuesIn(kTurns),
                         [](const auto& row) { return row.param.name; });

TEST(AffineInverse, TakesPointsBack)
{
    const Affine map{3, 1, -2, 5, 7, -11};
    const Vec there = map({13, 17});
    const Vec back = try_inverse(map).value()({there.x, there.y});
    EXPECT_NEAR(back.x, 13, 1e-13); // a few units in the last place of the numbers that are added up
    EXPECT_NEAR(back.y, 17, 1e-13);
}

struct FlatCase {
    const char* name;
    Affine map;
};
const FlatCase kFlat[] = {
    {"OfNoWidth",                      {0, 0, 0, 1, 0, 0}                                       },
    {"OntoALine",                      {1, 2, 2, 4, 0, 0}                                       },
    {"OntoALineButForRounding",        {0.1, 0.3, 0.1 * 3, 0.3 * 3, 0, 0}                       },
    {"ToNowhere",                      {1, 0, 0, std::numeric_limits<double>::infinity(), 0, 0} },
    {"OfWhatIsNoNumber",               {1, 0, 0, 1, std::numeric_limits<double>::quiet_NaN(), 0}},
    {"SoSmallThatItsInverseOverflows", {1e-320, 0, 0, 1e-320, 0, 0}                             },
};
class AffineFlat : public testing::TestWithParam<FlatCase> {};
TEST_P(AffineFlat, HasNoInverse) { EXPECT_FALSE(try_inverse(GetParam().map).has_value()); }
INSTANTIATE_TEST_SUITE_P(, AffineFlat, testing::ValuesIn(kFlat),
                         [](const auto& row) { return row.param.name; });

TEST(AffineInverse, IsFoundForSmallAndSkewMaps)
{
    EXPECT_EQ(try_inverse(Affine::scaling(1e-9, 1e9)).value().a, 1e9);
    EXPECT_TRUE(try_inverse({1, 0, std::tan(1.5707), 1, 0, 0}).has_value());
}

TEST(AffineMeanScale, IsTheSquareRootOfTheArea)
{
    EXPECT_EQ(mean_scale(Affine::scaling(2, 8)), 4);
    EXPECT_EQ(mean_scale(Affine::scaling(-3, 3)), 3);
    EXPECT_EQ(mean_scale({1, 0, 7, 1, 5, 5}), 1);
}

} // namespace
