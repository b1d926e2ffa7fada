// Snapping: what is near enough to a grid crossing, or to what is drawn already, goes there.
//
// Space:  the sheet; reaches in screen pixels, by the view scale.
// Units:  angles in radians, from x towards y.
// Errors: nothing throws or reports; what does not snap stays as it is.
#pragma once

#include "sketch/core/reading.h"
#include "sketch/core/sheet.h"
#include "sketch/core/snap_scene.h"

#include <optional>
#include <vector>

namespace vnt::sketch {

// Screen pixels; a grid whose lines are closer counts by its main lines, and not at all when those are.
constexpr double kLeastGridStepPx = 4;

struct SnapSettings {
    double reach_px = 8;   // screen pixels
    double view_scale = 1; // screen pixels a sheet pixel
    bool to_grid = true;
    bool to_shapes = true;
    bool to_angles = true;
    double angle_step = kPi / 12;  // 15°
    double angle_reach = kPi / 60; // 3°
};

// Where p would go: a place of what is drawn, else a grid crossing; none when nothing is within reach.
std::optional<SnapTarget> snap_point(Vec2 p, const SnapScene& scene, const std::optional<Grid>& grid,
                                     const SnapSettings& settings);

struct Snapped {
    Shape shape;
    std::vector<SnapTarget> marks; // what it went to, for the markers
};

// The shape with its ends, corners, centre and radii on what they are near to. Places first; what no place holds
// is turned to the next step of 15° when it is near that. No end, corner, centre or radius goes to a place further
// than the reach; what is drawn and has to follow it goes no further than twice that.
//
// kind:  a figure keeps its kind:
//   - A square stays a square, a rectangle's corners stay right angles: it is moved, turned and stretched so that
//     as many corners as can be lie on places, and is turned no more than it must be. A polygon whose sides and
//     angles are all the same stays such, as a square does: somebody made it regular.
//   - Of all others made of sides every corner goes its own way. Two never go to the same place (the nearer one
//     does), but for the two ends of a polyline of three sides or more; no side shrinks to less than a quarter,
//     and no figure to less than a quarter of its area: the corner that went furthest stays behind.
//   - A circle stays one: first its centre, then its radius, so that it passes through what is nearest to it, else
//     to whole steps of a grid of squares. An ellipse's half axes likewise.
//   - An arc stays one, its ends and its centre (where one sees it: from an eighth of a turn on) on as many places
//     as can be at once. With its ends alone it keeps its bend, with its centre alone its ends go to angles.
//   - A free curve's ends go to places, and what lies between follows, less and less from each end; it stays as
//     smooth as it was. A closed one has no ends.
// monostate stays.
Snapped snap_shape(const Shape& shape, Kind kind, const SnapScene& scene, const std::optional<Grid>& grid,
                   const SnapSettings& settings);

} // namespace vnt::sketch
