// Shapes as the cubic Bézier curves that the canvas paints and the editor gets, and what one may do to a
// shape.
//
// Space:  the sheet; tolerances in sheet pixels.
// Shapes: a curve is 4 points a segment: start, control, control, end; a segment's end is the next one's
//         start.
// Errors: nothing throws or reports. What draws nothing is empty.
#pragma once

#include "sketch/core/affine.h"
#include "sketch/core/reading.h"
#include "sketch/core/stroke.h"

namespace vnt::sketch {

// The shape's curve. A closed one ends where it begins. Of monostate: empty.
//
// tolerance: above 0; how far the curve of a round shape may lie from it. Segments span a quarter turn, or
//            less where that is needed.
// Source:    the arm 4/3 tan(sweep / 4) of a segment, which touches the circle at both ends and its middle.
Path cubics_of(const Shape& shape, double tolerance);

// The stroke's curve: its shape's, or of ink the smooth curve along the line that it is seen as (ink_line.h),
// within tolerance of it.
Path cubics_of(const Stroke& stroke, double tolerance);

// The curve as a polyline that lies within tolerance of it.
Path flattened(const Path& cubics, double tolerance);

// The shape under a map. A round shape stays round under every map that does not flatten it (a circle may
// become an ellipse).
Shape mapped(const Shape& shape, const Affine& map);
// The stroke under a map, ink and all: with another id.
Stroke mapped(const Stroke& stroke, const Affine& map, StrokeId id);

// From p to the nearest point of the curve, within tolerance. Infinite for an empty one.
double distance_from_curve(Vec2 p, const Path& cubics, double tolerance);

} // namespace vnt::sketch
