// Affine maps of the plane: of the sheet, the artwork and the grid, into one another.
//
// Shapes: a map takes a point as a column: x' = a x + c y + e, y' = b x + d y + f. In a product the right map is
//         applied first. A map is named from_to_to.
// Errors: what has no inverse gives none.
#pragma once

#include "sketch/core/plane.h"

#include <cmath>
#include <optional>

namespace vnt::sketch {

struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    friend bool operator==(const Affine&, const Affine&) = default;

    constexpr Vec2 operator()(Vec2 p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
    // Of a direction, which no translation moves.
    constexpr Vec2 linear(Vec2 p) const { return {a * p.x + c * p.y, b * p.x + d * p.y}; }
    constexpr double determinant() const { return a * d - b * c; }
    // The length that the map makes of length 1, as the mean over its directions.
    double mean_scale() const { return std::sqrt(std::fabs(determinant())); }
};

constexpr Affine operator*(const Affine& second, const Affine& first)
{
    const Vec2 x = second.linear({first.a, first.b});
    const Vec2 y = second.linear({first.c, first.d});
    const Vec2 at = second({first.e, first.f});
    return {x.x, x.y, y.x, y.y, at.x, at.y};
}

// None for a map that flattens the plane, or whose inverse is not finite.
inline std::optional<Affine> try_inverse(const Affine& map)
{
    const double size = map.determinant();
    const Affine inverse{map.d / size, -map.b / size, -map.c / size, map.a / size, 0, 0};
    const Vec2 at = inverse.linear({-map.e, -map.f});
    const Affine whole{inverse.a, inverse.b, inverse.c, inverse.d, at.x, at.y};
    const double sum = whole.a + whole.b + whole.c + whole.d + whole.e + whole.f;
    if (size == 0 || !std::isfinite(sum))
        return std::nullopt;
    return whole;
}

} // namespace vnt::sketch
