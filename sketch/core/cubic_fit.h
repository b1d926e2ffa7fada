// One cubic Bézier segment along a run of points: the nearest to them, and how far it is from them.
//
// Space:  the sheet.
// Units:  parameters from 0 to 1, one for each point, that of the first 0 and of the last 1.
// Errors: nothing throws or reports; points next to each other differ.
#pragma once

#include "sketch/core/plane.h"

#include <array>
#include <optional>
#include <vector>

namespace vnt::sketch {

using Cubic = std::array<Vec2, 4>;

// Unit directions that a segment has to have, where they are given.
struct Headings {
    std::optional<Vec2> at_start;
    std::optional<Vec2> at_end;
};

// Points from the first to the last, which are two at least.
struct Run {
    const Vec2* points;
    std::size_t last;

    Vec2 start() const { return points[0]; }
    Vec2 chord() const { return points[last] - points[0]; }
};

// What a run says of a cubic's controls: the sums of least squares over their distances from the chord's
// thirds. With both there the cubic runs along its chord evenly.
struct ControlSums {
    double w11 = 0, w12 = 0, w22 = 0; // of the controls' weights
    Vec2 r1, r2;                      // of the points' distances from the chord, times the controls' weights
};
ControlSums control_sums(const Run& run, const std::vector<double>& parameters);

// The cubic from the first to the last point whose other points lie nearest to it at their parameters.
//
// Source: least squares over the controls, P. J. Schneider, An Algorithm for Automatically Fitting Digitized
//         Curves (Graphics Gems, 1990); along a heading the unknown is the arm's length.
Cubic nearest_cubic(const Run& run, const ControlSums& sums, const Headings& headings);

// From one point to the next, with these headings, nowhere further than tolerance from the straight piece.
Cubic cubic_along_piece(Vec2 start, Vec2 end, const Headings& headings, double tolerance);

// How far a cubic is off its points, and Newton's step of each parameter towards the foot of its point.
struct Step {
    double largest_square = 0;      // of the points' distances at their parameters
    bool is_number = true;          // all distances are
    std::vector<double> squares;    // of the distances
    std::vector<double> parameters; // the next ones
    ControlSums sums;               // at these
};
// Overwrites step, which keeps its memory.
void take_step(const Run& run, const Cubic& cubic, const std::vector<double>& parameters, Step& step);

// Whether between each two points' parameters all of the cubic is within tolerance of the straight piece
// between them. Since it gets from near the one to near the other, all of the piece is then near to it as
// well.
//
// squares: of the points' distances at their parameters.
bool is_along_pieces(const Run& run, const Cubic& cubic, const std::vector<double>& parameters,
                     const std::vector<double>& squares, double tolerance);

} // namespace vnt::sketch
