#include "Source/geometry/bezier.h"

#include "tests/geometry/bits.h"
#include "tests/geometry/cpu_limit.h"
#include "tests/geometry/plain_arc.h"
#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <list>
#include <string>
#include <vector>

namespace {

using vnt::Matrix;
using vnt::Point;
using Points = std::list<Point>;

constexpr double kKappa = 0.5522847498307936;

const Point kOrigin(0.0, 0.0, 0.0);

std::string text(const Points& points) { return bits::text_of(points); }

double distance_from_line(const Point& p, const Point& direction)
{
    return std::abs(p.x * direction.y - p.y * direction.x) / std::hypot(direction.x, direction.y);
}

TEST(PointsDistance, CountsAllThreeCoordinates)
{
    EXPECT_EQ(points_distance(Point(1.0, 2.0, 3.0), Point(4.0, 6.0, 15.0)), 13.0);
    EXPECT_EQ(points_distance(Point(4.0, 6.0, 15.0), Point(1.0, 2.0, 3.0)), 13.0);
    EXPECT_EQ(points_distance(kOrigin, kOrigin), 0.0);
}

TEST(InternalDivision, GivesTheSecondWeightToTheFirstPoint)
{
    const Point a(1.0, 10.0, 100.0);
    const Point b(2.0, 20.0, 400.0);
    EXPECT_EQ(text({internal_division(a, b, 0.25, 0.75)}), "1.25,12.5,175");
    EXPECT_EQ(text({internal_division(a, b, 2.0, -1.0)}), "3,30,700"); // beyond b
}

TEST(InternalDivision, DoesNotNormaliseItsWeights)
{
    EXPECT_EQ(text({internal_division(Point(1.0, 2.0, 3.0), Point(10.0, 20.0, 30.0), 1.0, 1.0)}), "11,22,33");
}

TEST(SignedTriangleSquare, IsPositiveCounterClockwiseAndIgnoresZ)
{
    EXPECT_EQ(calc_signed_triangle_square(kOrigin, Point(4.0, 0.0, 7.0), Point(0.0, 3.0, -9.0)), 6.0);
    EXPECT_EQ(calc_signed_triangle_square(kOrigin, Point(0.0, 3.0, -9.0), Point(4.0, 0.0, 7.0)), -6.0);
    EXPECT_EQ(calc_signed_triangle_square(Point(1.0, 1.0, 0.0), Point(5.0, 1.0, 0.0), Point(1.0, 4.0, 0.0)),
              6.0);
}

struct TriangleCase {
    const char* name;
    Points control;
    double t;
    std::vector<const char*> levels;
};
const TriangleCase kTriangles[] = {
    {"NoPointsGiveOneEmptyLevel",    {},                                                    0.5,  {""}                                                                          },
    {"OnePointIsItsOwnCurve",        {Point(1, 2, 3)},                                      0.5,  {"1,2,3"}                                                                     },
    {"TwoPointsAreALine",            {Point(0, 0, 0), Point(4, 8, 16)},                     0.25, {"0,0,0  4,8,16", "1,2,4"}                                                    },
    {"ACubicHasFourLevels",
     {Point(0, 0, 0), Point(0, 8, 0), Point(8, 8, 8), Point(8, 0, 0)},
     0.5,                                                                                         {"0,0,0  0,8,0  8,8,8  8,0,0", "0,4,0  4,8,4  8,4,4", "2,6,2  6,6,4", "4,6,3"}},
    {"OutsideZeroToOneExtrapolates", {Point(0, 0, 0), Point(4, 8, 16)},                     2.0,  {"0,0,0  4,8,16", "8,16,32"}                                                  },
    {"FivePointsHaveFiveLevels",
     {Point(0, 0, 0), Point(16, 0, 0), Point(16, 16, 0), Point(0, 16, 0), Point(0, 0, 16)},
     0.5,                                                                                         {"0,0,0  16,0,0  16,16,0  0,16,0  0,0,16", "8,0,0  16,8,0  8,16,0  0,8,8", "12,4,0  12,12,0  4,12,4",
      "12,8,0  8,12,2", "10,10,1"}                                                                                                                                     },
};
class DeCasteljau : public testing::TestWithParam<TriangleCase> {};
TEST_P(DeCasteljau, BuildsEachLevelFromTheOneBefore)
{
    const auto levels = de_casteljau(GetParam().control, GetParam().t);
    ASSERT_EQ(levels.size(), GetParam().levels.size());
    for (std::size_t i = 0; i < levels.size(); ++i)
        EXPECT_EQ(text({levels[i].begin(), levels[i].end()}), GetParam().levels[i]) << "level " << i;
}
INSTANTIATE_TEST_SUITE_P(, DeCasteljau, testing::ValuesIn(kTriangles),
                         [](const auto& row) { return row.param.name; });

struct LegCase {
    const char* name;
    int quadrant;
    Points leg; // of radii 2 and 4
};
const Points kFirstLeg = {Point(2, 0, 0), Point(2, 4 * kKappa, 0), Point(2 * kKappa, 4, 0), Point(0, 4, 0)};
const LegCase kLegs[] = {
    {"FirstQuadrant",                            1,  kFirstLeg                                                                                     },
    {"SecondQuadrantRunsFromTheYAxisToTheXAxis",
     2,                                              {Point(-0.0, 4, 0), Point(-2 * kKappa, 4, 0), Point(-2, 4 * kKappa, 0), Point(-2, 0, 0)}      },
    {"ThirdQuadrant",
     3,                                              {Point(-2, -0.0, 0), Point(-2, -4 * kKappa, 0), Point(-2 * kKappa, -4, 0), Point(-0.0, -4, 0)}},
    {"FourthQuadrantRunsFromTheYAxisToTheXAxis",
     4,                                              {Point(0, -4, 0), Point(2 * kKappa, -4, 0), Point(2, -4 * kKappa, 0), Point(2, -0.0, 0)}      },
    {"QuadrantZeroIsTheFirst",                   0,  kFirstLeg                                                                                     },
    {"QuadrantFiveIsTheFirst",                   5,  kFirstLeg                                                                                     },
    {"ANegativeQuadrantIsTheFirst",              -2, kFirstLeg                                                                                     },
};
class QuadrantLegs : public testing::TestWithParam<LegCase> {};
TEST_P(QuadrantLegs, RunCounterClockwise)
{
    const Points leg = get_leg_arc(GetParam().quadrant, 2.0, 4.0);
    EXPECT_TRUE(bits::same(leg, GetParam().leg)) << text(leg);
}
INSTANTIATE_TEST_SUITE_P(, QuadrantLegs, testing::ValuesIn(kLegs),
                         [](const auto& row) { return row.param.name; });

TEST(GetLegArc, LiesOutsideTheCircleByAtMostItsBound)
{
    double furthest = 0.0;
    const Points leg = get_leg_arc(1, 1.0, 1.0);
    for (int i = 0; i <= 4096; ++i) {
        const Point p = de_casteljau(leg, i / 4096.0).back().front();
        const double outside = std::hypot(p.x, p.y) - 1.0;
        ASSERT_GE(outside, -4e-16); // two units in the last place of 1
        furthest = std::max(furthest, outside);
    }
    EXPECT_LT(furthest, 2.73e-4);
    EXPECT_GT(furthest, 2.72e-4);
}

TEST(GetLegArc, HasArmsOfFourThirdsOfRootTwoLessOne)
{
    const long double exact = 4.0L / 3.0L * (std::sqrt(2.0L) - 1.0L);
    EXPECT_EQ(std::next(get_leg_arc(1, 1.0, 1.0).begin())->y, kKappa);
    EXPECT_NEAR(kKappa, static_cast<double>(exact), 2 * 0x1p-53); // two units in the last place
}

// Of a quarter circle about the origin of radius 100, cut by the ray through 60°.
const Point kRay60(50.0, 86.60254037844386, 0.0);

TEST(DivideBezier, OfAnythingButFourPointsIsEmpty)
{
    const Points five = {kOrigin, kOrigin, kOrigin, kOrigin, kOrigin};
    EXPECT_TRUE(divide_bezier({}, kOrigin, kRay60, true, 1.0).empty());
    EXPECT_TRUE(divide_bezier({kOrigin, kOrigin, kOrigin}, kOrigin, kRay60, false, 1.0).empty());
    EXPECT_TRUE(divide_bezier(five, kOrigin, kRay60, false, 1.0).empty());
}

struct EndCutCase {
    const char* name;
    Point ray_point;
    bool keep_before;
    bool keeps_all;
};
const EndCutCase kEndCuts[] = {
    {"AtTheStartKeepsAllBehindIt",     Point(100, 0,    0), false, true },
    {"AtTheStartKeepsNothingBeforeIt", Point(100, 0,    0), true,  false},
    {"AtTheEndKeepsNothingBehindIt",   Point(0,   100,  0), false, false},
    {"AtTheEndKeepsAllBeforeIt",       Point(0,   100,  0), true,  true },
    {"OppositeTheEndIsOnTheSameLine",  Point(0,   -100, 0), true,  true },
};
class EndCuts : public testing::TestWithParam<EndCutCase> {};
TEST_P(EndCuts, KeepAllOrNothing)
{
    const Points leg = get_leg_arc(1, 100.0, 100.0);
    const Points part = divide_bezier(leg, kOrigin, GetParam().ray_point, GetParam().keep_before, 0.0);
    EXPECT_EQ(text(part), GetParam().keeps_all ? text(leg) : "");
}
INSTANTIATE_TEST_SUITE_P(, EndCuts, testing::ValuesIn(kEndCuts),
                         [](const auto& row) { return row.param.name; });

TEST(DivideBezier, CutsALegIntoTwoThatMeet)
{
    const Points leg = get_leg_arc(1, 100.0, 100.0);
    const Points before = divide_bezier(leg, kOrigin, kRay60, true, 1e-6);
    const Points after = divide_bezier(leg, kOrigin, kRay60, false, 1e-6);
    ASSERT_EQ(before.size(), 4U);
    ASSERT_EQ(after.size(), 4U);
    EXPECT_TRUE(bits::same(before.front(), leg.front()));
    EXPECT_TRUE(bits::same(before.back(), after.front()));
    EXPECT_TRUE(bits::same(after.back(), leg.back()));
    EXPECT_LT(distance_from_line(before.back(), kRay60), 2 * 1e-6 / 100.0);
}

// The middle of the leg is the first parameter tried: its cut is de Casteljau's at one half, in closed form.
TEST(DivideBezier, KeepsThePointsOfTheTriangleInOrder)
{
    const Points line = {Point(8, -8, 0), Point(8, 0, 8), Point(8, 8, 8), Point(8, 24, 0)};
    const Point ray_point(8, 5, 0); // the middle of the curve
    EXPECT_EQ(text(divide_bezier(line, kOrigin, ray_point, true, 0.1)), "8,-8,0  8,-4,4  8,0,6  8,5,6");
    EXPECT_EQ(text(divide_bezier(line, kOrigin, ray_point, false, 0.1)), "8,5,6  8,10,6  8,16,4  8,24,0");
}

TEST(DivideBezier, TakesARayFromAnywhere)
{
    const Points line = {Point(108, 92, 0), Point(108, 100, 8), Point(108, 108, 8), Point(108, 124, 0)};
    EXPECT_EQ(text(divide_bezier(line, Point(100, 100, 0), Point(108, 105, 0), true, 0.1)),
              "108,92,0  108,96,4  108,100,6  108,105,6");
}

TEST(DivideBezier, AgreesWithThePlainOneToTheLastBit)
{
    Seeded seeded(7);
    const auto some_point = [&seeded] {
        return Point(seeded.between(-50, 50), seeded.between(-50, 50), seeded.between(-50, 50));
    };
    int compared = 0;
    for (int i = 0; i < 1000; ++i) {
        const Points segment = {some_point(), some_point(), some_point(), some_point()};
        const Point ray_origin = some_point();
        const Point ray_point = some_point();
        const bool keep_before = seeded.integer(0, 1) == 1;
        const double tolerance = seeded.octaves_between(1e-3, 100.0);
        const auto expected = plain::divide_bezier(segment, ray_origin, ray_point, keep_before, tolerance);
        if (!expected)
            continue;
        ++compared;
        const Points part = divide_bezier(segment, ray_origin, ray_point, keep_before, tolerance);
        ASSERT_TRUE(bits::same(part, *expected)) << "segment " << i << ' ' << text(segment);
    }
    EXPECT_GT(compared, 200); // the others never end
}

TEST(DivideBezier, KeepsTheAreaBoundOfOneAtTheEnds)
{
    // Half of 100 times the height: areas of 0.95 and 1.05 beside the start of the leg.
    const Points leg = get_leg_arc(1, 100.0, 100.0);
    EXPECT_EQ(text(divide_bezier(leg, kOrigin, Point(100.0, 0.019, 0.0), false, 0.01)), text(leg));
    const Points cut = divide_bezier(leg, kOrigin, Point(100.0, 0.021, 0.0), false, 0.01);
    ASSERT_EQ(cut.size(), 4U);
    EXPECT_GT(cut.front().y, 0.0);
    // A whole leg of radius 1.4 has no area of 1.0 with any ray of that length: everything is at its start.
    const Points small = get_leg_arc(1, 1.4, 1.4);
    EXPECT_EQ(text(divide_bezier(small, kOrigin, Point(0.0, 1.4, 0.0), false, 0.01)), text(small));
    EXPECT_EQ(text(divide_bezier(small, kOrigin, Point(0.0, 1.4, 0.0), true, 0.01)), "");
}

TEST(DivideBezier, KeepsLookingForAToleranceOutOfReach)
{
    const Points leg = get_leg_arc(1, 100.0, 100.0);
    EXPECT_FALSE(ends_in_child([&leg] { divide_bezier(leg, kOrigin, kRay60, true, 0.0); }));
    EXPECT_TRUE(ends_in_child([&leg] { divide_bezier(leg, kOrigin, kRay60, true, 1e-9); }));
}

TEST(ConvLineToBezier, PutsTheControlPointsOnTheEnds)
{
    EXPECT_EQ(text(vnt::conv_line_to_bezier(Point(1, 2, 3), Point(4, 5, 6))), "1,2,3  1,2,3  4,5,6  4,5,6");
}

TEST(ConvPrimToBezier, TakesEachPrimitiveByItsType)
{
    Matrix posture;
    posture.m00 = 0.5;
    const Point center(1, 2, 3);
    const vnt::PrimL line(Point(1, 2, 3), Point(4, 5, 6));
    const vnt::PrimC circle(center, 50.0, 0.25, 3.0, true, posture);
    const vnt::PrimE ellipse(center, 50.0, 20.0, 0.25, 3.0, true, posture);
    const Points control = {Point(1, 0, 0), Point(2, 0, 0), Point(3, 0, 0), Point(4, 0, 0), Point(5, 0, 0)};
    const vnt::PrimF free(control, true);
    EXPECT_EQ(text(vnt::conv_prim_to_bezier(&line, 1.0)), "1,2,3  1,2,3  4,5,6  4,5,6");
    EXPECT_TRUE(bits::same(vnt::conv_prim_to_bezier(&circle, 0.25),
                           vnt::conv_arc_to_bezier(center, 50.0, 50.0, 0.25, 3.0, posture, 0.25)));
    EXPECT_TRUE(bits::same(vnt::conv_prim_to_bezier(&ellipse, 0.25),
                           vnt::conv_arc_to_bezier(center, 50.0, 20.0, 0.25, 3.0, posture, 0.25)));
    EXPECT_EQ(text(vnt::conv_prim_to_bezier(&free, 1.0)), text(control));
}

TEST(ConvPrimToBezier, IgnoresTheFlags)
{
    const vnt::PrimC arc(kOrigin, 50.0, 0.25, 3.0, true, Matrix());
    const vnt::PrimC circle(kOrigin, 50.0, 0.25, 3.0, false, Matrix());
    EXPECT_EQ(text(vnt::conv_prim_to_bezier(&circle, 1.0)), text(vnt::conv_prim_to_bezier(&arc, 1.0)));
    const vnt::PrimF open({Point(1, 0, 0)}, false);
    EXPECT_EQ(text(vnt::conv_prim_to_bezier(&open, 1.0)), "1,0,0");
}

TEST(ConvPrimToBezier, OfAnUnknownTypeIsEmpty)
{
    const vnt::PrimInfo unknown(static_cast<vnt::PrimType>(7));
    EXPECT_TRUE(vnt::conv_prim_to_bezier(&unknown, 1.0).empty());
}

TEST(ConvPrimToBezier, OfNothingOrOfAnotherTypesPrimitiveIsEmpty)
{
    EXPECT_TRUE(vnt::conv_prim_to_bezier(nullptr, 1.0).empty());
    vnt::PrimF free({Point(1, 0, 0)}, false);
    free.type = vnt::PRIM_CIRCLE;
    EXPECT_TRUE(vnt::conv_prim_to_bezier(&free, 1.0).empty());
}

} // namespace
