// The pace of a pen: where it rested on its way. A hand that draws a polygon rests at the corners, one that
// draws a circle does not.
//
// Units:  times in milliseconds.
// Errors: nothing throws or reports. Times that are not finite, run backwards, are all one, or were made up
//         evenly along the way say nothing: is_known is false.
#pragma once

#include "sketch/core/ink.h"

#include <cstddef>

namespace vnt::sketch {

struct Pace {
    bool is_known = false;
    std::size_t rests = 0; // away from the two ends
};

Pace pace_of(const Ink& ink);

} // namespace vnt::sketch
