#include "sketch/core/stabiliser.h"

#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

Ink steadied(const Ink& samples, double strength, double view_scale = 1)
{
    Stabiliser stabiliser(strength, view_scale);
    Ink ink;
    for (const InkPoint& sample : samples)
        for (const InkPoint& point : stabiliser.add(sample))
            ink.push_back(point);
    for (const InkPoint& point : stabiliser.finish())
        ink.push_back(point);
    return ink;
}

void expect_same(const Ink& got, const Ink& expected)
{
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_EQ(got[i].x, expected[i].x) << "point " << i;
        EXPECT_EQ(got[i].y, expected[i].y) << "point " << i;
        EXPECT_EQ(got[i].time_ms, expected[i].time_ms) << "point " << i;
        EXPECT_EQ(got[i].pressure, expected[i].pressure) << "point " << i;
    }
}

double nearest(const Ink& ink, Vec2 p)
{
    double least = kInfinite;
    for (std::size_t i = 1; i < ink.size(); ++i)
        least = std::min(least, distance_from_piece(p, {ink[i - 1].x, ink[i - 1].y}, {ink[i].x, ink[i].y}));
    return least;
}

// A pen at so many samples a second that goes right and then down, each side 300 long, and slows down to a tenth
// in the corner at (300, 0), as hands do.
Ink corner(double peak_speed, double rate, double tremor, std::uint64_t seed = 1)
{
    Seeded seeded(seed);
    Ink ink;
    double way = 0;
    for (int i = 0; way < 600; ++i) {
        const Vec2 at = way < 300 ? Vec2{way, 0} : Vec2{300, way - 300};
        const double x = at.x + seeded.between(-tremor, tremor);
        ink.push_back({x, at.y + seeded.between(-tremor, tremor), 1000 * i / rate, 0.5});
        const double share = std::min(1.0, std::abs(way - 300) / 100);
        way += peak_speed * (0.1 + 0.9 * share) / rate;
    }
    ink.push_back({300, 300, ink.back().time_ms + 1000 / rate, 0.5});
    return ink;
}

// Root mean square distance of the ink from the two sides, away from the corner and both ends.
double tremor_of(const Ink& ink)
{
    double sum = 0;
    int count = 0;
    for (const InkPoint& point : ink)
        if (point.x > 40 && point.x < 260) {
            sum += point.y * point.y;
            ++count;
        }
    return std::sqrt(sum / count);
}

TEST(Stabiliser, AtNoStrengthEverySampleStandsAsItComes)
{
    const Ink samples = corner(900, 240, 0.37);
    expect_same(steadied(samples, 0), samples);
}

// By the second sample after it, the first ones included.
TEST(Stabiliser, LetsNoSampleOfASmoothStrokeWait)
{
    Stabiliser stabiliser;
    std::size_t drawn = 0;
    const Ink samples = corner(900, 240, 0);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        drawn += stabiliser.add(samples[i]).size();
        EXPECT_EQ(drawn, i == 1 ? 1 : i + 1) << "after sample " << i;
    }
}

TEST(Stabiliser, EndsAtTheLastSample)
{
    for (const double strength : {0.0, 0.01, 0.2, 0.5, 1.0}) {
        for (const std::size_t size : {1U, 2U, 3U, 4U, 50U}) {
            Ink samples = corner(900, 125, 1);
            samples.resize(size);
            const Ink ink = steadied(samples, strength);
            ASSERT_FALSE(ink.empty());
            EXPECT_EQ(ink.front().x, samples.front().x);
            EXPECT_EQ(ink.front().y, samples.front().y);
            EXPECT_EQ(ink.back().x, samples.back().x) << size << " samples, strength " << strength;
            EXPECT_EQ(ink.back().y, samples.back().y);
        }
    }
}

TEST(Stabiliser, BeginsAnotherStrokeAfterTheEnd)
{
    Stabiliser stabiliser(0.5);
    const Ink samples = corner(900, 125, 1);
    Ink first, second;
    for (Ink* const ink : {&first, &second}) {
        for (const InkPoint& sample : samples)
            for (const InkPoint& point : stabiliser.add(sample))
                ink->push_back(point);
        for (const InkPoint& point : stabiliser.finish())
            ink->push_back(point);
    }
    expect_same(second, first);
    EXPECT_TRUE(stabiliser.finish().empty());
}

