// The outline of ink that is broader here and narrower there: what a drawing program fills to show it.
//
// Space:    the sheet.
// Errors:   nothing throws or reports; of no places there is no outline.
// Accuracy: within 3 tolerances of the discs at the places and what lies between each and the next.
#pragma once

#include "sketch/core/plane.h"

#include <vector>

namespace vnt::sketch {

// Of the circle about an end of the ink, from one side to the other, around the ink's outside.
struct RoundEnd {
    double radius = 0;
    bool is_long = false; // more than half of the circle
};

// One part of the ink that has no corner. Filled together, the parts are the ink: each is run around from x towards
// y, and they lie over one another where they meet.
struct OutlinePart {
    // Cubic segments of 4 points each: along the ink on its left as one sees it who follows it, and back on its
    // right. Both empty: a disc.
    Path there;
    Path back;
    RoundEnd at_start;
    RoundEnd at_end;
    Vec2 middle; // of a disc; its radius is at_start's
};

// radii:     one for each place, above 0.
// tolerance: above 0.
std::vector<OutlinePart> ink_outline(const Path& places, const std::vector<double>& radii, double tolerance);

} // namespace vnt::sketch
