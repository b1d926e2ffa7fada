// The ellipse through points.
//
// Space:  the sheet. An ellipse's own frame has its origin at the centre and its x axis along the larger half
//         axis.
// Units:  angles in radians, from x towards y.
// Errors: no ellipse where there is none: fewer than five points, all on a line, or so near to a parabola
//         that a half axis is more than kLargestRadius (circle_fit.h) times the points' extent.
// Source: A. Fitzgibbon, M. Pilu, R. B. Fisher, Direct Least Square Fitting of Ellipses (PAMI 1999), in the
//         stable form of R. Halir, J. Flusser, Numerically Stable Direct Least Squares Fitting of Ellipses
//         (1998); then Gauss-Newton on the distance to first order, |F| / |grad F|, P. D. Sampson, Fitting
//         Conic Sections to "Very Scattered"
//         Data (1982), which takes away the direct fit's liking for small ellipses.
#pragma once

#include "sketch/core/plane.h"

#include <optional>

namespace vnt::sketch {

struct Ellipse {
    Vec2 centre;
    double major = 0;    // the larger half axis
    double minor = 0;    // the smaller half axis, above 0
    double rotation = 0; // of the larger half axis: from 0 to below π

    // The point at the parameter t: major cos t along the larger half axis, minor sin t along the other.
    Vec2 at(double parameter) const;
    // The parameter of the ellipse's point that lies where p is scaled onto it: from -π to π.
    double parameter_of(Vec2 p) const;
    // From p to the ellipse, to first order.
    double distance_of(Vec2 p) const;
};

struct EllipseFit {
    Ellipse ellipse;
    double root_mean_square = 0; // of the points' distances, to first order
};

std::optional<EllipseFit> fit_ellipse(const Path& points);

} // namespace vnt::sketch