// Bounds: what is left of the tremor at the strength, and how far the ink keeps from the corner, screen pixels.
struct StrengthCase {
    const char* name;
    double strength;
    double tremor_left; // share
    double corner_cut;
};
const StrengthCase kStrengths[] = {
    {"ATenth",  0.1, 0.9,  0.5},
    {"AFifth",  0.2, 0.7,  0.6},
    {"AHalf",   0.5, 0.5,  1.2},
    {"AllOfIt", 1.0, 0.35, 2.5},
};
class StabiliserAt : public testing::TestWithParam<StrengthCase> {};
TEST_P(StabiliserAt, TakesTremorAwayAndKeepsCorners)
{
    const StrengthCase& row = GetParam();
    for (const double rate : {125.0, 240.0}) {
        const Ink shaken = corner(400, rate, 1.5);
        const double left = tremor_of(steadied(shaken, row.strength)) / tremor_of(shaken);
        EXPECT_LT(left, row.tremor_left) << rate << " samples a second";
        for (const double speed : {200.0, 400.0, 1200.0}) {
            const Ink ink = steadied(corner(speed, rate, 0), row.strength);
            EXPECT_LT(nearest(ink, {300, 0}), row.corner_cut) << speed << " pixels a second, " << rate;
        }
    }
}
INSTANTIATE_TEST_SUITE_P(, StabiliserAt, testing::ValuesIn(kStrengths),
                         [](const auto& row) { return row.param.name; });

