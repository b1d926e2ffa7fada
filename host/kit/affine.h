// Affine maps of the plane.
//
// Shapes: a map takes a point as a column: x' = a x + c y + e, y' = b x + d y + f, the order of SVG's
//         matrix(a b c d e f). In a product the right map is applied first. A map is named from_to_to.
// Errors: what has no inverse gives none.
#pragma once

#include <optional>

namespace vnt::host {

struct Vec {
    double x = 0;
    double y = 0;
};

struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    static Affine translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
    static Affine scaling(double x, double y) { return {x, 0, 0, y, 0, 0}; }

    // The turn by an angle in degrees, from x towards y. Quarter turns are exact.
    static Affine rotation(double degrees);

    Vec operator()(const Vec& point) const
    {
        return {a * point.x + c * point.y + e, b * point.x + d * point.y + f};
    }

    double determinant() const { return a * d - b * c; }
    bool is_finite() const;
};

Affine operator*(const Affine& second, const Affine& first);

// None for a map that flattens the plane, as seen in doubles, or has a number that is not finite.
//
// Accuracy: a determinant below 1e-12 of the products that it is the difference of is taken for 0.
std::optional<Affine> try_inverse(const Affine& map);

// The length that a map makes of length 1, as the mean over its directions: the square root of its area.
double mean_scale(const Affine& map);

} // namespace vnt::host
