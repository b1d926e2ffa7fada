// Chains of straight sides through a path: closed ones of a given number of sides, open ones of as few as it
// takes.
//
// Space:  the sheet.
// Shapes: points are evenly spaced, as of resample. Around a closed path the last point is followed by the
//         first, whatever lies between them: a gap is bridged by the side that runs through it, or by a
//         corner.
// Errors: nothing throws or reports; where there are fewer points than corners the chain is empty.
// Source: the sides are the best of all by dynamic programming over where they meet: J.-C. Perez, E. Vidal,
//         Optimum Polygonal Approximation of Digitized Curves (Pattern Recognition Letters 1994), each side
//         the line of total least squares through its points; the number of sides of open chains by a price a
//         side, B. Jackson et al., An Algorithm for Optimal Partitioning of Data on an Interval (IEEE Signal
//         Processing Letters 2005).
#pragma once

#include "sketch/core/plane.h"

#include <cstddef>
#include <vector>

namespace vnt::sketch {

struct Chain {
    Path corners;                      // of an open chain with its two ends
    std::vector<std::size_t> meetings; // for each corner the path's point at which the sides meet
    double root_mean_square = 0;       // of the points' distances from their sides
};

// The closed chains of 3 to most_sides sides, in this order.
std::vector<Chain> fit_closed_chains(const Path& points, std::size_t most_sides);

// The open chain whose squared distances, plus price for each side, are least. A side that the path goes
// along there and back costs more than two.
Chain fit_open_chain(const Path& points, double price);

// The open chain as a closed one: its two ends become one corner where their sides meet, or none where they
// go on in one another. It has no meetings.
Chain with_ends_joined(Chain chain);

// root_mean_square of the best closed chain of so many sides around a circle of radius 1.
// Source: a side's points are at cos φ from the centre, φ from -π/n to π/n; their variance.
double chain_error_of_circle(std::size_t sides);

// root_mean_square of the open chain, if each of its sides were an arc that turns by half of what the chain
// turns at the side's ends (at the chain's two ends, by as much as at the side's other one).
// Source: an arc of length s that turns by θ is a parabola s θ (1 - 4 u²) / 8 off its chord to first order;
//         the root of its variance is s θ / (12 √5).
double chain_error_of_curve(const Chain& chain);

} // namespace vnt::sketch
