// Strokes as a hand draws them, made from outlines whose true shape is known.
#pragma once

#include "sketch/core/ink.h"
#include "sketch/core/resampling.h"
#include "tests/geometry/seeded.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace drawn {

using vnt::sketch::Ink;
using vnt::sketch::kPi;
using vnt::sketch::Path;
using vnt::sketch::Vec2;

// Of half axes a and b about the origin.
inline Path ellipse(double a, double b)
{
    Path outline;
    for (int i = 0; i < 720; ++i)
        outline.push_back({a * std::cos(i * kPi / 360), b * std::sin(i * kPi / 360)});
    return outline;
}

// With its corners on a circle of radius 1.
inline Path regular(int sides)
{
    Path outline;
    for (int i = 0; i < sides; ++i)
        outline.push_back(vnt::sketch::unit_at(2 * kPi * i / sides));
    return outline;
}

inline Path box(double width, double height)
{
    return {
        {-width / 2, -height / 2},
        {width / 2,  -height / 2},
        {width / 2,  height / 2 },
        {-width / 2, height / 2 }
    };
}

// An open arc of the unit circle.
inline Path arc(double from, double to)
{
    Path path;
    for (int i = 0; i <= 360; ++i)
        path.push_back(vnt::sketch::unit_at(from + (to - from) * i / 360));
    return path;
}

// count legs between two rails.
inline Path zigzag(int count)
{
    Path path;
    for (int i = 0; i <= count; ++i)
        path.push_back({i * 0.5, i % 2 == 0 ? 0.0 : 1.0});
    return path;
}

struct Hand {
    double scale = 100; // sheet pixels a unit of the outline
    double rotation = 0;
    Vec2 at{500, 400};
    int points = 80;
    double jitter = 0; // sheet pixels, either way, evenly
    double start = 0;  // where on a closed outline, as a share of the way around
    double more = 0;   // of the way around, after a closed outline's end; below 0 is a gap
    bool reversed = false;
    bool whole_pixels = false;
    std::uint64_t seed = 1;
};

inline Vec2 placed(Vec2 p, const Hand& hand)
{
    const Vec2 along = vnt::sketch::unit_at(hand.rotation);
    return hand.at + (hand.scale * p.x) * along + (hand.scale * p.y) * turned_a_quarter(along);
}

inline Path placed(const Path& path, const Hand& hand)
{
    Path all;
    for (const Vec2 p : path)
        all.push_back(placed(p, hand));
    return all;
}

// 8 ms a point, in the outline's own order.
inline Ink stroke(const Path& outline, bool closed, const Hand& hand = {})
{
    constexpr std::size_t kFine = 4000;
    const Path fine =
        closed ? vnt::sketch::resample_closed(outline, kFine) : vnt::sketch::resample(outline, kFine);
    const double first = closed ? hand.start * kFine : 0;
    const double way = closed ? (1 + hand.more) * kFine : static_cast<double>(kFine - 1);
    constexpr std::size_t kKnots = 25;
    Seeded seeded(hand.seed);
    Path tremor;
    for (std::size_t i = 0; i < kKnots; ++i) {
        const double x = seeded.between(-hand.jitter, hand.jitter);
        tremor.push_back({x, seeded.between(-hand.jitter, hand.jitter)});
    }
    Ink ink;
    for (int i = 0; i < hand.points; ++i) {
        const double share = static_cast<double>(i) / std::max(1, hand.points - 1);
        const double place = first + way * (hand.reversed ? 1 - share : share);
        Vec2 p = placed(fine[static_cast<std::size_t>(std::lround(place)) % kFine], hand);
        const double knot = share * (kKnots - 1);
        const auto before = std::min(static_cast<std::size_t>(knot), kKnots - 2);
        p = p + tremor[before] + (knot - static_cast<double>(before)) * (tremor[before + 1] - tremor[before]);
        if (hand.whole_pixels)
            p = {std::round(p.x), std::round(p.y)};
        ink.push_back({p.x, p.y, 8.0 * i, 1});
    }
    return ink;
}

inline Path path_of(const Ink& ink)
{
    Path path;
    for (const auto& point : ink)
        path.push_back({point.x, point.y});
    return path;
}

// The furthest of the points from the line.
inline double furthest_from(const Path& line, const Path& points)
{
    double furthest = 0;
    for (const Vec2 p : points) {
        double nearest = distance(p, line.front());
        for (std::size_t i = 1; i < line.size(); ++i)
            nearest = std::min(nearest, distance_from_piece(p, line[i - 1], line[i]));
        furthest = std::max(furthest, nearest);
    }
    return furthest;
}

} // namespace drawn
