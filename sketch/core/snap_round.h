// Snapping of round shapes: see snapping.h for what stays as it is.
//
// Space:  the sheet.
// Errors: nothing throws or reports; what has no size stays as it is.
#pragma once

#include "sketch/core/snap_places.h"

namespace vnt::sketch {

// Centre and radius.
Snapped snap_circle(const Round& circle, const SnapPlaces& places);

// Centre, direction and half axes.
Snapped snap_ellipse(const Round& ellipse, const SnapPlaces& places);

// Of a circle or an ellipse: its ends and its centre.
Snapped snap_arc(const Round& arc, const SnapPlaces& places);

// What the circle, or the arc of one, would go through: its radius is then that of the target. None within reach.
std::optional<SnapTarget> radius_target(const Round& circle, const SnapPlaces& places);

// The same arc with its half axes in order: every point keeps its place.
Round in_order(Round round);

} // namespace vnt::sketch
