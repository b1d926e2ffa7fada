// What can be measured of a stroke before anybody asks what it is.
//
// Space:  the sheet.
// Units:  ratios are without a unit, and 0 is perfect unless it says otherwise.
// Errors: of a path of no length has_extent is false, and nothing else is set.
#pragma once

#include "sketch/core/closing.h"
#include "sketch/core/ink.h"
#include "sketch/core/line_fit.h"
#include "sketch/core/outline.h"
#include "sketch/core/pace.h"
#include "sketch/core/polygon_fit.h"

#include <array>
#include <cstddef>
#include <vector>

namespace vnt::sketch {

constexpr std::size_t kFewestSides = 3;
constexpr std::size_t kMostSides = 8;

// The stroke as a straight line.
struct LineSigns {
    LineFit fit;
    double unevenness = 0; // root mean square distance over the length of the line
    double detour = 0;     // how much longer the path is than the line, over the line
    double ripple = 0;     // as unevenness, from the best parabola: a hand bends what it means to be straight
};

// The stroke as a body with an outline: its join, and its outline made round.
struct BodySigns {
    Closing closing;
    Path hull;
    MomentAxes axes; // of the hull
    // The loop's area over its hull's, 1 for a convex one; of a loop run around several times its share a
    // turn.
    double fill = 0;
    // The loop's length over its hull's; 1 for a convex one; a share a turn as well.
    double way = 0;
    Path round_loop; // evenly spaced, see made_round
    double oval_error =
        0; // root mean square distance of round_loop from its ellipse; its mean radius is about 1
    std::vector<Chain>
        chains; // closed ones around the loop, of kFewestSides to kMostSides sides, corners on the sheet
    // For each chain its error over that of the best one around a circle: about 1 for what is round, 0 for
    // straight sides. A gap takes nothing away: one of the sides runs along it.
    std::vector<double> bends;
    // Of all that the outline turns, the share at the corners: see signs.cpp. 3/8 is a circle, 1 has corners
    // only.
    double turn_at_corners = 0;

    std::size_t corners = 0; // of round_loop, but for its ends; see corners.h
    double turn_at_join = 0; // by which it turns where its ends meet: from 0 to π

    double bend(std::size_t sides) const { return bends[sides - kFewestSides]; }
    const Chain& chain(std::size_t sides) const { return chains[sides - kFewestSides]; }
};

// The stroke as straight pieces: of its loop, when it is closed, else of all of it.
struct ChainSigns {
    bool is_closed = false; // its last corner is joined to the first
    Chain chain;
    std::size_t corners = 0; // of the path, but for its ends; see corners.h
    double bend = 1;         // its error over that of a curve that turns as much: see chain_error_of_curve
};

struct Signs {
    bool has_extent = false;
    Path path; // clean, without hooks
    Path even;
    double length = 0;   // of even: the steps of a mouse's pixels do not count
    double diagonal = 0; // of its box
    Pace pace;
    LineSigns line;
    ChainSigns pieces;
    bool has_body = false; // the loop has an area
    BodySigns body;
};

Signs measure(const Ink& ink);

} // namespace vnt::sketch
