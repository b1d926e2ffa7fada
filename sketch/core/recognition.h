// What a stroke was meant to be: its readings, the likeliest first.
//
// Space:  the sheet, y down.
// Errors: nothing throws or reports. Of a stroke without an extent, or whose every point is not finite, ink
//         is the only reading.
// Source: the idea of asking every kind of shape in turn, how well it explains the stroke, and of keeping all
//         answers: B. Paulson, T. Hammond, PaleoSketch: Accurate Primitive Sketch Recognition and
//         Beautification (IUI 2008). What is asked here is others' and our own: see signs.h, and
//         docs/recognition.md for how it was measured.
#pragma once

#include "sketch/core/ink.h"
#include "sketch/core/reading.h"

#include <optional>
#include <vector>

namespace vnt::sketch {

struct RecognitionSettings {
    // How far a stroke may be from a shape: 1 is usual, 2 forgives twice as much, towards 0 all stays a free
    // curve.
    double tolerance = 1;
    // Screen pixels; a stroke whose box has a shorter diagonal stays ink.
    double least_size_px = 12;
    // Screen pixels a sheet pixel.
    double view_scale = 1;
    // Screen pixels by which a free curve may leave the stroke; grows with tolerance.
    double curve_tolerance_px = 0.5;
    // The only reading besides ink, as well as it can be made of the stroke, however small that is.
    std::optional<Kind> forced;
};

// The readings, the best first and ink last. Without a forced one a free curve is always among them, and of a
// stroke that comes back to its beginning circle, ellipse and polygon as well.
std::vector<Reading> recognise(const Ink& ink, const RecognitionSettings& settings = {});

} // namespace vnt::sketch
