#include "sketch/core/ink_outline.h"

#include "sketch/core/shape_outline.h"
#include "tests/sketch/drawn_strokes.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kTolerance = 0.04;

struct Broad {
    Path places;
    std::vector<double> radii;
};

Broad broad(std::size_t count, const std::function<Vec2(double)>& place,
            const std::function<double(double)>& radius)
{
    Broad ink;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = static_cast<double>(i) / static_cast<double>(count - 1);
        ink.places.push_back(place(t));
        ink.radii.push_back(radius(t));
    }
    return ink;
}

// Below 0 within the discs at the places and between them.
double distance_to(const Broad& ink, Vec2 p)
{
    double nearest = distance(p, ink.places[0]) - ink.radii[0];
    for (std::size_t i = 1; i < ink.places.size(); ++i) {
        const double most = std::max(ink.radii[i - 1], ink.radii[i]);
        if (distance_from_piece(p, ink.places[i - 1], ink.places[i]) - most > nearest)
            continue;
        constexpr int kDiscs = 64;
        for (int k = 0; k <= kDiscs; ++k) {
            const double t = static_cast<double>(k) / kDiscs;
            const Vec2 place = ink.places[i - 1] + t * (ink.places[i] - ink.places[i - 1]);
            nearest = std::min(nearest, distance(p, place) -
                                            (ink.radii[i - 1] + t * (ink.radii[i] - ink.radii[i - 1])));
        }
    }
    return nearest;
}

// The end's arc in small pieces, from one point to another, from x towards y.
void add_round(Path& around, const RoundEnd& end, Vec2 to)
{
    const Vec2 from = around.back();
    const double half = distance(from, to) / 2;
    const double depth = std::sqrt(std::max(0.0, end.radius * end.radius - half * half));
    // The middle of a short arc lies to the right of the way from its first to its last point.
    const Vec2 right = turned_a_quarter(unit(to - from));
    const Vec2 centre = middle(from, to) + (end.is_long ? -depth : depth) * right;
    const double start = angle_of(from - centre);
    const double sweep = within_a_turn(angle_of(to - centre) - start);
    for (int k = 1; k <= 32; ++k)
        around.push_back(centre + end.radius * unit_at(start + sweep * k / 32));
}

Path around(const OutlinePart& part)
{
    Path path;
    if (part.there.empty()) {
        for (int k = 0; k < 64; ++k)
            path.push_back(part.middle + part.at_start.radius * unit_at(2 * kPi * k / 64));
        return path;
    }
    path = flattened(part.there, 0.005);
    add_round(path, part.at_end, part.back.front());
    const Path back = flattened(part.back, 0.005);
    path.insert(path.end(), back.begin(), back.end());
    add_round(path, part.at_start, part.there.front());
    return path;
}

// How often the path runs around p, from x towards y.
int winding(const Path& path, Vec2 p)
{
    int count = 0;
    for (std::size_t i = 0; i < path.size(); ++i) {
        const Vec2 a = path[i] - p;
        const Vec2 b = path[(i + 1) % path.size()] - p;
        if (a.y <= 0 && b.y > 0 && cross(a, b) > 0)
            ++count;
        if (a.y > 0 && b.y <= 0 && cross(a, b) < 0)
            --count;
    }
    return count;
}

Path shaken(std::size_t count, double step, double by)
{
    Seeded seeded(5);
    Path path;
    for (std::size_t i = 0; i < count; ++i) {
        const double t = step * static_cast<double>(i);
        path.push_back(
            {60 + t + seeded.between(-by, by), 60 + 20 * std::sin(t / 15) + seeded.between(-by, by)});
    }
    return path;
}

Broad random_walk(std::uint64_t seed)
{
    Seeded seeded(seed);
    Broad ink;
    Vec2 at{60, 60};
    for (int i = 0; i < 40; ++i) {
        const double step = seeded.between(0, 6);
        at = at + Vec2{seeded.between(-step, step), seeded.between(-step, step)};
        ink.places.push_back(at);
        ink.radii.push_back(seeded.between(0.25, 5));
    }
    return ink;
}

struct OutlineCase {
    const char* name;
    Broad ink;
    std::size_t most_parts;
};

