// Snapping of what is made of straight sides: see snapping.h for what stays as it is.
//
// Space:  the sheet.
// Errors: nothing throws or reports; of fewer than two corners nothing changes.
#pragma once

#include "sketch/core/snap_places.h"

namespace vnt::sketch {

// Each corner its own way.
Snapped snap_corners(const Straight& straight, const SnapPlaces& places);

// Four corners that stay right angles.
Snapped snap_rectangle(const Straight& rectangle, const SnapPlaces& places);

// A closed figure of any number of corners that keeps its form.
Snapped snap_form(const Straight& figure, const SnapPlaces& places);

// Whether all sides and all angles are the same, but for rounding.
bool is_regular(const Straight& figure);

// Whether the corners still make the figure that they made: no side that shrank to less than a quarter or turned
// around, and of a closed one no area that did.
bool is_like(const Path& corners, const Path& before, bool closed);

} // namespace vnt::sketch
