// The corners of a stroke: where a hand changed its direction at once, not little by little.
//
// Space:  the sheet.
// Errors: nothing throws or reports; of fewer than three points all are corners.
// Source: A. Wolin, B. Eoff, T. Hammond, ShortStraw: A Simple and Effective Corner Finder for Polylines (SBIM
//         2008), for the straws, their threshold and the test of three in a line; Y. Xiong, J. J. LaViola, A
//         ShortStraw-based Algorithm for Corner Finding in Sketch-based Interfaces (Computers & Graphics
//         2010), for the straws near the ends and for telling corners from curves. Their use of the pen's
//         speed is left out: a mouse has none to trust.
#pragma once

#include "sketch/core/plane.h"

#include <cstddef>
#include <vector>

namespace vnt::sketch {

// The path's points that are corners, rising; its two ends are among them.
std::vector<std::size_t> find_corners(const Path& path);

// The corners of a closed path, whose last point goes on to the first: those two are points like any others.
std::vector<std::size_t> find_closed_corners(const Path& path);

} // namespace vnt::sketch
