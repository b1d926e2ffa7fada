// How the scores of the readings are made of the signs. Each stroke changes little by little, so that one
// sign after the other becomes the worst one; where the sign of a row is, the score has to be what it says,
// to the last digits. The limits are those of docs/recognition.md.
#include "sketch/core/recognition.h"

#include "sketch/core/circle_fit.h"
#include "sketch/core/ellipse_fit.h"
#include "sketch/core/regular_shapes.h"
#include "sketch/core/signs.h"
#include "tests/sketch/scored_strokes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

using namespace scored;
using namespace vnt::sketch;

double belief(double value, double limit) { return 1 / (1 + std::pow(std::max(0.0, value) / limit, 4)); }
double logistic(double x) { return 1 / (1 + std::exp(-x)); }

// By the angle from 0 to 2 pi.
Path around(const std::function<double(double)>& radius)
{
    Path outline;
    for (int i = 0; i < 720; ++i)
        outline.push_back(radius(i * kPi / 360) * unit_at(i * kPi / 360));
    return outline;
}

Ink flower(double depth, int petals)
{
    return drawn_closed(around([&](double angle) { return 1 + depth * std::cos(petals * angle); }));
}

Ink dented_circle(double depth)
{
    return drawn_closed(around([&](double angle) {
        const double off = (angle - kPi) / 0.5;
        return 1 - depth * std::exp(-off * off);
    }));
}

// A hexagon into one side of which a wedge is cut, so wide at its mouth either way.
Ink notched_hexagon(double depth, double half_width)
{
    Path outline = drawn::regular(6);
    const Vec2 middle = 0.5 * (outline[0] + outline[1]);
    const Vec2 along = unit(outline[1] - outline[0]);
    outline.insert(outline.begin() + 1,
                   {middle - half_width * along, middle - depth * unit(middle), middle + half_width * along});
    return drawn_closed(outline);
}

// A triangle whose one side is bent inwards to a corner.
Ink dart(double depth)
{
    return drawn_closed({
        {1,            0   },
        {-0.8,         0.9 },
        {-0.8 + depth, 0   },
        {-0.8,         -0.9}
    });
}

// So much of its two sides is cut off at one corner.
Ink cut_triangle(double share)
{
    const Path corners = drawn::regular(3);
    const auto towards = [&](std::size_t i) { return corners[0] + share * (corners[i] - corners[0]); };
    return drawn_closed({towards(1), corners[1], corners[2], towards(2)});
}

// A zigzag whose corners are rounded off by so much of a leg.
Ink rounded_zigzag(double rounding)
{
    const Path corners = drawn::zigzag(5);
    Path path{corners.front()};
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const Vec2 before = corners[i] + rounding * (corners[i - 1] - corners[i]);
        const Vec2 after = corners[i] + rounding * (corners[i + 1] - corners[i]);
        for (int k = 0; k <= 40; ++k) {
            const double t = k / 40.0;
            path.push_back((1 - t) * (1 - t) * before + 2 * t * (1 - t) * corners[i] + t * t * after);
        }
    }
    path.push_back(corners.back());
    return drawn_open(path);
}

// Of an ellipse with half axes 1 and so much less, which trembles by so much.
Ink arc_of_ellipse(double less, double sweep, double tremor = 0)
{
    Path path;
    for (int i = 0; i <= 400; ++i) {
        const double t = 0.3 + sweep * i / 400;
        const double size = 1 + tremor * std::cos(14 * t);
        path.push_back({size * std::cos(t), size * (1 - less) * std::sin(t)});
    }
    return drawn_open(path);
}

std::size_t corners_seen(const Signs& signs)
{
    return signs.body.corners + (signs.body.turn_at_join > kPi / 3 ? 1 : 0);
}

double straightness(const Signs& signs)
{
    return std::min({belief(signs.line.unevenness, 0.042), belief(signs.line.detour, 0.12),
                     belief(signs.line.ripple, 0.025)});
}

double of_pieces(const Signs& signs)
{
    const auto joints = static_cast<double>(signs.pieces.chain.corners.size() - 2);
    const double seen = std::min(1.0, static_cast<double>(signs.pieces.corners) / joints);
    return std::pow(0.95, 3) * belief(signs.pieces.bend, 0.33 * (1 + 0.25 * (2 * seen - 1)));
}

