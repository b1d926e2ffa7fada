// Shapes that snap, and their points.
#pragma once

#include "sketch/core/snapping.h"

#include <utility>
#include <vector>

namespace snaps {

using namespace vnt::sketch;

constexpr double kRounding = 1e-9;
constexpr double kDegree = kPi / 180;

using Targets = std::vector<Shape>;

inline Shape line(Vec2 a, Vec2 b)
{
    return Straight{
        {a, b},
        false
    };
}
inline Shape open(Path corners) { return Straight{std::move(corners), false}; }
inline Shape closed(Path corners) { return Straight{std::move(corners), true}; }
inline Shape circle(Vec2 centre, double radius)
{
    return Round{
        {centre, radius, radius, 0},
        0.5, -2 * kPi
    };
}
inline Shape ellipse(Vec2 centre, double major, double minor, double rotation)
{
    return Round{
        {centre, major, minor, rotation},
        0.5, 2 * kPi
    };
}
// Angles in degrees, as seen on the sheet.
inline Shape arc(Vec2 centre, double radius, double start, double end)
{
    return Round{
        {centre, radius, radius, 0},
        start * kDegree, (end - start) * kDegree
    };
}
// A place of what is drawn, and nothing else near it: the end of a line that leads far away.
inline Shape place(Vec2 p)
{
    return Straight{
        {p, p + Vec2{0.1, 5000}},
        false
    };
}

inline Path points_of(const Shape& shape)
{
    if (const auto* const straight = std::get_if<Straight>(&shape))
        return straight->corners;
    if (const auto* const curve = std::get_if<Curve>(&shape))
        return curve->points;
    const Round& round = std::get<Round>(shape);
    Path points;
    for (const double share : {0.0, 0.25, 0.5, 0.75, 1.0})
        points.push_back(round.ellipse.at(round.start + share * round.sweep));
    points.push_back(round.ellipse.centre);
    return points;
}

} // namespace snaps
