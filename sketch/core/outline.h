// The outline of a stroke as a body: its hull, how large and how long it is, how much of its hull it fills.
//
// Space:  the sheet.
// Errors: nothing throws or reports; of fewer than three points, or points on a line, the areas are 0.
#pragma once

#include "sketch/core/plane.h"

namespace vnt::sketch {

// Of the closed polygon, above 0 where it runs from x towards y. What is run around twice counts twice.
double signed_area(const Path& polygon);

// The least convex polygon about the points, run around from x towards y, without points on its sides.
// Source: A. M. Andrew, Another Efficient Algorithm for Convex Hulls in Two Dimensions (1979).
Path hull_of(Path points);

// The ellipse with the same centroid and second moments of area as the polygon: for an ellipse itself its
// half axes.
// Errors:  of a polygon without an area the half axes are 0.
// Source:  the moments as sums over the sides by Green's theorem; those of an ellipse are a²/4 and b²/4.
struct MomentAxes {
    Vec2 centroid;
    double major = 0;
    double minor = 0;
    double rotation = 0; // of the larger half axis
};
MomentAxes moment_axes(const Path& polygon);

// Longer outlines than this are made rounder by this factor only: across a thin one a hand's tremor would
// grow with it.
constexpr double kMostRounding = 4;

// The points about the centroid, stretched so that a body of these axes is as wide as it is long, with half
// axes of 1 (of less along the minor axis where it would take more than kMostRounding). What is straight
// stays straight, an ellipse becomes a circle, a parallelogram a square.
Path made_round(const Path& points, const MomentAxes& axes);
// The way back.
Path made_unround(const Path& points, const MomentAxes& axes);

} // namespace vnt::sketch
