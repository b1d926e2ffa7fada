#include "sketch/core/ink_line.h"

#include "sketch/core/answer.h"
#include "sketch/core/shape_outline.h"
#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using namespace vnt::sketch;

Ink ink_along(const Path& path)
{
    Ink ink;
    for (const Vec2 p : path)
        ink.push_back({p.x, p.y, 8.0 * static_cast<double>(ink.size()), 1});
    return ink;
}

// A fast circle's few points are chords that lie 11 pixels within it; the line is the circle.
TEST(InkLine, OfAFastCircleIsRound)
{
    Path path;
    for (int i = 0; i <= 12; ++i)
        path.push_back(200 * unit_at(kPi / 6 * i));
    const InkLine line = ink_line(ink_along(path));
    for (std::size_t i = 1; i < line.places.size(); ++i) {
        EXPECT_NEAR(length(line.places[i]), 200, 1);
        EXPECT_NEAR(length(middle(line.places[i - 1], line.places[i])), 200, 1.1);
    }
}

TEST(InkLine, PassesThroughAllPointsAndHasThePressuresBetweenThem)
{
    Ink ink = ink_along({
        {0,  0 },
        {20, 0 },
        {40, 10},
        {50, 30}
    });
    for (std::size_t i = 0; i < ink.size(); ++i)
        ink[i].pressure = 0.2 * static_cast<double>(i);
    const InkLine line = ink_line(ink);
    ASSERT_EQ(line.places.size(), line.pressures.size());
    ASSERT_GT(line.places.size(), ink.size());
    std::size_t at = 0;
    for (const InkPoint& point : ink) {
        while (at < line.places.size() && line.places[at] != Vec2{point.x, point.y})
            ++at;
        ASSERT_LT(at, line.places.size());
        EXPECT_FLOAT_EQ(line.pressures[at], static_cast<float>(point.pressure));
    }
    EXPECT_TRUE(std::is_sorted(line.pressures.begin(), line.pressures.end()));
}

TEST(InkLine, OfStraightStepsHasNoPointsMore)
{
    EXPECT_EQ(ink_line(ink_along({
                           {0,  0},
                           {20, 0},
                           {50, 0},
                           {90, 0}
    }))
                  .places.size(),
              4U);
}

TEST(InkLine, OfNoFinitePointIsEmpty)
{
    EXPECT_TRUE(ink_line({}).places.empty());
    EXPECT_TRUE(ink_line({
                             {std::numeric_limits<double>::quiet_NaN(), 0, 0, 1}
    })
                    .places.empty());
}

TEST(InkLine, StaysBehindItsLastPointsWhenItGoesOn)
{
    Seeded seeded(7);
    Path path;
    double x = 0;
    for (int i = 0; i < 200; ++i) { // with many a spike, some of which a long step four points on makes none
        x += i % 18 == 8 ? 50 : 10;
        path.push_back({x + seeded.between(-2, 2), (i % 9 == 4 ? 150 : 0) + seeded.between(-4, 4)});
    }
    const Ink ink = ink_along(path);
    for (std::size_t n = 20; n < ink.size(); ++n) {
        const auto first = [&](std::size_t count) {
            return ink_line(Ink(ink.begin(), ink.begin() + static_cast<std::ptrdiff_t>(count))).places;
        };
        const Path before = first(n);
        const Path after = first(n + 1);
        const double settled = ink[n + 1 - kUnsettled].x;
        for (std::size_t i = 0; before[i].x < settled; ++i)
            ASSERT_EQ(before[i], after[i]) << n;
    }
}

// With spikes, rests, and steps long and short.
Ink uneven_ink(std::size_t count)
{
    Seeded seeded(11);
    Ink ink;
    Vec2 at{300, 300};
    while (ink.size() < count) {
        const double step = ink.size() % 50 < 20 ? 1 : 15;
        at = at + Vec2{seeded.between(-step, step), seeded.between(-step, step)};
        const double far = ink.size() % 23 == 7 ? 400 : 0;
        ink.push_back({at.x + far, at.y, 0, seeded.between(0, 1)});
        if (ink.size() % 31 == 0)
            ink.push_back(ink.back());
        if (ink.size() % 97 == 0)
            ink.push_back({std::numeric_limits<double>::quiet_NaN(), 0, 0, 1});
    }
    ink.resize(count);
    return ink;
}

TEST(InkLine, IsItsPartsOneAfterAnother)
{
    for (const std::size_t count : {1U, 2U, 30U, 501U}) {
        const Ink ink = uneven_ink(count);
        const InkLine whole = ink_line(ink);
        for (const std::size_t step : {1U, 7U, 64U}) {
            InkLine joined;
            for (std::size_t from = 0; from < count; from += step) {
                const InkLine part = ink_line_part(ink, from, std::min(from + step, count));
                if (!joined.places.empty()) { // the place that they have in common
                    ASSERT_EQ(joined.places.back(), part.places.front()) << from;
                    joined.places.pop_back();
                    joined.pressures.pop_back();
                }
                joined.places.insert(joined.places.end(), part.places.begin(), part.places.end());
                joined.pressures.insert(joined.pressures.end(), part.pressures.begin(), part.pressures.end());
            }
            EXPECT_EQ(joined.places, whole.places) << count << " points by " << step;
            EXPECT_EQ(joined.pressures, whole.pressures) << count << " points by " << step;
        }
    }
}