// Neither straight, nor of straight pieces, nor closed.
double bent(const Signs& signs)
{
    return std::min({1 - straightness(signs), 1 - belief(signs.pieces.bend, 0.33 / 2),
                     1 - belief(signs.body.closing.gap, 0.14)});
}

// Less than half elliptic, so that the circle's arc keeps all of the score that they share.
double for_not_being_circular(const Signs& signs)
{
    return 2 * bent(signs) * (1 - belief(fit_circle(signs.even)->root_mean_square / signs.length, 0.005));
}

double for_what_the_ellipse_gains(const Signs& signs)
{
    const double ellipse = fit_ellipse(signs.even)->root_mean_square;
    const double gain = belief(ellipse / fit_circle(signs.even)->root_mean_square, 0.5);
    return 2 * gain * std::min(bent(signs), belief(ellipse / signs.length, 0.013));
}

struct ScoreCase {
    const char* name;
    Kind kind;
    std::function<Ink(double)> stroke;
    double from, to; // of the stroke's parameter
    std::function<double(const Signs&)> score;
};
// clang-format off
const ScoreCase kScores[] = {
    {"AHollowCircle", Kind::circle, [](double t) { return flower(t, 5); }, 0.17, 0.32,
        [](const Signs& s) { return belief(1 - s.body.fill, 0.12); }},
    {"AHollowHexagon", Kind::polygon, [](double t) { return notched_hexagon(t, 0.49); }, 0.5, 0.9,
        [](const Signs& s) { return belief(1 - s.body.fill, 0.15); }},
    {"AHollowDart", Kind::quadrilateral, dart, 0.4, 1.2,
        [](const Signs& s) { return belief(1 - s.body.fill, 0.32); }},
    {"AHexagonWithANotch", Kind::polygon, [](double t) { return notched_hexagon(t, 0.2); }, 0.4, 1,
        [](const Signs& s) { return belief(s.body.way - 1, 0.16); }},
    {"ADentedCircle", Kind::circle, dented_circle, 0.5, 1,
        [](const Signs& s) { return belief(s.body.oval_error, 0.12); }},
    {"ATriangleOfFourCorners", Kind::triangle, cut_triangle, 0.1, 0.5,
        [](const Signs& s) { return (corners_seen(s) > 3 ? 0.3 : 10) * belief(s.body.bend(3), 0.50); }},
    {"ACurvyZigzag", Kind::polyline, rounded_zigzag, 0.05, 0.5, of_pieces},
    {"AnAlmostCircularArc", Kind::elliptic_arc, [](double t) { return arc_of_ellipse(t, 2.5); }, 0.1, 0.6,
        for_not_being_circular},
    {"ATremblingEllipticArc", Kind::elliptic_arc, [](double t) { return arc_of_ellipse(0.4, 2.5, t); },
        0, 0.1, for_what_the_ellipse_gains},
};
// clang-format on
class Scores : public testing::TestWithParam<ScoreCase> {};
TEST_P(Scores, AreTheWorstSigns)
{
    constexpr int kSteps = 60;
    const ScoreCase& row = GetParam();
    int alike = 0;
    for (int i = 0; i <= kSteps; ++i) {
        const Ink ink = row.stroke(row.from + (row.to - row.from) * i / kSteps);
        const double score = score_of(ink, row.kind);
        const double expected = row.score(measure(ink));
        if (expected > 0.05 && expected < 0.9 && std::abs(score - expected) < 1e-9)
            ++alike;
    }
    EXPECT_GE(alike, 5);
}
INSTANTIATE_TEST_SUITE_P(, Scores, testing::ValuesIn(kScores),
                         [](const auto& row) { return row.param.name; });

