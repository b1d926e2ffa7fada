#include "sketch/core/shape_kind.h"

#include <algorithm>
#include <cstddef>

namespace vnt::sketch {
namespace {

Vec2 side(const Path& corners, std::size_t i)
{
    return corners[(i + 1) % corners.size()] - corners[i % corners.size()];
}

Kind kind_of_four(const Path& corners)
{
    const double width = length(side(corners, 0));
    const double height = length(side(corners, 1));
    for (std::size_t i = 0; i < 4; ++i) {
        const double sizes = length(side(corners, i)) * length(side(corners, i + 1));
        if (!(std::abs(dot(side(corners, i), side(corners, i + 1))) <= kSameLength * sizes) || !(sizes > 0))
            return Kind::quadrilateral;
    }
    return std::abs(width - height) <= kSameLength * std::max(width, height) ? Kind::square : Kind::rectangle;
}

// Turns to one side all the way, and once around.
bool is_convex(const Path& corners)
{
    double turn = 0;
    double most = 0; // of any corner to either side
    double least = 0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const double here = turn_between(side(corners, i), side(corners, i + 1));
        turn += here;
        most = std::max(most, here);
        least = std::min(least, here);
    }
    return (most <= kSameLength || least >= -kSameLength) && std::abs(turn) < 3 * kPi;
}

Kind kind_of(const Straight& shape)
{
    const std::size_t count = shape.corners.size();
    if (count <= 2)
        return Kind::line;
    if (!shape.closed)
        return Kind::polyline;
    if (count == 3)
        return Kind::triangle;
    if (count == 4)
        return kind_of_four(shape.corners);
    return is_convex(shape.corners) ? Kind::polygon : Kind::polyline;
}

Kind kind_of(const Round& shape)
{
    const Ellipse& ellipse = shape.ellipse;
    const bool is_circular = std::abs(ellipse.major - ellipse.minor) <= kSameLength * ellipse.major;
    if (std::abs(shape.sweep) >= 2 * kPi)
        return is_circular ? Kind::circle : Kind::ellipse;
    return is_circular ? Kind::arc : Kind::elliptic_arc;
}

} // namespace

Kind kind_of(const Shape& shape)
{
    if (const auto* straight = std::get_if<Straight>(&shape))
        return kind_of(*straight);
    if (const auto* round = std::get_if<Round>(&shape))
        return kind_of(*round);
    return std::holds_alternative<Curve>(shape) ? Kind::free_curve : Kind::ink;
}

bool keeps_angles(const Affine& map)
{
    // What of the map turns and scales, and what of it mirrors.
    const double even = length({map.a + map.d, map.b - map.c});
    const double odd = length({map.a - map.d, map.b + map.c});
    return std::min(even, odd) <= 1e-9 * std::max(even, odd);
}

Kind kind_under(const Affine& map, Kind kind, const Shape& after)
{
    const bool has_shape = !std::holds_alternative<std::monostate>(after);
    return keeps_angles(map) || !has_shape ? kind : kind_of(after);
}

} // namespace vnt::sketch