std::vector<OutlineCase> outline_cases()
{
    const auto wave = [](double t) { return Vec2{20 + 150 * t, 60 + 25 * std::sin(9 * t)}; };
    const auto swelling = [](double t) { return 1 + 3 * std::sin(kPi * t); };
    const auto zigzag = [](double t) {
        return Vec2{20 + 100 * t, static_cast<int>(12 * t) % 2 == 0 ? 20.0 : 70.0};
    };
    const auto spiral = [](double t) { return Vec2{60, 60} + (2 + 30 * t) * unit_at(14 * t); };
    const auto there_and_back = [](double t) { return Vec2{20 + 80 * (1 - std::abs(2 * t - 1)), 50}; };
    Broad tremor{shaken(200, 0.4, 0.3), std::vector<double>(200, 4)};
    for (std::size_t i = 0; i < 200; ++i)
        tremor.radii[i] += 0.5 * std::sin(0.3 * static_cast<double>(i));
    return {
        {"OneDisc",            {{{50, 50}}, {3}},              1                                     },
        {"TwoDiscs",           {{{20, 50}, {60, 30}}, {2, 6}}, 1                                     },
        {"ADiscWithinAnother", {{{50, 50}, {51, 50}}, {6, 2}}, 2                                     },
        {"OnePlaceTwice",      {{{50, 50}, {50, 50}}, {3, 3}}, 2                                     },
        {"ASwellingWave",      broad(120,                      wave,                                   swelling), 1},
        {"AZigzag",                   broad(13,                                                 zigzag,                                                                               swelling), 12},
        {"ATightSpiral",              broad(200,spiral,swelling), 200},
        {"ThereAndBack",       broad(41,               there_and_back,                                                             swelling), 2},
        {"ASuddenPress",                 broad(60,                                               wave,                                                                        [](double t) { return t < 0.5 ? 0.5 : 5.0; }), 4},
        {"ATremblingBroadBrush",      tremor,             200},
        {"AWalk",       random_walk(1),             80},
        {"AnotherWalk",                   random_walk(2),                                                 80                                                                 },
    };
}

class InkOutlines : public testing::TestWithParam<OutlineCase> {};

TEST_P(InkOutlines, HoldTheInkAndNothingElse)
{
    const Broad& ink = GetParam().ink;
    const std::vector<OutlinePart> parts = ink_outline(ink.places, ink.radii, kTolerance);
    EXPECT_LE(parts.size(), GetParam().most_parts);
    std::vector<Path> outlines;
    for (const OutlinePart& part : parts)
        outlines.push_back(around(part));
    const Box box = box_of(ink.places);
    int near = 0;
    for (double y = box.least.y - 8; y < box.most.y + 8; y += 0.57) {
        for (double x = box.least.x - 8; x < box.most.x + 8; x += 0.61) {
            const double away = distance_to(ink, {x, y});
            if (std::abs(away) <= 3 * kTolerance || std::abs(away) > 2)
                continue;
            ++near;
            int count = 0;
            for (const Path& outline : outlines) {
                const int turns = winding(outline, {x, y});
                ASSERT_GE(turns, 0) << "it would take away from others at " << x << ' ' << y;
                count += turns;
            }
            ASSERT_EQ(count > 0, away < 0) << x << ' ' << y << ", which is " << away << " away";
        }
    }
    EXPECT_GT(near, 100);
}
INSTANTIATE_TEST_SUITE_P(, InkOutlines, testing::ValuesIn(outline_cases()),
                         [](const auto& row) { return row.param.name; });

TEST(InkOutline, OfNothingIsNone) { EXPECT_TRUE(ink_outline({}, {}, kTolerance).empty()); }

TEST(InkOutline, OfALongStraightLineHasNoPointsMore)
{
    const Broad line = broad(
        1000,
        [](double t) {
            return Vec2{500 * t, 0};
        },
        [](double t) { return 1 + t; });
    const std::vector<OutlinePart> parts = ink_outline(line.places, line.radii, kTolerance);
    std::size_t segments = 0;
    for (const OutlinePart& part : parts)
        segments += part.there.size() / 4 + part.back.size() / 4;
    EXPECT_LE(segments, 4U);
}

} // namespace