struct OddsCase {
    const char* name;
    Kind kind, against;
    std::function<Ink(double)> stroke;
    double from, to; // of the stroke's parameter
    std::function<double(const Signs&)> likelihood;
};
// clang-format off
const OddsCase kOdds[] = {
    {"ACircleBecomesAnEllipse", Kind::circle, Kind::ellipse,
        [](double t) { return drawn_closed(drawn::ellipse(t, 1)); }, 1.4, 1.8,
        [](const Signs& s) { return logistic(25 * (s.body.axes.minor / s.body.axes.major - 0.69)); }},
    {"ASquareBecomesARectangle", Kind::square, Kind::rectangle,
        [](double t) { return drawn_closed(drawn::box(t * 1.4, 1.4)); }, 1.1, 1.4,
        [](const Signs& s) { return logistic(15 * (1.20 - elongation_of(s.body.chain(4).corners))); }},
    {"ARectangleLeans", Kind::rectangle, Kind::quadrilateral,
        [](double t) { return drawn_closed({{0, 0}, {3, 0}, {3 + t, 1.4}, {t, 1.4}}); }, 0.3, 1.5,
        [](const Signs& s) { return belief(skew_of(s.body.chain(4).corners), 0.12); }},
};
// clang-format on
class Odds : public testing::TestWithParam<OddsCase> {};
TEST_P(Odds, LeaveTheLikelierOneAllOfTheScore)
{
    constexpr int kSteps = 60;
    const OddsCase& row = GetParam();
    int compared = 0;
    for (int i = 0; i <= kSteps; ++i) {
        const double t = row.from + (row.to - row.from) * i / kSteps;
        const Ink ink = row.stroke(t);
        const double likelihood = row.likelihood(measure(ink));
        if (likelihood > 0.5 || likelihood < 0.05)
            continue;
        ++compared;
        EXPECT_NEAR(score_of(ink, row.kind) / score_of(ink, row.against), 2 * likelihood, 1e-9) << t;
    }
    EXPECT_GE(compared, 5);
}
INSTANTIATE_TEST_SUITE_P(, Odds, testing::ValuesIn(kOdds), [](const auto& row) { return row.param.name; });

// An octagon blunt enough to be in doubt, the pen resting at so many places.
Ink rested(std::size_t rests)
{
    Ink ink = blunt(8, 0.62);
    std::vector<bool> rests_after(ink.size());
    for (std::size_t k = 0; k < rests; ++k) // away from both ends, where every pen is slow
        rests_after[ink.size() * (3 * k + 5) / 40] = true;
    double time = 0;
    for (std::size_t i = 0; i < ink.size(); ++i) {
        ink[i].time_ms = time;
        // Never quite even, as times that a program made up are.
        time += (i % 2 == 0 ? 6 : 10) + (rests_after[i] ? 300 : 0);
    }
    return ink;
}

double odds_of_round(std::size_t rests)
{
    const double score = score_of(rested(rests), Kind::circle);
    return std::log(score / (1 - score));
}

// Fewer than four speak for round by half of what more speak against it, and more than eight say no more.
TEST(RestsOfThePen, SpeakAgainstRound)
{
    const double either = odds_of_round(4);
    for (std::size_t rests = 2; rests <= 10; ++rests) {
        const Signs signs = measure(rested(rests));
        ASSERT_TRUE(signs.pace.is_known) << rests;
        ASSERT_EQ(signs.pace.rests, rests);
        const double more = std::min(static_cast<double>(rests), 8.0) - 4;
        const double expected = more > 0 ? -more : -0.5 * more;
        EXPECT_NEAR(odds_of_round(rests) - either, expected, 1e-6) << rests;
    }
}

// Four corners that are seen speak against round, more say no more.
TEST(CornersThatAreSeen, SpeakAgainstRound)
{
    int more_than_four = 0;
    for (double depth = 0.05; depth < 0.1; depth += 0.001) {
        const Ink ink = flower(depth, 6);
        const double score = score_of(ink, Kind::circle);
        const BodySigns body = measure(ink).body;
        if (body.corners <= 4 || score < 0.1 || score > 0.85)
            continue; // where other signs decide
        ++more_than_four;
        const double sum = std::log(std::min(body.bend(7), body.bend(8)) / 0.60) +
                           2.9 * (0.715 - body.turn_at_corners) - 0.15 * 3;
        EXPECT_NEAR(std::log(score / (1 - score)), 10 * sum, 1e-6) << depth;
    }
    EXPECT_GE(more_than_four, 3);
}

