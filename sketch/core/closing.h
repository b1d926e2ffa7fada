// Whether a stroke comes back to where it began, and the loop that it then makes.
//
// Space:  the sheet.
// Errors: nothing throws or reports.
#pragma once

#include "sketch/core/plane.h"

namespace vnt::sketch {

struct Closing {
    Path loop;      // from the join to the join, without the ends that stand over
    double gap = 1; // between the loop's two ends, as a fraction of the way around it: 0 is closed
    // What stands over, as fractions of the path.
    double before = 0;
    double after = 0;
};

// Joins the ends of a path where they come nearest. A hand that closes a figure runs past its beginning, or
// crosses it: what stands over at either end is left out where that brings the ends together.
//
// even: evenly spaced points, as of resample.
Closing close_path(const Path& even);

// The path as a closed one, as its closing has it, but with its own points: what stands over is left out, and
// the ends are bent little by little, so that they meet half way. The last point goes on to the first.
//
// path: of two points at least.
Path with_ends_met(const Path& path, const Closing& closing);

} // namespace vnt::sketch
