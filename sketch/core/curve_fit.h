// Smooth free curves: few cubic Bézier segments that stay within a tolerance of a path.
//
// Space:  the sheet.
// Shapes: a curve is 4 points a segment: start, control, control, end; a segment's end is the next one's
//         start.
// Errors: nothing throws or reports. No points: empty; one, or points all in one place: a segment of four
//         equal ones.
#pragma once

#include "sketch/core/plane.h"

#include <cstddef>
#include <vector>

namespace vnt::sketch {

// The curve along path that is smooth but for the places in sharp.
//
// tolerance: above 0.
// sharp:     points of the path at which the curve may turn at once, rising; its ends need not be among them.
// Accuracy:  no point of the path is further than tolerance from the curve at its own parameter. Between two
//            points the curve runs as smoothly as its segments do; nothing is measured there.
// Source:    least squares over the control points with Newton's steps on the parameters, P. J. Schneider, An
//            Algorithm for Automatically Fitting Digitized Curves (Graphics Gems, 1990); but each segment is
//            taken as far along the path as it will go, and leaves its own direction to the next one, which
//            makes fewer of them.
Path fit_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp = {});

// Of a cubic's four points at t from 0 to 1.
Vec2 point_of_cubic(const Vec2* segment, double t);

} // namespace vnt::sketch