// Where a loop begins it may turn by 60 degrees and still have no corner there.
TEST(TheJoin, IsTheFourthCornerOfATriangle)
{
    int corners = 0;
    int others = 0;
    for (double cut = 0.1; cut < 0.7; cut += 0.005) {
        const Path whole = drawn::regular(3);
        const Ink ink = drawn_closed({whole[0] + 0.3 * (whole[1] - whole[0]), whole[1], whole[2],
                                      whole[0] + cut * (whole[2] - whole[0])},
                                     0, 0);
        const BodySigns body = measure(ink).body;
        const double likelihood = belief(body.bend(3), 0.50);
        if (body.corners != 3 || likelihood < 0.5)
            continue;
        const bool is_corner = body.turn_at_join > kPi / 3;
        if (std::abs(body.turn_at_join - kPi / 3) < 0.1)
            ++(is_corner ? corners : others);
        EXPECT_NEAR(score_of(ink, Kind::triangle), (is_corner ? 0.3 : 1) * likelihood, 1e-9) << cut;
    }
    EXPECT_GE(corners, 2);
    EXPECT_GE(others, 2);
}

TEST(AFreeCurve, IsAsLikelyAsAnythingAtItsLimit)
{
    EXPECT_EQ(score_of(flower(0.4, 5), Kind::free_curve), 0.5);
}

// Legs up and down, not one like the other.
Ink random_zigzag(std::uint64_t seed)
{
    Seeded seeded(seed);
    const int legs = seeded.integer(20, 34);
    Path path;
    for (int i = 0; i <= legs; ++i) {
        const double x = i * seeded.between(0.1, 0.3);
        path.push_back({x, (i % 2) + seeded.between(-0.2, 0.2)});
    }
    return drawn_open(path);
}

TEST(APolyline, HasAtMost24Pieces)
{
    int few = 0;
    int many = 0;
    for (std::uint64_t seed = 1; seed <= 200; ++seed) {
        const Ink ink = random_zigzag(seed);
        const ChainSigns pieces = measure(ink).pieces;
        if (pieces.bend > 0.33 || pieces.is_closed)
            continue;
        const bool is_few = pieces.chain.corners.size() <= 25;
        ++(is_few ? few : many);
        if (is_few)
            EXPECT_GT(score_of(ink, Kind::polyline), 0.1) << seed;
        else
            EXPECT_LE(score_of(ink, Kind::polyline), 0.01) << seed;
    }
    EXPECT_GE(few, 1);
    EXPECT_GE(many, 1);
}

// From a pentagon to a hexagon, by cutting off a corner.
TEST(APolygon, HasAsFewSidesAsComeNearTheStraightest)
{
    int pentagons = 0;
    int others = 0;
    for (double cut = 0; cut < 0.3; cut += 0.005) {
        const Path corners = drawn::regular(5);
        const Ink ink = drawn_closed({corners[0] + cut * (corners[1] - corners[0]), corners[1], corners[2],
                                      corners[3], corners[4], corners[0] + cut * (corners[4] - corners[0])});
        const std::vector<double>& bends = measure(ink).body.bends; // of three sides and more
        const double straightest = *std::min_element(bends.begin() + 2, bends.end());
        std::size_t sides = 5;
        while (bends[sides - 3] > 1.15 * straightest)
            ++sides;
        ++(sides == 5 ? pentagons : others);
        for (const Reading& reading : recognise(ink)) {
            if (reading.kind == Kind::polygon) {
                EXPECT_EQ(std::get<Straight>(reading.shape).corners.size(), sides) << cut;
            }
        }
    }
    EXPECT_GT(pentagons, 0);
    EXPECT_GT(others, 0);
}

TEST(AnEllipticArc, HasAtLeastAQuarterOfTheWay)
{
    EXPECT_LE(score_of(arc_of_ellipse(0.6, 0.49 * kPi), Kind::elliptic_arc), 0.01);
    EXPECT_GT(score_of(arc_of_ellipse(0.6, 0.51 * kPi), Kind::elliptic_arc), 0.01);
}

} // namespace
