#include "Source/geometry/bezier.h"

#include "tests/geometry/bits.h"
#include "tests/geometry/cpu_limit.h"
#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <list>
#include <string>
#include <tuple>

namespace {

using vnt::Matrix;
using vnt::Point;
using Points = std::list<Point>;

constexpr double kPi = 3.141592653589793;
constexpr double kKappa = 0.5522847498307936;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

const Point kOrigin(0.0, 0.0, 0.0);

std::string text(const Points& points) { return bits::text_of(points); }

Points circle_arc(double radius, double start, double end, double tolerance = 1e-6)
{
    return vnt::conv_arc_to_bezier(kOrigin, radius, radius, start, end, Matrix(), tolerance);
}

double distance_from_line(const Point& p, const Point& direction)
{
    return std::abs(p.x * direction.y - p.y * direction.x) / std::hypot(direction.x, direction.y);
}

struct PiecesCase {
    const char* name;
    double start;
    double end;
    std::size_t points; // 4 per leg
};
const PiecesCase kPieces[] = {
    {"WholeTurnIsFourUncutQuarters",              0.0,               2 * kPi,           16},
    {"WithinOneQuadrantIsOneLegCutTwice",         0.2,               0.5,               4 },
    {"EqualAnglesDrawNothing",                    1.0,               1.0,               0 },
    {"ReversedAnglesDrawNothing",                 2.0,               1.0,               0 },
    {"EndOnAnAxisAddsNoEmptyLeg",                 -kPi / 2,          kPi / 2,           8 },
    {"EndBehindTheYAxisIsInTheSecondQuadrant",    0.1,               kPi / 2 + 0.001,   8 },
    {"EndOnTheYAxisIsInTheFirstQuadrant",         0.1,               kPi / 2,           4 },
    {"EndBeforeTheYAxisIsInTheFirstQuadrant",     0.1,               kPi / 2 - 0.001,   4 },
    {"StartBeforeTheYAxisIsInTheFirstQuadrant",   kPi / 2 - 0.001,   2.0,               8 },
    {"StartOnTheYAxisIsInTheSecondQuadrant",      kPi / 2,           2.0,               4 },
    {"StartBehindTheYAxisIsInTheSecondQuadrant",  kPi / 2 + 0.001,   2.0,               4 },
    {"EndBehindTheNegativeXAxis",                 0.1,               kPi + 0.001,       12},
    {"EndOnTheNegativeXAxis",                     0.1,               kPi,               8 },
    {"EndBeforeTheNegativeXAxis",                 0.1,               kPi - 0.001,       8 },
    {"StartBehindTheNegativeXAxis",               kPi + 0.001,       4.0,               4 },
    {"StartBeforeTheNegativeXAxis",               kPi - 0.001,       4.0,               8 },
    {"EndBehindTheNegativeYAxis",                 0.1,               1.5 * kPi + 0.001, 16},
    {"EndOnTheNegativeYAxis",                     0.1,               1.5 * kPi,         12},
    {"EndBeforeTheNegativeYAxis",                 0.1,               1.5 * kPi - 0.001, 12},
    {"StartBehindTheNegativeYAxis",               1.5 * kPi + 0.001, 5.0,               4 },
    {"StartBeforeTheNegativeYAxis",               1.5 * kPi - 0.001, 5.0,               8 },
    {"EndBehindTheXAxisIsInTheNextTurn",          0.1,               2 * kPi + 0.001,   20},
    {"EndOnTheXAxisIsInTheSameTurn",              0.1,               2 * kPi,           16},
    {"EndBeforeTheXAxisIsInTheSameTurn",          0.1,               2 * kPi - 0.001,   16},
    {"StartOnTheXAxisOfTheNextTurn",              2 * kPi,           7.0,               4 },
    {"StartBeforeTheXAxisOfTheNextTurn",          2 * kPi - 0.001,   7.0,               8 },
    {"WholeTurnFromWithinAQuadrantEntersItTwice", 0.5,               0.5 + 2 * kPi,     20},
    {"WholeTurnOfNegativeAngles",                 -2 * kPi,          0.0,               16},
    {"NegativeAnglesWithinOneQuadrant",           -0.5,              -0.2,              4 },
    {"NegativeAnglesPastATurn",                   -7.0,              -0.2,              20},
    {"FromANegativeToAPositiveAngle",             -0.5,              0.5,               8 },
    {"TwoTurns",                                  0.0,               4 * kPi,           32},
    {"ThreeTurnsAndAHalf",                        -2 * kPi,          5 * kPi,           56},
    {"ManyTurnsFromFarAway",                      -100 * kPi,        -90 * kPi,         80},
};
class ArcPieces : public testing::TestWithParam<PiecesCase> {};
TEST_P(ArcPieces, FollowTheAngles)
{
    EXPECT_EQ(circle_arc(100.0, GetParam().start, GetParam().end).size(), GetParam().points);
}
INSTANTIATE_TEST_SUITE_P(, ArcPieces, testing::ValuesIn(kPieces),
                         [](const auto& row) { return row.param.name; });

// Start in the middle of one quadrant, end a little further on in another one, this turn or the next, counted
// from turn -2, 0 and 3.
class QuadrantPairs : public testing::TestWithParam<std::tuple<int, int, int>> {};
TEST_P(QuadrantPairs, DrawEveryQuadrantFromStartToEnd)
{
    const auto [turn, first, last] = GetParam();
    const int quarters = last >= first ? last - first : last - first + 4;
    const double start = 2 * kPi * turn + (first - 0.5) * kPi / 2;
    const double end = start + quarters * kPi / 2 + 0.25;
    const Points arc = circle_arc(100.0, start, end);
    ASSERT_EQ(arc.size(), 4U * static_cast<std::size_t>(quarters + 1));
    const double bound = 2 * 1e-6 / 100.0 + 1e-12; // the tolerance's, and the angles' rounding
    const Point from(std::cos(start), std::sin(start), 0.0);
    const Point to(std::cos(end), std::sin(end), 0.0);
    EXPECT_LT(distance_from_line(arc.front(), from), bound);
    EXPECT_GT(arc.front().x * from.x + arc.front().y * from.y, 99.0);
    EXPECT_LT(distance_from_line(arc.back(), to), bound);
    EXPECT_GT(arc.back().x * to.x + arc.back().y * to.y, 99.0);
}
std::string name_of_pair(const testing::TestParamInfo<std::tuple<int, int, int>>& row)
{
    const auto [turn, first, last] = row.param;
    return std::string(turn < 0 ? "TurnMinus" : "Turn") + std::to_string(std::abs(turn)) + "From" +
           std::to_string(first) + "To" + std::to_string(last);
}
INSTANTIATE_TEST_SUITE_P(, QuadrantPairs,
                         testing::Combine(testing::Values(-2, 0, 3), testing::Range(1, 5),
                                          testing::Range(1, 5)),
                         name_of_pair);

TEST(ConvArcToBezier, WholeCircleStartsOnTheXAxisAndStaysUncut)
{
    const Points circle = vnt::conv_arc_to_bezier(Point(10, 20, 30), 4.0, 4.0, 0.0, 2 * kPi, Matrix(), -1.0);
    const double arm = 4.0 * kKappa;
    const Points expected = {
        Point(14, 20, 30), Point(14, 20 + arm, 30), Point(10 + arm, 24, 30), Point(10, 24, 30),
        Point(10, 24, 30), Point(10 - arm, 24, 30), Point(6, 20 + arm, 30),  Point(6, 20, 30),
        Point(6, 20, 30),  Point(6, 20 - arm, 30),  Point(10 - arm, 16, 30), Point(10, 16, 30),
        Point(10, 16, 30), Point(10 + arm, 16, 30), Point(14, 20 - arm, 30), Point(14, 20, 30),
    };
    EXPECT_TRUE(bits::same(circle, expected)) << text(circle);
}

// Exact in every product: a wrong order of the sums or a wrong element shows.
TEST(ConvArcToBezier, PlacesByThePostureAndThenTheCentre)
{
    Matrix posture;
    for (std::size_t i = 0; i < Matrix::kElements; ++i)
        posture[i] = static_cast<double>(i + 1);
    const Points arc = vnt::conv_arc_to_bezier(Point(1000, 2000, 3000), 8.0, 4.0, 0.0, kPi / 2, posture, 1.0);
    ASSERT_EQ(arc.size(), 4U);
    EXPECT_EQ(text({arc.front(), arc.back()}), "1008,2040,3072  1008,2024,3040");
}

// Doubles are 2 apart at 1e16: 1 and 0.99 are lost there one by one, and not together.
TEST(ConvArcToBezier, AddsTheCentreLast)
{
    Matrix posture;
    posture.m01 = 0.99 / kKappa;
    const Points arc = vnt::conv_arc_to_bezier(Point(1e16, 0, 0), 1.0, 1.0, 0.0, kPi / 2, posture, 1.0);
    ASSERT_EQ(arc.size(), 4U);
    EXPECT_EQ(std::next(arc.begin())->x, 1e16 + 2.0);
}

// sin 2π is not quite 0 in doubles, and on so large a circle the difference is an area above 1.
TEST(ConvArcToBezier, EndsAWholeTurnInTheTurnBeforeHoweverLargeTheCircle)
{
    EXPECT_EQ(circle_arc(1e9, 0.0, 2 * kPi, -1.0).size(), 16U);
    EXPECT_EQ(circle_arc(1e9, 0.0, 4 * kPi, -1.0).size(), 32U);
}

TEST(ConvArcToBezier, KeepsTheTranslationColumnUnapplied)
{
    Matrix moved;
    moved.m03 = 100.0;
    moved.m13 = 200.0;
    moved.m23 = 300.0;
    const Point center(1, 2, 3);
    EXPECT_TRUE(bits::same(vnt::conv_arc_to_bezier(center, 50.0, 20.0, 0.25, 3.0, moved, 1.0),
                           vnt::conv_arc_to_bezier(center, 50.0, 20.0, 0.25, 3.0, Matrix(), 1.0)));
    EXPECT_EQ(vnt::PrimC(center, 50.0, 0.0, 3.0, true, moved).getEvaluateAt(0.0).x, 151.0);
}

TEST(ConvArcToBezier, KeepsPolarAnglesOnAnEllipse)
{
    // On the ellipse x²/200² + y²/50² = 1 the polar angle 45° is the point with x = y = 200/√17.
    const Points arc = vnt::conv_arc_to_bezier(kOrigin, 200.0, 50.0, 0.0, kPi / 4, Matrix(), 1e-6);
    ASSERT_EQ(arc.size(), 4U);
    const double bound = 2.73e-4 * 200.0; // of the leg
    EXPECT_NEAR(arc.back().x, 200.0 / std::sqrt(17.0), bound);
    EXPECT_NEAR(arc.back().y, arc.back().x, 1e-6);
    // The ray's length is radius_x: the same end of a leg is on the ray of a small one and not of a large
    // one.
    EXPECT_EQ(vnt::conv_arc_to_bezier(kOrigin, 1.0, 1.5, 0.0, 1.0, Matrix(), 1e-6).size(), 0U);
    EXPECT_EQ(vnt::conv_arc_to_bezier(kOrigin, 100.0, 1.5, 0.0, 1.0, Matrix(), 1e-6).size(), 4U);
}

TEST(ConvArcToBezier, KeepsTheFirstLegWholeAndDropsTheLastBelowRootTwo)
{
    const Points arc = circle_arc(1.4, 0.5, 3.5);
    ASSERT_EQ(arc.size(), 8U);
    EXPECT_EQ(text({arc.front(), arc.back()}), "1.3999999999999999,0,0  -1.3999999999999999,0,0");
    EXPECT_EQ(circle_arc(0.0, 0.5, 3.5).size(), 8U);
}

// Just below some whole turns an angle's turn number rounds up, and what is left of the angle is below 0.
TEST(ConvArcToBezier, KeepsAFirstQuadrantOfZeroAsALegOfItsOwn)
{
    const double start = std::nextafter(-19 * 6.283185307179586, -200.0);
    const Points arc = circle_arc(100.0, start, start + 1.0);
    ASSERT_EQ(arc.size(), 8U);
    const Points leg = get_leg_arc(1, 100.0, 100.0);
    EXPECT_EQ(text({arc.begin(), std::next(arc.begin(), 4)}), text(leg));
    EXPECT_EQ(text({*std::next(arc.begin(), 4)}), "100,0,0");
}

// Just below 0 what is left of the angle rounds to a whole turn.
TEST(ConvArcToBezier, KeepsAFirstQuadrantOfFiveAsNoLeg)
{
    const Points arc = circle_arc(100.0, -1e-17, 1.0);
    ASSERT_EQ(arc.size(), 4U);
    EXPECT_EQ(text({arc.front()}), "100,0,0");
    EXPECT_TRUE(circle_arc(100.0, -1e-17, -5e-18).empty());
}

struct BadArcCase {
    const char* name;
    double start;
    double end;
};
const BadArcCase kBadArcs[] = {
    {"StartIsNaN",                        kNaN,                    1.0                    },
    {"EndIsNaN",                          0.0,                     kNaN                   },
    {"StartIsInfinite",                   -kInfinity,              1.0                    },
    {"EndIsInfinite",                     0.0,                     kInfinity              },
    {"BothAreInfinite",                   -kInfinity,              kInfinity              },
    {"TurnsBeforeTheFirstNumber",         -1e300,                  -1e299                 },
    {"TurnsPastTheLastNumber",            1e299,                   1e300                  },
    {"StartsBeforeTheFirstNumber",        -2147483648.5 * 2 * kPi, 0.0                    },
    {"EndsPastTheLastNumber",             0.0,                     2147483648.5 * 2 * kPi },
    {"StartsAndEndsPastTheLastNumber",    3e9 * 2 * kPi,           3e9 * 2 * kPi + 1.0    },
    {"StartsAndEndsBeforeTheFirstNumber", -3e9 * 2 * kPi - 1.0,    -3e9 * 2 * kPi         },
    {"EndsWhereTheFirstNumberStarts",     -2147483649.0 * 2 * kPi, -2147483648.0 * 2 * kPi},
};
class BadArcs : public testing::TestWithParam<BadArcCase> {};
TEST_P(BadArcs, AreEmpty) { EXPECT_TRUE(circle_arc(100.0, GetParam().start, GetParam().end).empty()); }
INSTANTIATE_TEST_SUITE_P(, BadArcs, testing::ValuesIn(kBadArcs),
                         [](const auto& row) { return row.param.name; });

TEST(ConvArcToBezier, DrawsWithinTheLastTurnNumbers)
{
    const double turns[] = {-2147483648.0, 2147483647.0};
    for (const double turn : turns)
        EXPECT_EQ(circle_arc(100.0, (turn + 0.03) * 2 * kPi, (turn + 0.3) * 2 * kPi).size(), 8U) << turn;
}

TEST(ConvArcToBezier, GivesNumbersThatAreNotFiniteWhereItIsGivenSome)
{
    const Points tall = vnt::conv_arc_to_bezier(kOrigin, 10.0, kInfinity, 0.0, 2 * kPi, Matrix(), 1.0);
    ASSERT_EQ(tall.size(), 16U);
    EXPECT_EQ(std::next(tall.begin())->y, kInfinity);
    Matrix posture;
    posture.m02 = kInfinity;
    const Points arc = vnt::conv_arc_to_bezier(kOrigin, 10.0, 10.0, 0.0, 2 * kPi, posture, 1.0);
    ASSERT_EQ(arc.size(), 16U);
    EXPECT_TRUE(std::isnan(arc.front().x));
    EXPECT_EQ(arc.front().y, 0.0);
    const Points far =
        vnt::conv_arc_to_bezier(Point(kInfinity, 0, kNaN), 10.0, 10.0, 0.0, 2 * kPi, Matrix(), 1.0);
    ASSERT_EQ(far.size(), 16U);
    EXPECT_EQ(far.front().x, kInfinity);
    EXPECT_TRUE(std::isnan(far.front().z));
}

struct EndlessCase {
    const char* name;
    double radius;
    double end;
    double tolerance;
    bool ends;
};
const EndlessCase kEndless[] = {
    {"KeepsLookingForATolerancePastPrecision",     100.0,     0.7,     1e-300, false},
    {"KeepsLookingForAToleranceOfZero",            100.0,     1.0,     0.0,    false},
    {"KeepsLookingForANegativeTolerance",          100.0,     1.0,     -1.0,   false},
    {"KeepsLookingForAToleranceThatIsNaN",         100.0,     1.0,     kNaN,   false},
    {"KeepsLookingForARadiusThatIsNaN",            kNaN,      1.0,     1.0,    false},
    {"KeepsLookingForAnInfiniteRadius",            kInfinity, 1.0,     1.0,    false},
    {"KeepsLookingOnAWholeCircleOfInfiniteRadius", kInfinity, 2 * kPi, 1.0,    false},
    {"EndsAtATinyToleranceThatCanBeReached",       100.0,     1.0,     1e-9,   true },
    {"EndsAtAnyToleranceWithoutACutInsideALeg",    100.0,     kPi / 2, -1.0,   true },
};
class EndlessBisection : public testing::TestWithParam<EndlessCase> {};
TEST_P(EndlessBisection, TakesAllTheTimeItGets)
{
    const EndlessCase& row = GetParam();
    EXPECT_EQ(ends_in_child([&row] { circle_arc(row.radius, 0.0, row.end, row.tolerance); }), row.ends);
}
INSTANTIATE_TEST_SUITE_P(, EndlessBisection, testing::ValuesIn(kEndless),
                         [](const auto& row) { return row.param.name; });

// The true ellipse, the rays and the joints, without a look at how arcs are made.
TEST(ConvArcToBezier, LiesOnTheEllipseBetweenItsRays)
{
    Seeded seeded(11);
    int drawn = 0;
    for (int i = 0; i < 5000; ++i) {
        const double radius_x = seeded.octaves_between(2.0, 5000.0);
        const double radius_y = seeded.octaves_between(2.0, 5000.0);
        const double start = seeded.between(-20.0, 20.0);
        const double end = start + seeded.between(0.0, 8.0);
        const double tolerance = seeded.octaves_between(1e-3, 30.0);
        SCOPED_TRACE(testing::Message()
                     << radius_x << ' ' << radius_y << ' ' << start << ' ' << end << ' ' << tolerance);
        const Points arc =
            vnt::conv_arc_to_bezier(kOrigin, radius_x, radius_y, start, end, Matrix(), tolerance);
        if (arc.empty())
            continue;
        ++drawn;
        const double bound = 2 * std::max(tolerance, 1.0) / radius_x * (1 + 1e-9);
        ASSERT_LE(distance_from_line(arc.front(), Point(std::cos(start), std::sin(start), 0)), bound);
        ASSERT_LE(distance_from_line(arc.back(), Point(std::cos(end), std::sin(end), 0)), bound);
        const Point* joint = nullptr;
        for (auto it = arc.begin(); it != arc.end();) {
            const auto next = std::next(it, 4);
            const Points segment(it, next);
            ASSERT_TRUE(joint == nullptr || points_distance(*joint, segment.front()) == 0.0);
            joint = &*std::prev(next);
            for (int k = 0; k <= 8; ++k) {
                const Point p = de_casteljau(segment, k / 8.0).back().front();
                const double rho = std::hypot(p.x / radius_x, p.y / radius_y);
                ASSERT_GE(rho, 1.0 - 1e-14);
                ASSERT_LE(rho, 1.0 + 2.73e-4);
            }
            it = next;
        }
    }
    EXPECT_GT(drawn, 4900); // the others are short arcs of a small radius, of an area below 1
}

} // namespace
