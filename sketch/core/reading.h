// What a stroke can be read as.
//
// Space:  the sheet, y down.
// Units:  angles in radians, from x towards y.
// Shapes: see each shape; ink has none: the stroke stays as it was drawn.
#pragma once

#include "sketch/core/ellipse_fit.h"
#include "sketch/core/plane.h"

#include <variant>
#include <vector>

namespace vnt::sketch {

enum class Kind {
    line,
    polyline,
    triangle,
    square,
    rectangle,
    quadrilateral,
    polygon, // of five sides or more, convex
    circle,
    arc,
    ellipse,
    elliptic_arc,
    free_curve,
    ink,
};

constexpr Kind kKinds[] = {Kind::line,      Kind::polyline,      Kind::triangle,     Kind::square,
                           Kind::rectangle, Kind::quadrilateral, Kind::polygon,      Kind::circle,
                           Kind::arc,       Kind::ellipse,       Kind::elliptic_arc, Kind::free_curve,
                           Kind::ink};

// For people who measure: "elliptic arc".
const char* name_of(Kind kind);

// Straight pieces. A line has two corners. Of a closed one the last corner is joined to the first.
struct Straight {
    Path corners;
    bool closed = false;
};

// A circle (both half axes equal), an ellipse, or an arc of them: from the ellipse's parameter start on,
// sweep further. A whole one has a sweep of 2π or -2π, by the direction in which it was drawn.
struct Round {
    Ellipse ellipse;
    double start = 0;
    double sweep = 2 * kPi;
};

// Cubic Bézier segments of 4 points each: start, control, control, end; a segment's end is the next one's
// start.
struct Curve {
    Path points;
    bool closed = false;
};

using Shape = std::variant<std::monostate, Straight, Round, Curve>;

struct Reading {
    Kind kind = Kind::ink;
    double score = 0; // from 0 to 1; 1/2 is where the free curve stands, 0 is ink
    Shape shape;
};

} // namespace vnt::sketch
