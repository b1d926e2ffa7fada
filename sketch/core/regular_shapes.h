// Shapes made regular: rectangles and squares of four corners, arcs of a fitted circle or ellipse.
//
// Space:  the sheet.
// Units:  angles in radians.
// Errors: nothing throws or reports; the corners are four, the path is not empty.
#pragma once

#include "sketch/core/circle_fit.h"
#include "sketch/core/ellipse_fit.h"
#include "sketch/core/reading.h"

namespace vnt::sketch {

// How far the four corners have to move to become those of rectangle_of as it leans, root mean square over
// the longer diagonal.
double skew_of(const Path& corners);

// The longer pair of opposite sides, by their mean length, over the shorter one: 1 or more.
double elongation_of(const Path& corners);

// The rectangle with the same middle, the mean lengths of opposite sides, and the mean direction of all four;
// upright when it stands nearly so. The corners come in the order of the given ones.
Straight rectangle_of(const Path& corners);

// As rectangle_of, with the mean length of all four sides.
Straight square_of(const Path& corners);

// The whole circle or ellipse, beginning nearest to where the path begins, in its direction.
Round whole_round(const Ellipse& ellipse, const Path& path);

// The arc from the path's beginning to its end, the way that the path takes: not more than a whole turn.
Round arc_along(const Ellipse& ellipse, const Path& path);

// Along the arc, within a thousandth.
double length_of(const Round& arc);

Ellipse as_ellipse(const CircleFit& circle);

// The angle that a path turns about a place, with its sign.
double turn_about(Vec2 centre, const Path& path);

// Radians; a rectangle that leans by less was meant to stand upright.
// Data: docs/recognition.md, "Upright".
constexpr double kUpright = 8 * kPi / 180;

} // namespace vnt::sketch
