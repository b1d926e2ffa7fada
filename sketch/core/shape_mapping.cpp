// Shapes under maps; see shape_outline.h.
#include "sketch/core/shape_kind.h"
#include "sketch/core/shape_outline.h"

#include <algorithm>

namespace vnt::sketch {
namespace {

// A map's linear part: a turn, a stretch along x and across it, and another turn.
struct Stretch {
    double first = 0;
    double along = 1; // not less than across, whichever its sign
    double across = 1;
    double second = 0;
};

// Source: the singular values of a 2 x 2 matrix: J. Blinn, Consider the Lowly 2 x 2 Matrix (IEEE Computer
//         Graphics and Applications 1996).
Stretch stretch_of(const Affine& map)
{
    const Vec2 even{(map.a + map.d) / 2, (map.b - map.c) / 2};
    const Vec2 odd{(map.a - map.d) / 2, (map.b + map.c) / 2};
    const double turn = angle_of(even);
    const double other = angle_of(odd);
    return {(turn - other) / 2, length(even) + length(odd), length(even) - length(odd), (turn + other) / 2};
}

// The same places in the same order, with the rotation in its range.
Round in_range(Round round)
{
    Ellipse& ellipse = round.ellipse;
    if (ellipse.major == ellipse.minor) {
        round.start += ellipse.rotation;
        ellipse.rotation = 0;
    }
    ellipse.rotation = within_a_turn(ellipse.rotation);
    if (ellipse.rotation >= kPi) {
        ellipse.rotation -= kPi;
        round.start += kPi;
    }
    round.start = within_a_turn(round.start);
    return round;
}

Round mapped(const Round& round, const Affine& map)
{
    const Ellipse& from = round.ellipse;
    Round to = round;
    to.ellipse.centre = map(from.centre);
    bool is_reversed = false;
    if (keeps_angles(map)) { // by itself: half axes that are nearly equal keep their directions
        is_reversed = map.determinant() < 0;
        to.ellipse.major = map.mean_scale() * from.major;
        to.ellipse.minor = map.mean_scale() * from.minor;
        to.ellipse.rotation = angle_of(map.linear(unit_at(from.rotation)));
    } else {
        const Vec2 along = map.linear(from.major * unit_at(from.rotation));
        const Vec2 across = map.linear(from.minor * turned_a_quarter(unit_at(from.rotation)));
        const Stretch stretch = stretch_of({along.x, along.y, across.x, across.y});
        is_reversed = stretch.across < 0;
        to.ellipse.major = stretch.along;
        to.ellipse.minor = std::abs(stretch.across);
        to.ellipse.rotation = stretch.second;
        to.start += stretch.first;
    }
    if (is_reversed) {
        to.start = -to.start;
        to.sweep = -to.sweep;
    }
    return in_range(to);
}

Path mapped(Path path, const Affine& map)
{
    std::transform(path.begin(), path.end(), path.begin(), map);
    return path;
}

Reading mapped(const Reading& reading, const Affine& map)
{
    const Shape shape = mapped(reading.shape, map);
    return {kind_under(map, reading.kind, shape), reading.score, shape};
}

} // namespace

Shape mapped(const Shape& shape, const Affine& map)
{
    if (const auto* straight = std::get_if<Straight>(&shape))
        return Straight{mapped(straight->corners, map), straight->closed};
    if (const auto* round = std::get_if<Round>(&shape))
        return mapped(*round, map);
    if (const auto* curve = std::get_if<Curve>(&shape))
        return Curve{mapped(curve->points, map), curve->closed};
    return shape;
}

Stroke mapped(const Stroke& stroke, const Affine& map, StrokeId id)
{
    Stroke result = stroke;
    result.id = id;
    for (InkPoint& point : result.ink) {
        const Vec2 place = map({point.x, point.y});
        point.x = place.x;
        point.y = place.y;
    }
    for (Reading& reading : result.readings)
        reading = mapped(reading, map);
    result.shape = mapped(stroke.shape, map);
    result.kind = kind_under(map, stroke.kind, result.shape);
    return result;
}

} // namespace vnt::sketch