TEST(Stabiliser, TrailsTheFastestPenByABoundedLength)
{
    for (const double speed : {100.0, 1000.0, 10'000.0}) {
        Stabiliser stabiliser(1);
        Vec2 ink;
        for (int i = 0; i < 500; ++i) {
            const double x = speed * i / 125;
            for (const InkPoint& point : stabiliser.add({x, 0, 8.0 * i, 1}))
                ink = {point.x, point.y};
            EXPECT_LE(ink.x, x);
            // 24 pixels, and what it goes in a sample while the first ones wait
            EXPECT_GT(ink.x, x - 24 - speed / 125) << "at " << speed << " pixels a second";
        }
    }
}

TEST(Stabiliser, SmoothsByScreenPixelsAtEveryScale)
{
    const Ink samples = corner(400, 125, 1.5);
    Ink in_sheet = samples;
    for (InkPoint& point : in_sheet)
        point = {point.x / 8, point.y / 8, point.time_ms, point.pressure};
    Ink expected = steadied(samples, 0.4);
    const Ink ink = steadied(in_sheet, 0.4, 8);
    ASSERT_EQ(ink.size(), expected.size());
    for (std::size_t i = 0; i < ink.size(); ++i) {
        EXPECT_NEAR(ink[i].x, expected[i].x / 8, 1e-9); // rounding
        EXPECT_NEAR(ink[i].y, expected[i].y / 8, 1e-9);
    }
}

// A mouse sends nothing while it rests.
TEST(Stabiliser, ReachesTheCornerInWhichAMouseRests)
{
    Ink samples;
    for (int i = 0; i <= 30; ++i)
        samples.push_back({10.0 * i, 0, 8.0 * i, 1});
    for (int i = 1; i <= 30; ++i)
        samples.push_back({300, 10.0 * i, 1000 + 8.0 * i, 1});
    // What is left of 24 pixels after 0.76 s at 1 Hz: e to the -4.8 of them.
    EXPECT_LT(nearest(steadied(samples, 1), {300, 0}), 0.2);
}

struct SpikeCase {
    const char* name;
    Path samples;
    Path expected; // at no strength
};
// clang-format off
const SpikeCase kSpikes[] = {
    {"InTheMiddleGoes",        {{0, 0}, {2, 0}, {4, 0}, {90, 80}, {6, 0}, {8, 0}},  {{0, 0}, {2, 0}, {4, 0}, {6, 0}, {8, 0}}},
    {"AsTheSecondSampleGoes",  {{0, 0}, {-500, 3}, {2, 0}, {4, 0}, {6, 0}},         {{0, 0}, {2, 0}, {4, 0}, {6, 0}}},
    {"AsTheThirdSampleGoes",   {{0, 0}, {2, 0}, {300, 0}, {4, 0}, {6, 0}},          {{0, 0}, {2, 0}, {4, 0}, {6, 0}}},
    {"OnALeavingPenGoes",      {{0, 0}, {2, 0}, {4, 0}, {90, 80}, {6, 0}},          {{0, 0}, {2, 0}, {4, 0}, {6, 0}}},
    {"TwiceGoesTwice",         {{0, 0}, {2, 0}, {4, 0}, {90, 0}, {6, 0}, {8, 0}, {8, 70}, {10, 0}, {12, 0}},
                               {{0, 0}, {2, 0}, {4, 0}, {6, 0}, {8, 0}, {10, 0}, {12, 0}}},
    {"AsTheEndStays",          {{0, 0}, {2, 0}, {4, 0}, {90, 80}},                  {{0, 0}, {2, 0}, {4, 0}, {90, 80}}},
    {"ThatGoesOnIsAJump",      {{0, 0}, {2, 0}, {4, 0}, {90, 80}, {92, 80}},        {{0, 0}, {2, 0}, {4, 0}, {90, 80}, {92, 80}}},
    {"OfTwoSamplesIsADrawnTip", {{0, 0}, {2, 0}, {4, 0}, {40, 40}, {50, 50}, {6, 0}}, {{0, 0}, {2, 0}, {4, 0}, {40, 40}, {50, 50}, {6, 0}}},
    {"OfAStrokeOfThreeStays",  {{0, 0}, {50, 50}, {1, 0}},                          {{0, 0}, {50, 50}, {1, 0}}},
    {"BesideFastStepsStays",   {{0, 0}, {30, 0}, {60, 0}, {90, 50}, {120, 0}, {150, 0}},
                               {{0, 0}, {30, 0}, {60, 0}, {90, 50}, {120, 0}, {150, 0}}},
    {"SpeedingUpLosesNothing", {{0, 0}, {1, 0}, {2, 0}, {9, 0}, {40, 0}, {200, 0}}, {{0, 0}, {1, 0}, {2, 0}, {9, 0}, {40, 0}, {200, 0}}},
    {"RepeatsAddNothing",      {{1, 2}, {1, 2}, {1, 2}, {3, 2}, {3, 2}, {4, 2}},    {{1, 2}, {3, 2}, {4, 2}}},
};
// clang-format on
class Spike : public testing::TestWithParam<SpikeCase> {};
TEST_P(Spike, IsToldFromWhatWasDrawn)
{
    Ink samples;
    for (const Vec2 p : GetParam().samples)
        samples.push_back({p.x, p.y, 8.0 * static_cast<double>(samples.size()), 1});
    EXPECT_EQ(drawn::path_of(steadied(samples, 0)), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(, Spike, testing::ValuesIn(kSpikes), [](const auto& row) { return row.param.name; });

struct TimesCase {
    const char* name;
    double first, each; // milliseconds
};
const TimesCase kTimes[] = {
    {"Missing",   0,    0     },
    {"Equal",     5000, 0     },
    {"Backwards", 5000, -8    },
    {"Far",       1e15, 8     },
    {"Leaping",   0,    1e300 },
    {"Crawling",  0,    1e-300},
};
class StabiliserWithTimes : public testing::TestWithParam<TimesCase> {};
TEST_P(StabiliserWithTimes, DrawsAllOfTheStroke)
{
    Ink samples = corner(400, 125, 1);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i].time_ms = GetParam().first + GetParam().each * static_cast<double>(i);
    for (const double strength : {0.0, 0.2, 1.0}) {
        const Ink ink = steadied(samples, strength);
        EXPECT_GT(ink.size(), samples.size() / 2);
        EXPECT_LT(path_length(drawn::path_of(ink)), 1.01 * path_length(drawn::path_of(samples)));
        for (const Vec2 p : {
                 Vec2{0,   0  },
                 Vec2{150, 0  },
                 Vec2{300, 150},
                 Vec2{300, 300}
        })
            EXPECT_LT(nearest(ink, p), 3) << "strength " << strength;
    }
}
INSTANTIATE_TEST_SUITE_P(, StabiliserWithTimes, testing::ValuesIn(kTimes),
                         [](const auto& row) { return row.param.name; });

TEST(Stabiliser, DropsWhatIsNotFinite)
{
    const Ink bad = {
        {kInfinite,    1,    1,            1           },
        {1,            -2e9, 1,            1           },
        {1,            1,    std::nan(""), 1           },
        {std::nan(""), 1,    1,            1           },
        {1,            1,    1,            std::nan("")},
    };
    Stabiliser stabiliser;
    for (const InkPoint& sample : bad)
        EXPECT_TRUE(stabiliser.add(sample).empty());
    EXPECT_TRUE(stabiliser.finish().empty());

    Ink samples = corner(400, 125, 0);
    const Ink good = samples;
    samples.insert(samples.begin() + 20, bad.begin(), bad.end());
    samples.insert(samples.begin(), bad.begin(), bad.end());
    samples.insert(samples.end(), bad.begin(), bad.end());
    expect_same(steadied(samples, 0), good);
}

TEST(Stabiliser, TakesStrengthsOutsideItsRangeForItsEnds)
{
    const Ink samples = corner(400, 125, 1);
    expect_same(steadied(samples, -3), samples);
    expect_same(steadied(samples, std::nan("")), samples);
    expect_same(steadied(samples, 9), steadied(samples, 1));
}

} // namespace
