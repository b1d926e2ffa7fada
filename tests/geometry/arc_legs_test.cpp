#include "Source/geometry/bezier.h"

#include "tests/geometry/bits.h"
#include "tests/geometry/plain_arc.h"
#include "tests/geometry/seeded.h"
#include "tests/support/describe.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace {

using vnt::Matrix;
using vnt::Point;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

constexpr int kArcs = kSanitized ? 20'000 : 1'000'000;
constexpr int kShards = 4;
constexpr double kPi = 3.141592653589793;

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

// Angles of every kind: anywhere, on quarters, and a few units in the last place beside them.
double some_angle(Seeded& seeded)
{
    double angle = seeded.between(-4 * kPi, 4 * kPi);
    const int kind = seeded.integer(0, 9);
    if (kind >= 2)
        return angle;
    angle = seeded.integer(-12, 12) * (kPi / 2);
    if (kind == 1) {
        const double aim = seeded.integer(0, 1) == 0 ? -1000.0 : 1000.0;
        for (int steps = seeded.integer(1, 4); steps > 0; --steps)
            angle = std::nextafter(angle, aim);
    }
    return angle;
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

// Sizes at which the quick steps' bounds would overflow, vanish, or mean nothing.
TEST(ExtremeArcs, AgreeWithThePlainCuttingToTheLastBit)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
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

// The quick steps run closest to their bounds where the tolerance is of the size of all rounding.
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

} // namespace
