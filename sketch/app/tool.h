// The tools, and what a stroke drawn with one of them can be read as.
#pragma once

#include "sketch/core/recognition.h"

#include <vector>

enum class Tool {
    pen,
    line,
    polyline,
    triangle,
    rectangle,
    polygon,
    circle,
    arc,
    ellipse,
    ellipticArc,
    freeCurve,
    eraser,
    select,
    hand
};

bool draws(Tool tool); // pen, or one that forces a reading
bool forcesReading(Tool tool);

// The readings of a stroke, best first and ink last. A tool that forces one has it first, however small the
// stroke is; near kinds of it follow: of a rectangle the square, of one arc the other, of a polygon the
// figures of three and four sides, and the likeliest of these first.
std::vector<vnt::sketch::Reading> toolReadings(Tool tool, const vnt::sketch::Ink& ink,
                                               const vnt::sketch::RecognitionSettings& settings);
