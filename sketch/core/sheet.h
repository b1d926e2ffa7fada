// The sheet that one draws on: the editor's viewport, or a page of one's own when no editor waits.
//
// Space:  the sheet, y down, origin at its top left corner, in the editor's view pixels; model space is the
//         artwork, y up, in points; grid space has the crossings of the finest grid lines at whole numbers.
#pragma once

#include "sketch/core/affine.h"

#include <optional>

namespace vnt::sketch {

struct Grid {
    Affine grid_to_sheet;
    int subdivisions =
        1; // of these steps make one of the document's grid: every so manieth line is a main one
};

struct Sheet {
    double width = 1123; // A4 across, at 96 pixels an inch
    double height = 794;
    Affine sheet_to_model{0.75, 0, 0, -0.75, 0, 595.5};
    // The editor's first view matrix element, to which the plug-in cuts arcs and welds; 0 or below, or not
    // finite: it must not be sent an arc.
    double tolerance = 0.75;
    std::optional<Grid> grid;
};

} // namespace vnt::sketch
