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
// Accuracy:  no place of the path, its straight pieces between the points among them, is further than
//            tolerance from the curve, and no place of the curve from the path.
// Source:    each segment as cubic_fit.h has it, but taken as far along the path as it will go; it leaves its
//            own direction to the next one, which makes fewer of them.
Path fit_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp = {});

// The curve along the closed path, which goes on from its last point to its first one: it ends where it
// begins, and is smooth there as well. Where it begins is for it to choose; a place in sharp, when there is
// one.
Path fit_closed_curve(const Path& path, double tolerance, const std::vector<std::size_t>& sharp = {});

// Of a cubic's four points at t from 0 to 1.
inline Vec2 point_of_cubic(const Vec2* segment, double t)
{
    const double s = 1 - t;
    return (s * s * s) * segment[0] + (3 * s * s * t) * segment[1] + (3 * s * t * t) * segment[2] +
           (t * t * t) * segment[3];
}

} // namespace vnt::sketch
