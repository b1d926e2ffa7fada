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
};

// Joins the ends of a path where they come nearest. A hand that closes a figure runs past its beginning, or
// crosses it: what stands over at either end is left out where that brings the ends together.
//
// even: evenly spaced points, as of resample.
Closing close_path(const Path& even);

} // namespace vnt::sketch
