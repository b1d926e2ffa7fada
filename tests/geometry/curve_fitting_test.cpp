#include "Source/geometry/curve_fitting.h"

#include "Source/geometry/bezier.h"
#include "tests/geometry/bits.h"
#include "tests/geometry/seeded.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <list>
#include <string>
#include <vector>

namespace {

using vnt::Point;
using Points = std::list<Point>;
using Segments = std::list<Points>;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string text(const Points& points) { return bits::text_of(points); }

std::string text(const Segments& segments)
{
    std::string all;
    for (const Points& segment : segments)
        all += (all.empty() ? "" : " | ") + text(segment);
    return all;
}

Points along_x(std::initializer_list<double> xs)
{
    Points points;
    for (const double x : xs)
        points.emplace_back(x, 0.0, 0.0);
    return points;
}

Segments split(const Points& cubic, double t)
{
    const auto levels = de_casteljau(cubic, t);
    Segments halves(2);
    for (const auto& level : levels) {
        halves.front().push_back(level.front());
        halves.back().push_front(level.back());
    }
    return halves;
}

struct ThinningCase {
    const char* name;
    Points points;
    double min_distance;
    Points kept;
};
const ThinningCase kThinnings[] = {
    {"NoPoints",                              {},                               1.0,  {}                              },
    {"OnePointStays",                         along_x({3}),                     1.0,  along_x({3})                    },
    {"ExactlyTheDistanceStays",               along_x({0, 1, 2}),               1.0,  along_x({0, 1, 2})              },
    {"CloserGoes",                            along_x({0, 0.9, 1.8, 2.7}),      1.0,  along_x({0, 1.8})               },
    {"DistanceCountsFromTheLastKept",         along_x({0, 0.5, 1.0, 1.5, 2.0}), 1.0,  along_x({0, 1, 2})              },
    {"DistanceCountsTheThirdCoordinate",
     {Point(0, 0, 0), Point(0, 0, 2), Point(0, 0, 2.5)},
     1.0,                                                                             {Point(0, 0, 0), Point(0, 0, 2)}},
    {"CoincidentPointsGo",                    along_x({0, 0, 0, 5, 5}),         1.0,  along_x({0, 5})                 },
    {"CoincidentPointsStayAtZero",            along_x({0, 0, 5, 5}),            0.0,  along_x({0, 0, 5, 5})           },
    {"AllStayAtANegativeDistance",            along_x({0, 0, 5}),               -1.0, along_x({0, 0, 5})              },
    {"OnlyTheFirstStaysAtADistanceThatIsNaN", along_x({0, 5, 10}),              kNaN, along_x({0})                    },
    {"APointThatIsNaNGoes",                   along_x({0, kNaN, 5}),            1.0,  along_x({0, 5})                 },
};
class Thinning : public testing::TestWithParam<ThinningCase> {};
TEST_P(Thinning, KeepsWhatIsFarEnoughFromTheLastKept)
{
    EXPECT_EQ(text(simplification_points(GetParam().points, GetParam().min_distance)), text(GetParam().kept));
}
INSTANTIATE_TEST_SUITE_P(, Thinning, testing::ValuesIn(kThinnings),
                         [](const auto& row) { return row.param.name; });

TEST(SimplificationPoints, KeepsDroppingACloseLastPoint)
{
    EXPECT_EQ(text(simplification_points(along_x({0, 1, 2, 2.5}), 1.0)), "0,0,0  1,0,0  2,0,0");
    const Points curve = vnt::conv_free_to_bezier(along_x({0, 10, 20, 20.5}), 1.0);
    EXPECT_EQ(text({curve.back()}), "20,0,0");
}

TEST(SimplificationBezier, OfNothingIsNothing) { EXPECT_TRUE(simplification_bezier({}, 1.0).empty()); }

TEST(SimplificationBezier, OfOneSegmentIsThatSegment)
{
    EXPECT_EQ(text(simplification_bezier({along_x({0, 1, 2, 3})}, 1.0)), "0,0,0  1,0,0  2,0,0  3,0,0");
    EXPECT_EQ(text(simplification_bezier({along_x({0, 1, 2})}, 1.0)),
              "0,0,0  1,0,0  2,0,0"); // even of three points
}

TEST(SimplificationBezier, MergesIntoWhatHasComeBefore)
{
    // Three thirds of one cubic, and one that starts elsewhere.
    const Points cubic = {Point(0, 0, 0), Point(0, 9, 0), Point(9, 9, 3), Point(9, 0, 0)};
    const Segments first = split(cubic, 0.25);
    const Segments second = split(first.back(), 0.5);
    const Points far = {Point(9, 0, 0), Point(20, 0, 0), Point(20, 5, 0), Point(30, 5, 0)};
    const Segments merged = simplification_bezier({first.front(), second.front(), second.back(), far}, 1e-9);
    ASSERT_EQ(merged.size(), 2U);
    auto got = merged.front().begin();
    for (const Point& p : cubic)
        EXPECT_LT(points_distance(*got++, p), 1e-12);
    EXPECT_EQ(text(merged.back()), text(far));
}

TEST(SimplificationBezier, GoesOnFromTheSegmentThatDidNotMerge)
{
    const Segments corner = {
        along_x({0,   1,       2, 3 }
        ),
        { Point(3, 0, 0), Point(3, 1, 0), Point(3, 2, 0), Point(3, 3, 0)},
        { Point(3, 3, 0), Point(3, 4, 0), Point(3, 5, 0), Point(3, 6, 0)}
    };
    EXPECT_EQ(text(simplification_bezier(corner, 1e-9)),
              "0,0,0  1,0,0  2,0,0  3,0,0 | 3,0,0  3,2,0  3,4,0  3,6,0");
}

TEST(SimplificationBezier, LeavesSegmentsOfOtherSizesAsTheyAre)
{
    const Segments odd = {along_x({0, 1, 2}), along_x({2, 3, 4, 5}), {}, along_x({5, 6, 7, 8})};
    EXPECT_EQ(text(simplification_bezier(odd, 100.0)), text(odd));
}

TEST(SimplificationCp, OfAnythingButFourPointsChangesNothing)
{
    const Points four = along_x({2, 3, 4, 5});
    for (const Points& other : {Points(), along_x({0, 1, 2}), along_x({0, 1, 2, 3, 4})}) {
        Points current = other;
        EXPECT_FALSE(simplification_cp(current, four, 100.0));
        EXPECT_EQ(text(current), text(other));
        current = four;
        EXPECT_FALSE(simplification_cp(current, other, 100.0));
        EXPECT_EQ(text(current), text(four));
    }
}

TEST(SimplificationCp, MergesTheHalvesOfACubicExactly)
{
    const Points cubic = {Point(0, 0, 8), Point(0, 8, 0), Point(8, 8, 0), Point(8, 0, 16)};
    Segments halves = split(cubic, 0.5);
    ASSERT_TRUE(simplification_cp(halves.front(), halves.back(), 0.0));
    EXPECT_EQ(text(halves.front()), text(cubic));
}

TEST(SimplificationCp, MergesASplitCubicBackIntoItself)
{
    Seeded seeded(3);
    for (int i = 0; i < 2000; ++i) {
        Points cubic;
        for (int k = 0; k < 4; ++k)
            cubic.emplace_back(seeded.between(-100, 100), seeded.between(-100, 100),
                               seeded.between(-100, 100));
        const double t = seeded.between(0.1, 0.9);
        Segments parts = split(cubic, t);
        ASSERT_TRUE(simplification_cp(parts.front(), parts.back(), 1e-9)) << i << ' ' << text(cubic);
        auto got = parts.front().begin();
        for (const Point& p : cubic)
            EXPECT_LT(points_distance(*got++, p), 1e-9) << i; // rounding, enlarged by 1/t and 1/(1-t)
    }
}

// The weights to the last bit: quotients such as (A1 - (1 - t) A0) / t would round otherwise.
TEST(SimplificationCp, ProlongsTheOuterArmsByWeightsInTheParameter)
{
    Seeded seeded(13);
    for (int i = 0; i < 2000; ++i) {
        Points cubic;
        for (int k = 0; k < 4; ++k)
            cubic.emplace_back(seeded.between(-100, 100), seeded.between(-100, 100),
                               seeded.between(-100, 100));
        const Segments parts = split(cubic, seeded.between(0.1, 0.9));
        const std::vector<Point> a(parts.front().begin(), parts.front().end());
        const std::vector<Point> b(parts.back().begin(), parts.back().end());
        const double t = points_distance(a[2], a[3]) / points_distance(a[2], b[1]);
        const Points expected = {a[0], internal_division(a[0], a[1], 1 / t, -(1 - t) / t),
                                 internal_division(b[2], b[3], -t / (1 - t), 1 / (1 - t)), b[3]};
        Points current = parts.front();
        ASSERT_TRUE(simplification_cp(current, parts.back(), 1e-6)) << i;
        ASSERT_TRUE(bits::same(current, expected)) << i << '\n' << text(current) << '\n' << text(expected);
    }
}

// Pairs with t = 1/2, so that everything compared is a whole number.
struct LimitCase {
    const char* name;
    Points current;
    Points next;
    double off; // the largest of the three distances
};
const LimitCase kLimits[] = {
    {"OfTheLastControlPoint",
     {Point(-150, 200, 0), Point(-100, 0, 0), Point(0, 0, 0), Point(125, 0, 0)},
     {Point(125, 0, 0), Point(250, 0, 0), Point(400, -60, 0), Point(550, -440, 0)},
     30.0 },
    {"OfTheJoint",
     {Point(-150, 200, 0), Point(-100, 0, 0), Point(0, 0, 0), Point(35, 120, 0)},
     {Point(35, 120, 0), Point(250, 0, 0), Point(400, 0, 0), Point(550, -200, 0)},
     150.0},
    {"OfTheNextFirstControlPoint",
     {Point(-150, 200, 0), Point(-100, -60, 0), Point(0, 0, 0), Point(125, 0, 0)},
     {Point(125, 0, 0), Point(250, 0, 0), Point(400, 0, 0), Point(550, -440, 0)},
     30.0 },
};
class MergeLimits : public testing::TestWithParam<LimitCase> {};
TEST_P(MergeLimits, ADistanceOfTheTolerancePasses)
{
    Points current = GetParam().current;
    EXPECT_TRUE(simplification_cp(current, GetParam().next, GetParam().off));
    EXPECT_EQ(text({current.front(), current.back()}),
              text({GetParam().current.front(), GetParam().next.back()}));
}
TEST_P(MergeLimits, ALargerOneChangesNothing)
{
    Points current = GetParam().current;
    EXPECT_FALSE(simplification_cp(current, GetParam().next, std::nextafter(GetParam().off, 0.0)));
    EXPECT_EQ(text(current), text(GetParam().current));
}
INSTANTIATE_TEST_SUITE_P(, MergeLimits, testing::ValuesIn(kLimits),
                         [](const auto& row) { return row.param.name; });

TEST(SimplificationCp, KeepsAcceptingAMergeOfNaN)
{
    // A2, A3 and B1 coincide: t is 0 / 0, and so is all that is compared.
    Points current = along_x({0, 1, 2, 2});
    ASSERT_TRUE(simplification_cp(current, along_x({2, 2, 3, 4}), 1e-9));
    ASSERT_EQ(current.size(), 4U);
    EXPECT_EQ(text({current.front(), current.back()}), "0,0,0  4,0,0");
    EXPECT_TRUE(std::isnan(std::next(current.begin())->x));
    EXPECT_TRUE(std::isnan(std::next(current.begin(), 2)->x));
    // t = 0 and t = 1 divide by zero as well.
    current = along_x({0, 1, 2, 2});
    EXPECT_TRUE(simplification_cp(current, along_x({2, 3, 4, 5}), 1e-9));
    current = along_x({0, 1, 2, 3});
    EXPECT_TRUE(simplification_cp(current, along_x({3, 3, 4, 5}), 1e-9));
}

struct FittingCase {
    const char* name;
    Points points;
    double tolerance;
    const char* curve;
};
const FittingCase kFittings[] = {
    {"NoPointsAreNoCurve",                                      {},                    1.0, ""                                                                                         },
    {"OnePointIsASegmentOfFourEqualPoints",                     along_x({3}),          1.0, "3,0,0  3,0,0  3,0,0  3,0,0"                                                               },
    {"TwoSamplesAreAStraightSegment",                           along_x({0, 8}),       1.0, "0,0,0  0,0,0  8,0,0  8,0,0"                                                               },
    {"TwoSamplesAfterThinning",                                 along_x({0, 3, 8, 9}), 1.0, "0,0,0  0,0,0  8,0,0  8,0,0"                                                               },
    {"AllPointsTooCloseAreOnePoint",                            along_x({3, 4, 5}),    1.0, "3,0,0  3,0,0  3,0,0  3,0,0"                                                               },
    {"APairWithinTheToleranceMerges",                           along_x({0, 1, 2}),    0.2, "0,0,0  0,0,0  2,0,0  2,0,0"                                                               },
    {"AnInteriorSampleHasATangentAlongTheChordOfItsNeighbours",
     {Point(0, 0, 0), Point(3, 6, 0), Point(6, 0, 0)},                                 // chords of √45, tangent (1, 0, 0)
     0.001,                           "0,0,0  0,0,0  0.76393202250021019,6,0  3,6,0  3,6,0  5.2360679774997898,6,0  6,0,0  6,0,0"},
};
class Fitting : public testing::TestWithParam<FittingCase> {};
TEST_P(Fitting, BuildsSegmentsOfFourPoints)
{
    EXPECT_EQ(text(vnt::conv_free_to_bezier(GetParam().points, GetParam().tolerance)), GetParam().curve);
}
INSTANTIATE_TEST_SUITE_P(, Fitting, testing::ValuesIn(kFittings),
                         [](const auto& row) { return row.param.name; });

TEST(ConvFreeToBezier, StaysTwoSegmentsBelowASixth)
{
    const Points curve = vnt::conv_free_to_bezier(along_x({0, 1, 2}), 0.1);
    const double xs[] = {0.0, 0.0, 1.0 - 1.0 / 3.0, 1.0, 1.0, 1.0 + 1.0 / 3.0, 2.0, 2.0};
    ASSERT_EQ(curve.size(), 8U);
    auto it = curve.begin();
    for (const double x : xs)
        EXPECT_EQ((it++)->x, x);
}

// With a reciprocal of the length every coordinate of this tangent has another last bit.
TEST(ConvFreeToBezier, DividesTheTangentCoordinateByCoordinate)
{
    const double length = std::sqrt(10.0 * 10.0 + 10.0 * 10.0 + 19.0 * 19.0);
    ASSERT_NE(10.0 / length, 10.0 * (1.0 / length));
    ASSERT_NE(19.0 / length, 19.0 * (1.0 / length));
    const double arm_in = 3.0 / 3.0; // from (0, 0, 0) to (1, 2, 2)
    const double arm_out = std::sqrt(9.0 * 9.0 + 8.0 * 8.0 + 17.0 * 17.0) / 3.0;
    const Points curve = vnt::conv_free_to_bezier({Point(0, 0, 0), Point(1, 2, 2), Point(10, 10, 19)}, 0.01);
    ASSERT_EQ(curve.size(), 8U);
    const Point& arrival = *std::next(curve.begin(), 2);
    const Point& departure = *std::next(curve.begin(), 5);
    EXPECT_EQ(arrival.x, 1.0 - arm_in * (10.0 / length));
    EXPECT_EQ(arrival.z, 2.0 - arm_in * (19.0 / length));
    EXPECT_EQ(departure.x, 1.0 + arm_out * (10.0 / length));
    EXPECT_EQ(departure.z, 2.0 + arm_out * (19.0 / length));
}

TEST(ConvFreeToBezier, TakesSamplesThatCoincideWithTheLastButOne)
{
    // Out and back: the chord of the neighbours is 0, the tangent 0 / 0, and the NaN that comes of it merges.
    const Points curve = vnt::conv_free_to_bezier(along_x({0, 10, 0}), 1.0);
    ASSERT_EQ(curve.size(), 4U);
    EXPECT_EQ(text({curve.front(), curve.back()}), "0,0,0  0,0,0");
    EXPECT_TRUE(std::isnan(std::next(curve.begin())->x));
}

TEST(ConvFreeToBezier, TakesAToleranceOfZeroAndNumbersThatAreNotFinite)
{
    EXPECT_EQ(vnt::conv_free_to_bezier(along_x({0, 1, 1, 3}), 0.0).size() % 4, 0U);
    EXPECT_EQ(vnt::conv_free_to_bezier(along_x({0, 1, 3}), kNaN).size(), 4U);
    EXPECT_EQ(vnt::conv_free_to_bezier(along_x({0, INFINITY, 3, -INFINITY}), 1.0).size() % 4, 0U);
}

// The whole from its parts: thinned, one cubic per span, merged, each through the functions on their own.
TEST(ConvFreeToBezier, IsItsStepsOneAfterTheOther)
{
    Seeded seeded(9);
    Points line;
    double x = 0.0;
    double y = 0.0;
    for (int i = 0; i < 3000; ++i) {
        x += std::cos(i * 0.01) + seeded.between(-0.3, 0.3);
        y += std::sin(i * 0.013) + seeded.between(-0.3, 0.3);
        line.emplace_back(x, y, 0.25 * i);
    }
    for (const double tolerance : {0.0, 0.01, 0.3, 2.0, 40.0}) {
        const Points samples = simplification_points(line, tolerance * 5.0);
        Segments segments;
        Points current = {samples.front(), samples.front()};
        auto prev = samples.begin();
        for (auto mid = std::next(prev); mid != samples.end() && std::next(mid) != samples.end();
             ++mid, ++prev) {
            const Point& next = *std::next(mid);
            const double d_in = points_distance(*prev, *mid) / 3.0;
            const double d_out = points_distance(next, *mid) / 3.0;
            Point t(next.x - prev->x, next.y - prev->y, next.z - prev->z);
            const double length = points_distance(Point(0, 0, 0), t);
            t = Point(t.x / length, t.y / length, t.z / length);
            current.emplace_back(mid->x - d_in * t.x, mid->y - d_in * t.y, mid->z - d_in * t.z);
            current.push_back(*mid);
            segments.push_back(current);
            current = {*mid, Point(mid->x + d_out * t.x, mid->y + d_out * t.y, mid->z + d_out * t.z)};
        }
        current.push_back(samples.back());
        current.push_back(samples.back());
        segments.push_back(current);
        Points expected;
        for (const Points& segment : simplification_bezier(segments, tolerance))
            expected.insert(expected.end(), segment.begin(), segment.end());
        EXPECT_TRUE(bits::same(vnt::conv_free_to_bezier(line, tolerance), expected)) << tolerance;
    }
}

// Every segment starts where the one before ends, and no kept sample is lost where nothing merges.
TEST(ConvFreeToBezier, GoesThroughEverySampleThatDoesNotMerge)
{
    const Points zigzag = {Point(0, 0, 0), Point(10, 10, 0), Point(20, 0, 0), Point(30, 10, 0),
                           Point(40, 0, 0)};
    const Points curve = vnt::conv_free_to_bezier(zigzag, 0.01);
    ASSERT_EQ(curve.size(), 16U);
    auto it = curve.begin();
    for (auto sample = zigzag.begin(); std::next(sample) != zigzag.end(); ++sample) {
        EXPECT_EQ(text({*it}), text({*sample}));
        std::advance(it, 3);
        EXPECT_EQ(text({*it}), text({*std::next(sample)}));
        ++it;
    }
}

} // namespace
