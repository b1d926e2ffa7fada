// A free-hand polyline as a smooth chain of few cubic Bézier segments.
//
// The samples are thinned, every sample between the ends gets a tangent parallel to the chord of its two
// neighbours, and cubics that follow one another are merged as long as the merged one reproduces them. One
// pass from left to right: fast, not frugal.
//
// Space:  any; results are in that of the points.
// Units:  points and tolerances in the same unit; nothing here depends on which.
// Shapes: a Bézier point list holds 4 points per segment: start, control, control, end; a segment list holds
//         one such group per entry.
// Errors: nothing reports, and nothing throws but for want of memory. Coincident samples divide by zero: the
//         numbers that come are not finite.
#pragma once

#include "Source/geometry/records.h"

#include <list>

// Drops every point that lies closer than min_distance to the last one kept; the first is kept.
//
// Deliberate: the last point gets no special treatment: dropped, it leaves the line short of its end.
// Kept by SimplificationPoints.KeepsDroppingACloseLastPoint. Depends on it: nothing.
std::list<vnt::Point> simplification_points(const std::list<vnt::Point>& points, double min_distance);

// Merges segments from left to right, each into what has come before it where simplification_cp can.
std::list<std::list<vnt::Point>> simplification_bezier(const std::list<std::list<vnt::Point>>& segments,
                                                       double tolerance);

// Whether current, followed by next, is one cubic split at some parameter; if so, current becomes that cubic.
// Segments that do not hold 4 points never merge.
//
// tolerance: how far the split of the merged cubic may lie from current's last control point, from the joint
//            and from next's first control point; as far as that passes.
// Accuracy:  those three points are all that is compared; the curves between are nowhere measured.
// Source:    the inverse of de Casteljau's subdivision: the joint divides the arms beside it as the parameter
//            t divides the cubic, and the outer arms are t and 1 - t of the merged one's.
//
// Deliberate: distances that are NaN pass, since only a distance above the tolerance fails: degenerate arms
// merge. Kept by SimplificationCp.KeepsAcceptingAMergeOfNaN. Depends on it: nothing.
bool simplification_cp(std::list<vnt::Point>& current, const std::list<vnt::Point>& next, double tolerance);

namespace vnt {

// The smooth curve through samples of points that are 5 tolerance or more apart. The first and the last
// segment have no arm at the curve's ends. No points: empty list. One: a segment of four equal points.
//
// Accuracy: before the merging the curve goes through every sample kept; what merges is bound to it by the
//           three points of simplification_cp alone, and may leave it by some tolerances between them.
// Source:   tangents as of E. Catmull, R. Rom, A Class of Local Interpolating Splines; arms of a third of the
//           chords.
std::list<Point> conv_free_to_bezier(const std::list<Point>& points, double tolerance);

} // namespace vnt