TEST(InkLine, OfAPartLooksNoFurtherThanItSays)
{
    const Ink ink = uneven_ink(501);
    const auto near = ink.begin() + 200 - static_cast<std::ptrdiff_t>(kAroundPart);
    const Ink cut(near, near + 2 * static_cast<std::ptrdiff_t>(kAroundPart) + 50);
    EXPECT_EQ(ink_line_part(cut, kAroundPart, kAroundPart + 50).places, ink_line_part(ink, 200, 250).places);
}

// The mouse was slow at the corner, and fast behind it.
TEST(InkLine, OfACornerIsNoSwing)
{
    const Path path = {
        {0,   0  },
        {2,   0  },
        {4,   0  },
        {6,   3  },
        {8,   6  },
        {9,   10 },
        {10,  14 },
        {150, 120},
        {290, 226}
    };
    EXPECT_LT(drawn::furthest_from(path, ink_line(ink_along(path)).places), 1.5);
}

struct SentCase {
    const char* name;
    Path path;
};
Path circle_of_steps(double step)
{
    Path path;
    for (double t = 0; t < 1.8 * kPi; t += step / 150)
        path.push_back(Vec2{400, 300} + 150 * unit_at(t));
    return path;
}
Path zigzag_of_steps(double step)
{
    Path path;
    for (int leg = 0; leg < 8; ++leg) {
        const Vec2 from{100.0 + 45 * leg, leg % 2 == 0 ? 100.0 : 280.0};
        const Vec2 to{145.0 + 45 * leg, leg % 2 == 0 ? 280.0 : 100.0};
        const int count = static_cast<int>(std::ceil(distance(from, to) / step));
        for (int i = 0; i < count; ++i)
            path.push_back(from + (1.0 * i / count) * (to - from));
    }
    return path;
}
Path shaken_spiral(double step)
{
    Seeded seeded(3);
    Path path;
    double t = 1;
    while (t < 12) {
        path.push_back(Vec2{400, 300} + 12 * t * unit_at(t) +
                       Vec2{seeded.between(-1, 1), seeded.between(-1, 1)});
        t += step / (12 * t);
    }
    return path;
}
Path with_a_spike(Path path)
{
    path[path.size() / 2] = path[path.size() / 2] + Vec2{300, 200};
    return path;
}
std::vector<SentCase> sent_cases()
{
    return {
        {"ASlowCircle",      circle_of_steps(1)            },
        {"ACircle",          circle_of_steps(5)            },
        {"AQuickCircle",     circle_of_steps(20)           },
        {"AFastCircle",      circle_of_steps(60)           },
        {"ASlowZigzag",      zigzag_of_steps(1)            },
        {"AZigzag",          zigzag_of_steps(7)            },
        {"AQuickZigzag",     zigzag_of_steps(25)           },
        {"AFastZigzag",      zigzag_of_steps(60)           },
        {"AFewPointsZigzag", drawn::placed(drawn::zigzag(9), drawn::Hand())},
        {"AShakenSpiral",                  shaken_spiral(3)                                 },
        {"AQuickShakenSpiral",                  shaken_spiral(12)},
        {"AFastShakenSpiral",                  shaken_spiral(40)                                  },
        {"ASpike",                  with_a_spike(circle_of_steps(5))      },
    };
}
class InkThatIsSent : public testing::TestWithParam<SentCase> {};
TEST_P(InkThatIsSent, IsTheLineThatIsSeen)
{
    const auto stroke = std::make_shared<Stroke>();
    stroke->ink = ink_along(GetParam().path);
    const Path seen = ink_line(stroke->ink).places;

    const auto read = strokes_of_answer(answer_of({stroke}, Sheet()), Sheet(), 1);
    const auto* const strokes = std::get_if<std::vector<Stroke>>(&read);
    ASSERT_NE(strokes, nullptr);
    ASSERT_EQ(strokes->size(), 1U);
    for (const Path& cubics : {cubics_of(strokes->front(), 0.02), cubics_of(*stroke, 0.02)}) {
        const Path line = flattened(cubics, 0.01);
        EXPECT_LE(drawn::furthest_from(seen, line), 0.5);
        Path between; // of the pieces as well
        for (std::size_t i = 1; i < seen.size(); ++i)
            for (int k = 0; k < 4; ++k)
                between.push_back(seen[i - 1] + (k / 4.0) * (seen[i] - seen[i - 1]));
        EXPECT_LE(drawn::furthest_from(line, between), 0.5);
    }
}
INSTANTIATE_TEST_SUITE_P(, InkThatIsSent, testing::ValuesIn(sent_cases()),
                         [](const auto& row) { return row.param.name; });

} // namespace
