// Ink as a pen, a mouse or a finger leaves it, and the path that is left when its faults are taken out.
//
// Space:  the sheet, y down, in pixels of the sheet at a view scale of 1.
// Units:  times in milliseconds, pressures from 0 to 1.
// Errors: nothing throws or reports; of ink that is none (no finite point) the path is empty.
#pragma once

#include "sketch/core/plane.h"

#include <vector>

namespace vnt::sketch {

struct InkPoint {
    double x = 0;
    double y = 0;
    double time_ms = 0;
    double pressure = 1;
};

using Ink = std::vector<InkPoint>;

// The places of the ink, in their order, without
//   - points that are not finite, or further than kFarthest from the origin,
//   - points that repeat the one before them,
//   - spikes: one point far off a path that goes on beside it as if it had not been.
// Times and pressures have no say here: devices that send none, or wrong ones, give the same path.
Path clean_path(const Ink& ink);
// The same with their times and pressures.
Ink clean_ink(const Ink& ink);

// Sheet pixels. No screen reaches as far; beyond it squares of squares would leave the range of doubles.
constexpr double kFarthest = 1e9;

} // namespace vnt::sketch
