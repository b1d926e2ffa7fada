// Where one reading gives way to another: strokes that change little by little from the one to the other,
// and the sign that is at its limit when they do. The limits are those of docs/recognition.md.
#include "sketch/core/recognition.h"

#include "sketch/core/regular_shapes.h"
#include "sketch/core/signs.h"
#include "tests/sketch/scored_strokes.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace scored;
using namespace vnt::sketch;

Ink wave(double height, int halves)
{
    Path path;
    for (int i = 0; i <= 400; ++i)
        path.push_back({i / 100.0, height * std::sin(halves * kPi * i / 400)});
    return drawn_open(path);
}

Ink leaning(double lean)
{
    return drawn_closed({
        {0,        0  },
        {2,        0  },
        {2 + lean, 1.4},
        {lean,     1.4}
    });
}

Ink rippled_arc(double height)
{
    Path path;
    for (int i = 0; i <= 400; ++i)
        path.push_back((1 + height * std::cos(5 * kPi * i / 400)) * unit_at(0.9 * kPi * i / 400));
    return drawn_open(path);
}

double arc_error(const Signs& signs) { return fit_circle(signs.even)->root_mean_square / signs.length; }

struct LimitCase {
    const char* name;
    Kind kind;
    Kind against; // the reading that it gives way to; ink: none, its score goes through a half
    std::function<Ink(double)> stroke;
    double from, to; // of the stroke's parameter: kind is the likelier one at from, not at to
    std::function<double(const Signs&)> sign;
    double limit, bound;
};
// clang-format off
const LimitCase kLimits[] = {
    {"ALineIsUneven", Kind::line, Kind::ink, [](double t) { return wave(t, 1); }, 0, 1,
        [](const Signs& s) { return s.line.unevenness; }, 0.042, 0.001},
    {"ALineRipples", Kind::line, Kind::ink, [](double t) { return wave(t, 4); }, 0, 1,
        [](const Signs& s) { return s.line.ripple; }, 0.025, 0.001},
    {"ALineTakesADetour", Kind::line, Kind::ink, [](double t) { return wave(t, 12); }, 0, 1,
        [](const Signs& s) { return s.line.detour; }, 0.12, 0.002},
    {"ACircleHasAGap", Kind::circle, Kind::ink,
        [](double t) { return drawn_closed(drawn::ellipse(1, 1), -t); },
        0, 0.3, [](const Signs& s) { return s.body.closing.gap; }, 0.14, 0.003},
    {"ATriangleHasAGap", Kind::triangle, Kind::ink,
        [](double t) { return drawn_closed(drawn::regular(3), -t, 0.17 + t / 2); }, 0, 0.25,
        [](const Signs& s) { return s.body.closing.gap; }, 0.13, 0.003},
    {"ATriangleIsBlunt", Kind::triangle, Kind::ink, [](double t) { return blunt(3, 1 - t); }, 0, 1,
        [](const Signs& s) { return s.body.bend(3); }, 0.50, 0.01},
    {"AHexagonHasAGap", Kind::polygon, Kind::ink,
        [](double t) { return drawn_closed(drawn::regular(6), -t, 0.08 + t / 2); }, 0, 0.4,
        [](const Signs& s) { return s.body.closing.gap; }, 0.22, 0.003},
    {"ASquareIsBlunt", Kind::square, Kind::ink, [](double t) { return blunt(4, 1 - t); }, 0, 1,
        [](const Signs& s) { return s.body.bend(4); }, 0.57, 0.01},
    {"AParallelogramLeans", Kind::rectangle, Kind::quadrilateral, leaning, 0, 1.2,
        [](const Signs& s) { return skew_of(s.body.chain(4).corners); }, 0.12, 0.012},
    {"ASquareIsLong", Kind::square, Kind::rectangle,
        [](double t) { return drawn_closed(drawn::box(1.4 * t, 1.4)); }, 1, 1.6,
        [](const Signs& s) { return elongation_of(s.body.chain(4).corners); }, 1.20, 0.005},
    {"ACircleIsLong", Kind::circle, Kind::ellipse,
        [](double t) { return drawn_closed(drawn::ellipse(t, 1)); }, 1, 2.5,
        [](const Signs& s) { return s.body.axes.minor / s.body.axes.major; }, 0.69, 0.003},
    {"AnArcTrembles", Kind::arc, Kind::ink, rippled_arc, 0, 0.12, arc_error, 0.013, 0.0005},
};
// clang-format on
class Limits : public testing::TestWithParam<LimitCase> {};
TEST_P(Limits, AreWhereTheReadingGivesWay)
{
    const LimitCase& row = GetParam();
    const auto is_likelier = [&](double t) {
        const auto readings = recognise(row.stroke(t));
        const double other = row.against == Kind::ink ? 0.5 : score_of(readings, row.against);
        return score_of(readings, row.kind) > other;
    };
    double from = row.from;
    double to = row.to;
    ASSERT_TRUE(is_likelier(from));
    ASSERT_FALSE(is_likelier(to));
    for (int i = 0; i < 24; ++i) {
        const double half = (from + to) / 2;
        (is_likelier(half) ? from : to) = half;
    }
    EXPECT_NEAR(row.sign(measure(row.stroke(from))), row.limit, row.bound) << "at " << from;
}
INSTANTIATE_TEST_SUITE_P(, Limits, testing::ValuesIn(kLimits),
                         [](const auto& row) { return row.param.name; });

