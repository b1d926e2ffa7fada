#include "Source/geometry/bezier.h"

#include "tests/geometry/bits.h"
#include "tests/geometry/plain_arc.h"
#include "tests/geometry/seeded.h"
#include "tests/support/describe.h"
#include "tests/support/sanitized.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

using vnt::Matrix;
using vnt::Point;

constexpr int kArcs = support::kSanitized ? 20'000 : 1'000'000;
constexpr int kShards = 4;
constexpr double kPi = 3.141592653589793;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Arc {
    Point center{0.0, 0.0, 0.0};
    double radius_x = 1.0;
    double radius_y = 1.0;
    double start = 0.0;
    double end = 2 * kPi;
    Matrix posture;
    double tolerance = 1.0;
};

std::ostream& operator<<(std::ostream& out, const Arc& arc)
{
    out.precision(17);
    return out << "center " << support::describe(arc.center) << " radii " << arc.radius_x << ' '
               << arc.radius_y << " angles " << arc.start << ' ' << arc.end << " tolerance " << arc.tolerance
               << " posture" << support::describe(arc.posture);
}

// Agrees with the plain cutting, or has no end there: then nothing is compared and ended is false.
testing::AssertionResult agrees(const Arc& arc, bool& ended)
{
    const auto expected = plain::conv_arc_to_bezier(arc.center, arc.radius_x, arc.radius_y, arc.start,
                                                    arc.end, arc.posture, arc.tolerance);
    ended = expected.has_value();
    if (!ended)
        return testing::AssertionSuccess();
    const auto got = vnt::conv_arc_to_bezier(arc.center, arc.radius_x, arc.radius_y, arc.start, arc.end,
                                             arc.posture, arc.tolerance);
    if (bits::same(got, *expected))
        return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << arc << "\n plain: " << bits::text_of(*expected) << "\n fast:  " << bits::text_of(got);
}

// A quarter, or a few units in the last place beside it.
double beside_a_quarter(Seeded& seeded, int most_steps)
{
    double angle = seeded.integer(-12, 12) * (kPi / 2);
    const double aim = seeded.integer(0, 1) == 0 ? -1000.0 : 1000.0;
    for (int steps = seeded.integer(0, most_steps); steps > 0; --steps)
        angle = std::nextafter(angle, aim);
    return angle;
}

// Angles of every kind: anywhere, on quarters, and a few units in the last place beside them.
double some_angle(Seeded& seeded)
{
    switch (seeded.integer(0, 9)) {
    case 0: return beside_a_quarter(seeded, 0);
    case 1: return beside_a_quarter(seeded, 4);
    default: return seeded.between(-4 * kPi, 4 * kPi);
    }
}

double some_span(Seeded& seeded)
{
    switch (seeded.integer(0, 5)) {
    case 0: return 2 * kPi;
    case 1: return seeded.integer(1, 8) * (kPi / 2);
    case 2: return seeded.between(0.0, 8 * kPi);
    case 3: return seeded.octaves_between(1e-6, 1.0);
    default: return seeded.between(0.0, 2 * kPi);
    }
}

Arc some_arc(Seeded& seeded)
{
    Arc arc;
    arc.center = Point(seeded.between(-1e3, 1e3), seeded.between(-1e3, 1e3), seeded.between(-1.0, 1.0));
    arc.radius_x = seeded.octaves_between(0.5, 5000.0);
    arc.radius_y = seeded.integer(0, 1) == 0 ? arc.radius_x : seeded.octaves_between(0.5, 5000.0);
    arc.start = some_angle(seeded);
    arc.end = arc.start + some_span(seeded);
    if (seeded.integer(0, 1) == 0) {
        for (std::size_t i = 0; i < Matrix::kElements; ++i)
            arc.posture[i] = seeded.between(-1.0, 1.0);
    }
    arc.tolerance = seeded.octaves_between(1e-3, 30.0);
    return arc;
}

class SeededArcs : public testing::TestWithParam<int> {};

