// The circle through points.
//
// Space:  the sheet.
// Errors: no circle where there is none: fewer than three points, all on a line, or so near to one that its
//         radius is more than kLargestRadius times the points' extent.
// Source: first an algebraic fit, G. Taubin, Estimation of Planar Curves, Surfaces and Nonplanar Space Curves
//         Defined by Implicit Equations (PAMI 1991), solved by Newton's method as in N. Chernov, Circular and
//         Linear Regression (2010), 5.10; then Gauss-Newton on the distances themselves (ibid., 4.4 to 4.6).
#pragma once

#include "sketch/core/plane.h"

#include <optional>

namespace vnt::sketch {

// Times the points' extent. A shallower arc differs from its chord by less than a thousandth of its length.
constexpr double kLargestRadius = 100;

struct CircleFit {
    Vec2 centre;
    double radius = 0;
    double root_mean_square = 0; // of the points' distances from the circle
};

std::optional<CircleFit> fit_circle(const Path& points);

} // namespace vnt::sketch
