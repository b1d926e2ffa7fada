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

// The cubic from the first to the last point whose other points lie nearest to it at their parameters.
//
// Source: least squares over the controls, P. J. Schneider, An Algorithm for Automatically Fitting Digitized
//         Curves (Graphics Gems, 1990); along a heading the unknown is the arm's length.
Cubic nearest_cubic(const Vec2* points, const std::vector<double>& parameters, const Headings& headings);

// From one point to the next, with these headings, nowhere further than tolerance from the straight piece.
Cubic cubic_along_piece(Vec2 start, Vec2 end, const Headings& headings, double tolerance);

// Newton's step of each parameter towards the foot of its point.
void step_parameters(const Cubic& cubic, const Vec2* points, std::vector<double>& parameters);

// The points' distances at their parameters; offs is overwritten. Returns the largest.
double distances_at(const Cubic& cubic, const Vec2* points, const std::vector<double>& parameters,
                    std::vector<double>& offs);

// Whether between each two points' parameters all of the cubic is within tolerance of the straight piece
// between them. Since it gets from near the one to near the other, all of the piece is then near to it as
// well.
//
// offs: of distances_at.
bool is_along_pieces(const Cubic& cubic, const Vec2* points, const std::vector<double>& parameters,
                     const std::vector<double>& offs, double tolerance);

} // namespace vnt::sketch