TEST_P(SeededArcs, AgreeWithThePlainCuttingToTheLastBit)
{
    const auto seed = static_cast<std::uint64_t>(20260 + GetParam());
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    Seeded seeded(seed);
    int endless = 0;
    for (int i = 0; i < kArcs / kShards; ++i) {
        const Arc arc = some_arc(seeded);
        bool ended = false;
        ASSERT_TRUE(agrees(arc, ended)) << "arc " << i;
        endless += ended ? 0 : 1;
    }
    // Where rounding puts an angle into a quadrant beside its own, its ray misses the leg.
    EXPECT_LT(endless, kArcs / kShards / 1000);
}

INSTANTIATE_TEST_SUITE_P(, SeededArcs, testing::Range(0, kShards),
                         [](const auto& row) { return "Seed" + std::to_string(20260 + row.param); });

// Far from 0 what is left of an angle without its turns is good to 1e-6 only: its part of the quarter is then
// only about where its ray cuts.
TEST(StartsManyTurnsAway, AgreeWithThePlainCuttingToTheLastBit)
{
    Seeded seeded(6);
    int compared = 0;
    for (int i = 0; i < kArcs / 20; ++i) {
        Arc arc = some_arc(seeded);
        arc.start = seeded.octaves_between(1e3, 1e10) * (seeded.integer(0, 1) == 0 ? -1.0 : 1.0);
        arc.end = arc.start + some_span(seeded);
        bool ended = false;
        ASSERT_TRUE(agrees(arc, ended)) << "arc " << i;
        compared += ended ? 1 : 0;
    }
    EXPECT_GT(compared, kArcs / 20 - kArcs / 2000);
}

// On a large arc a few units in the last place of an angle make an area of more than 1: an end as near as
// that to its ray is cut nevertheless.
TEST(LargeArcsFromBesideAnAxis, AgreeWithThePlainCuttingToTheLastBit)
{
    Seeded seeded(7);
    int compared = 0;
    for (int i = 0; i < kArcs / 20; ++i) {
        Arc arc = some_arc(seeded);
        arc.radius_x = seeded.octaves_between(1.0, 1e9);
        arc.radius_y = seeded.integer(0, 1) == 0 ? arc.radius_x : seeded.octaves_between(1.0, 1e9);
        arc.start = beside_a_quarter(seeded, 4);
        arc.end = arc.start + some_span(seeded);
        arc.tolerance = seeded.octaves_between(1e-14, 1e-3) * arc.radius_x * (arc.radius_x + arc.radius_y);
        bool ended = false;
        ASSERT_TRUE(agrees(arc, ended)) << "arc " << i;
        compared += ended ? 1 : 0;
    }
    EXPECT_GT(compared, kArcs / 40);
}

// Sizes at which the quick steps' bounds would overflow, vanish, or mean nothing.
TEST(ExtremeArcs, AgreeWithThePlainCuttingToTheLastBit)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const double radii[] = {0.0, -0.0, -3.0, -2e3,   1e-310, 1e-200, 1e-19, 1e-17, 0.7,   1.5,       40.0,
                            3e3, 1e9,  8e17, 1.1e18, 1.2e18, 1e25,   1e150, 1e160, 1e300, kInfinity, kNaN};
    const double tolerances[] = {-1.0, 0.0, 1e-320, 1e-12, 1e-6, 0.5, 1.0, 1e3, 1e30, kInfinity, kNaN};
    Seeded seeded(4);
    int compared = 0;
    for (const double radius_x : radii) {
        for (const double radius_y : radii) {
            for (const double tolerance : tolerances) {
                Arc arc;
                arc.radius_x = radius_x;
                arc.radius_y = radius_y;
                arc.start = some_angle(seeded);
                arc.end = arc.start + some_span(seeded);
                arc.tolerance = tolerance;
                bool ended = false;
                ASSERT_TRUE(agrees(arc, ended));
                compared += ended ? 1 : 0;
            }
        }
    }
    EXPECT_GT(compared, 1000);
}

