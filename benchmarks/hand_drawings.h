// Drawings that people made, from a file of one JSON object a line: label, key_id, and strokes as lists of
// [x, y, t] in pixels and milliseconds.
//
// Errors: std::runtime_error with the line's number.
#pragma once

#include "sketch/core/ink.h"

#include <string>
#include <vector>

namespace bench {

struct HandDrawing {
    std::string label;
    std::string key;
    vnt::sketch::Ink ink;

    // Whether settings may be chosen on it; the others tell how good they are.
    bool is_for_tuning() const;
};

// Those of a single stroke.
std::vector<HandDrawing> read_drawings(const std::string& file);

// Stretched along a direction. The times stay.
vnt::sketch::Ink stretched(vnt::sketch::Ink ink, vnt::sketch::Vec2 direction, double times);

// Along the sides of the least box about the ink, however it leans.
vnt::sketch::Vec2 side_direction(const vnt::sketch::Ink& ink);

} // namespace bench
