// Figure primitives as cubic Bézier segments, and the small curve and point functions that this takes.
//
// Space:  an arc is given in its own frame, origin at its centre. What conv_* give is in model space, what the
//         others give stays where their points are.
// Units:  angles in radians, counter-clockwise from local x, whole turns counted; lengths in model units.
// Shapes: a Bézier point list holds 4 points per segment: start, control, control, end; each segment starts
//         where the one before ends. A leg is a quarter of an ellipse as one segment.
// Errors: nothing reports, and nothing throws but for want of memory. What draws nothing gives an empty list,
//         and numbers that are not finite give such numbers.
#pragma once

#include "Source/geometry/primitives.h"

#include <list>
#include <vector>

// The distance of two points, by all three coordinates.
//
// Accuracy: 4 units in the last place, short of overflow and underflow of the squares.
double points_distance(const vnt::Point& a, const vnt::Point& b);

// n a + m b. Weights that sum to 1 divide the line from a to b as m to n; nothing normalises them.
//
// Accuracy: 2 units in the last place of the larger product, in each coordinate.
vnt::Point internal_division(const vnt::Point& a, const vnt::Point& b, double m, double n);

// The area of the triangle a, b, c seen along z; positive when it runs counter-clockwise.
//
// Accuracy: 4 units in the last place of the sum of the six products' magnitudes; where they cancel, the result
//           may be all rounding.
// Source:   the shoelace formula.
double calc_signed_triangle_square(const vnt::Point& a, const vnt::Point& b, const vnt::Point& c);

// The triangle of a Bézier curve of any degree at t: level 0 is the control list, each further level one
// point shorter, the last one the point of the curve. An empty list gives one empty level.
//
// Accuracy: for t from 0 to 1 each level adds at most 2.5 units in the last place of the largest coordinate.
// Source:   G. Farin, Curves and Surfaces for CAGD, chapter "The de Casteljau Algorithm".
std::vector<std::vector<vnt::Point>> de_casteljau(const std::list<vnt::Point>& control_points, double t);

// The quarter of an axis-aligned ellipse that spans (quadrant - 1) 90° to quadrant 90°, counter-clockwise.
// Any quadrant but 1 to 4 gives the first.
//
// Accuracy: a quarter of a circle lies outside it by at most 2.73e-4 of its radius, and nowhere inside.
// Source:   control arm 4/3 (√2 - 1) of the radius: puts the middle of the segment on the circle.
std::list<vnt::Point> get_leg_arc(int quadrant, double radius_x, double radius_y);

// The part of a cubic before or after the place where it crosses the line through ray_origin and ray_point.
//
// segment:   runs counter-clockwise about ray_origin and crosses the line once, as a leg does. Not 4 points:
//            empty list.
// tolerance: > 0; compared with the area of the triangle ray_origin, curve point, ray_point.
// Accuracy:  the cut is off the line by at most 2 tolerance / |ray_point - ray_origin|.
// Source:    bisection of the parameter, then de Casteljau's subdivision there.
//
// Deliberate: an end whose triangle has an area below 1.0 counts as on the line, in any unit: a cut at the
// start keeps all or nothing. Kept by DivideBezier.KeepsTheAreaBoundOfOneAtTheEnds. Depends on it: arcs that
// end on an axis, which would get an empty last leg, and sketch applications, which expect that an arc of a
// radius below √2 shows its first leg whole and its last not at all.
//
// Deliberate: the bisection has no other end than the tolerance: one that cannot be reached never returns.
// Kept by DivideBezier.KeepsLookingForAToleranceOutOfReach. Depends on it: nothing; callers that take a
// tolerance from outside bound their time.
std::list<vnt::Point> divide_bezier(const std::list<vnt::Point>& segment, const vnt::Point& ray_origin,
                                    const vnt::Point& ray_point, bool keep_before, double tolerance);

namespace vnt {

// A primitive as Bézier segments; the tolerance is for the cuts of its arc, as in conv_arc_to_bezier. A free
// curve's control points come back as they are. Whether a flag calls it an arc or closed plays no part: a
// circle is an arc of a whole turn. Null, an unknown type, or one that is not the primitive's own gives an
// empty list.
std::list<Point> conv_prim_to_bezier(const PrimInfo* primitive, double tolerance);

// A straight segment, its control points on its ends: start, start, end, end.
std::list<Point> conv_line_to_bezier(const Point& start, const Point& end);

// The arc from start_angle to end_angle, at most one segment per quarter of the ellipse that it enters.
//
// start_angle, end_angle: past 2π the turn repeats. Not start < end, not finite, or with a turn number that
//            leaves 32 bits: empty list. A list of many turns is as long as they ask for: callers that
//            take angles from outside bound their span.
// tolerance: > 0, as in divide_bezier: of a triangle with a side of radius_x. Out of reach: never returns,
//            unless all cuts fall on ends of legs.
// Accuracy:  between the cuts as get_leg_arc; a cut is off its ray by 2 max(tolerance, 1) / radius_x at most.
// Source:    get_leg_arc and divide_bezier.
//
// Deliberate: the cutting rays go through (radius_x cos, radius_x sin) on an ellipse too, so that its angles
// are polar angles, not parameters. Kept by ConvArcToBezier.KeepsPolarAnglesOnAnEllipse. Depends on it:
// sketch applications, which send polar angles.
//
// Deliberate: the posture's upper-left 3x3 turns the arc, and center alone moves it: the posture's
// translation column is not applied, other than in PrimC::getEvaluateAt. Kept by
// ConvArcToBezier.KeepsTheTranslationColumnUnapplied. Depends on it: nothing.
std::list<Point> conv_arc_to_bezier(const Point& center, double radius_x, double radius_y, double start_angle,
                                    double end_angle, const Matrix& posture, double tolerance);

} // namespace vnt