// What speaks for round against many-sided is a sum: see "Sides". Of octagons blunt enough to be in doubt.
TEST(BluntOctagon, IsAsRoundAsItsSignsAddUpTo)
{
    int in_doubt = 0;
    for (const double share : {0.56, 0.58, 0.60, 0.62, 0.64, 0.66, 0.68, 0.70}) {
        const Ink ink = blunt(8, share);
        const double score = score_of(recognise(ink), Kind::circle);
        if (score < 0.05 || score > 0.85)
            continue; // where other signs decide
        ++in_doubt;
        const BodySigns body = measure(ink).body;
        const double sum = std::log(std::min(body.bend(7), body.bend(8)) / 0.60) +
                           2.9 * (0.715 - body.turn_at_corners) +
                           0.15 * (1 - static_cast<double>(body.corners));
        EXPECT_NEAR(std::log(score / (1 - score)), 10 * sum, 1e-6) << share;
    }
    EXPECT_GE(in_doubt, 3);
}

// An arc with notches that are seen as corners, but hardly take it off its circle.
Ink notched_arc(int notches)
{
    Path path;
    for (int i = 0; i <= 1200; ++i) {
        const double angle = 1.1 * kPi * i / 1200;
        double radius = 1;
        for (int k = 1; k <= notches; ++k) {
            const double off = std::abs(angle - 1.1 * kPi * k / (notches + 1));
            radius -= std::max(0.0, 0.08 - 0.8 * off);
        }
        path.push_back(radius * unit_at(angle));
    }
    return drawn_open(path);
}

TEST(NotchedArc, CountsHalfForEachCornerButOne)
{
    int found = 0;
    for (int notches = 1; notches <= 4; ++notches) {
        const Ink ink = notched_arc(notches);
        const std::size_t corners = measure(ink).pieces.corners;
        if (corners < 2)
            continue;
        ++found;
        EXPECT_LE(score_of(recognise(ink), Kind::arc), std::pow(0.5, corners - 1)) << notches;
        EXPECT_GT(score_of(recognise(ink), Kind::arc), 0.75 * std::pow(0.5, corners - 1)) << notches;
    }
    EXPECT_GE(found, 2);
}

struct LongCase {
    const char* name;
    Kind kind;
    std::function<InkPoint(double t, Seeded& seeded)> place; // t: from 0 to 1
};
// clang-format off
const LongCase kLong[] = {
    {"ACircle", Kind::circle,
        [](double t, Seeded&) { return InkPoint{300 * std::cos(2 * kPi * t), 300 * std::sin(2 * kPi * t)}; }},
    {"ATremblingCircleWithGapsOfNoNumber", Kind::circle,
        [](double t, Seeded& seeded) {
            const double x = 300 * std::cos(2 * kPi * t) + seeded.between(-0.5, 0.5);
            return InkPoint{seeded.integer(0, 6) == 0 ? std::nan("") : x, 300 * std::sin(2 * kPi * t)};
        }},
    {"AScribble", Kind::free_curve,
        [](double, Seeded& seeded) {
            const double x = seeded.between(0, 1000);
            return InkPoint{x, seeded.between(0, 1000)};
        }},
    {"OnePlace", Kind::ink, [](double, Seeded&) { return InkPoint{5, 5}; }},
};
// clang-format on
class StrokesOfAHundredThousandPoints : public testing::TestWithParam<LongCase> {};
// Ten times as long a time as ten times fewer points take; what grows with the square would not come to its
// end.
TEST_P(StrokesOfAHundredThousandPoints, AreReadLikeShortOnes)
{
    constexpr int kPoints = 100000;
    Seeded seeded(3);
    Ink ink;
    for (int i = 0; i < kPoints; ++i)
        ink.push_back(GetParam().place(static_cast<double>(i) / (kPoints - 1), seeded));
    EXPECT_EQ(recognise(ink).front().kind, GetParam().kind);
}
INSTANTIATE_TEST_SUITE_P(, StrokesOfAHundredThousandPoints, testing::ValuesIn(kLong),
                         [](const auto& row) { return row.param.name; });

} // namespace
