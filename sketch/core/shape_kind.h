// What a shape is by its numbers alone, whatever it was drawn as.
//
// Space:  the sheet, or any other that is as even in both directions.
// Errors: nothing throws or reports.
#pragma once

#include "sketch/core/affine.h"
#include "sketch/core/reading.h"

namespace vnt::sketch {

// Of its size: lengths that differ by less are equal, and angles are right whose cosine is less. Far above
// what rounding does, far below what one sees.
constexpr double kSameLength = 1e-5;

// The kind that says most: a square is no rectangle, and four corners make no polygon. Closed straight pieces
// that are not convex, and more than four, are a polyline; monostate is ink.
Kind kind_of(const Shape& shape);

// Whether the map keeps every shape alike: it moves, turns, mirrors, and scales evenly.
bool keeps_angles(const Affine& map);

// What a shape of that kind is after the map: what stays alike stays what it was drawn as.
Kind kind_under(const Affine& map, Kind kind, const Shape& after);

} // namespace vnt::sketch
