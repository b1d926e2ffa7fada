// Where straight sides and round shapes cross and touch.
//
// Space:  the sheet.
// Errors: nothing throws or reports. What lies on one another all along, or is not finite, does not cross.
#pragma once

#include "sketch/core/reading.h"

#include <variant>

namespace vnt::sketch {

struct Side {
    Vec2 start;
    Vec2 end;
};

// An arc counts as far as it goes.
using Trace = std::variant<Side, Round>;

// All the way around, but for rounding.
bool is_whole(const Round& round);
// Whether the ellipse's point that lies where p is scaled onto it is one of the arc's, its ends included.
bool is_on_arc(const Round& round, Vec2 p);

// Of an arc: the box of its whole ellipse.
Box box_of(const Trace& trace);

// Not more than the distance from p to the trace (of an arc, to its whole ellipse).
double least_distance(Vec2 p, const Trace& trace);

// The places where they cross: two at most of a side and a round shape, four of two round ones.
//
// Accuracy: what misses by less than a 1e-9 of the round shape's size touches it, in one place.
// Source:   a side is a line in the frame in which the ellipse is the unit circle; two circles by the law of
//           cosines. Of two ellipses, the points of the smaller one go around in the frame of the other; their
//           squared distance from its origin is a trigonometric polynomial of degree two, which has four extremes
//           at most and one crossing at most between two of them.
Path crossings_of(const Trace& a, const Trace& b);

} // namespace vnt::sketch
