// The line that ink is seen as: on the screen, in pictures, and by the editor that gets it.
//
// Space:  the sheet.
// Errors: nothing throws or reports; of ink that is none (no finite point) the line is empty.
#pragma once

#include "sketch/core/ink.h"

#include <vector>

namespace vnt::sketch {

struct InkLine {
    Path places;
    std::vector<float> pressures; // at each of them
};

// Through all points of the clean ink, its long steps rounded (resampling.h): they stand as a curve would.
//
// A point that is added to the ink's end changes nothing of the line before the last kUnsettled points.
InkLine ink_line(const Ink& ink);

// The part of it from the ink's point from to its point to, or where these are none of the clean ink to the next
// one: parts that follow one another have a place in common. to may be the ink's size: to the end.
//
// Of ink without runs of 20 points that are dropped (ink.h) it is the whole ink's line to the bit; only kAroundPart
// points are looked at on either side.
InkLine ink_line_part(const Ink& ink, std::size_t from, std::size_t to);

// Sheet pixels; a step that is longer is rounded. A turn of 1 over a step of 8 has a height of 1: of 2, of a
// quarter of a pixel.
constexpr double kLongInkStep = 2;

// Points on either side of a part that tell how its line runs: what is at an end there need be none of the whole
// ink's, and spikes do not count.
constexpr std::size_t kAroundPart = 21;

// Three steps behind a point tell whether it is a spike, and two more points how the steps beside it bend.
constexpr std::size_t kUnsettled = 7;

} // namespace vnt::sketch
