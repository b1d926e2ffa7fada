// The free curve of a stroke: smooth but at its corners, and closed when its ends meet.
//
// Space:  the sheet.
// Errors: nothing throws or reports.
#pragma once

#include "sketch/core/reading.h"
#include "sketch/core/signs.h"

namespace vnt::sketch {

// The path that a free curve within tolerance is fitted to: long steps rounded, as finely as the tolerance asks.
Path rounded_for_free_curve(const Path& path, double tolerance);

// The open curve along a clean path, within tolerance of it, long steps rounded.
Path free_curve_along(const Path& path, double tolerance);

// The open curve along ink, within tolerance of the line that it is seen as (ink_line.h).
Path free_curve_along(const Ink& ink, double tolerance);

// tolerance: above 0, sheet pixels.
// Accuracy:  within tolerance of the stroke's path, long steps rounded. A closed one departs from it at the
//            join: see with_ends_met. It is smooth there unless the stroke has a corner there, and ends
//            where it begins, to the bit.
Curve free_curve_of(const Signs& signs, double tolerance);

} // namespace vnt::sketch