// From below the rounding of the areas, where few cuts end, to some thousand times that.
TEST(TightTolerances, AgreeWithThePlainCuttingToTheLastBit)
{
    Seeded seeded(5);
    int compared = 0;
    for (int i = 0; i < kArcs / 50; ++i) {
        Arc arc = some_arc(seeded);
        arc.tolerance =
            seeded.octaves_between(0.01, 4096.0) * 0x1p-53 * arc.radius_x * (arc.radius_x + arc.radius_y);
        bool ended = false;
        ASSERT_TRUE(agrees(arc, ended)) << "arc " << i;
        compared += ended ? 1 : 0;
    }
    EXPECT_GT(compared, kArcs / 100);
}

// The tolerances that a step of a cut meets by a hair, in the order of the steps: each just above the area of
// one that is nearer to the ray than all before it. None where an end counts as on the ray.
std::vector<double> tolerances_just_above_steps(const plain::Points& leg, const Point& ray)
{
    const Point origin(0.0, 0.0, 0.0);
    const auto area_at = [&](const Point& p) { return calc_signed_triangle_square(origin, p, ray); };
    std::vector<double> tolerances;
    if (std::abs(area_at(leg.front())) < 1.0 || std::abs(area_at(leg.back())) < 1.0)
        return tolerances;
    double nearest = kInfinity;
    double lo = 0.0;
    double hi = 1.0;
    for (int step = 0; step < 56; ++step) {
        const double mid = (lo + hi) / 2.0;
        const double area = area_at(de_casteljau(leg, mid).back().front());
        if (area != 0.0 && std::abs(area) < nearest) {
            nearest = std::abs(area);
            tolerances.push_back(std::nextafter(nearest, kInfinity));
        }
        (area > 0.0 ? lo : hi) = mid;
    }
    return tolerances;
}

// A step that is left out though it would end the cut shows only at a tolerance that lies above its area by
// no more than rounding. By chance that is rare; here every tolerance does.
TEST(TolerancesJustAboveAStepsArea, AgreeWithThePlainCuttingToTheLastBit)
{
    constexpr int kLegs = support::kSanitized ? 300 : 6'000;
    const Point origin(0.0, 0.0, 0.0);
    Seeded seeded(8);
    int of_end = 0;
    int of_start = 0;
    int of_both = 0;
    const auto compare = [](const Arc& arc, int& compared) {
        bool ended = false;
        ASSERT_TRUE(agrees(arc, ended));
        ASSERT_TRUE(ended) << arc;
        ++compared;
    };
    for (int i = 0; i < kLegs; ++i) {
        Arc arc;
        arc.radius_x = seeded.octaves_between(2.0, 0x1p20);
        arc.radius_y = seeded.integer(0, 1) == 0 ? arc.radius_x : seeded.octaves_between(2.0, 0x1p20);
        const double angle = seeded.between(0.01, 1.56);
        const double later = seeded.between(angle, 1.56);
        const Point ray(arc.radius_x * std::cos(angle), arc.radius_x * std::sin(angle), 0.0);
        const Point later_ray(arc.radius_x * std::cos(later), arc.radius_x * std::sin(later), 0.0);
        const plain::Points leg = plain::get_leg_arc(1, arc.radius_x, arc.radius_y);
        // A cut at the start is the same for every tolerance from a step's up to the one before it.
        double before = kInfinity;
        for (const double tolerance : tolerances_just_above_steps(leg, ray)) {
            arc.tolerance = tolerance;
            arc.start = 0.0;
            arc.end = angle;
            ASSERT_NO_FATAL_FAILURE(compare(arc, of_end)) << "leg " << i;
            arc.start = angle;
            arc.end = kPi / 2;
            ASSERT_NO_FATAL_FAILURE(compare(arc, of_start)) << "leg " << i;
            arc.end = later;
            const auto rest = plain::divide_bezier(leg, origin, ray, false, tolerance);
            ASSERT_TRUE(rest.has_value());
            for (const double second : tolerances_just_above_steps(*rest, later_ray)) {
                arc.tolerance = second;
                if (tolerance <= second && second < before) {
                    ASSERT_NO_FATAL_FAILURE(compare(arc, of_both)) << "leg " << i;
                }
            }
            before = tolerance;
        }
    }
    EXPECT_GT(of_end, kLegs * 20);
    EXPECT_EQ(of_start, of_end);
    EXPECT_GT(of_both, kLegs * 20);
}

} // namespace
