// The grid of an SVG document, and the artwork's origin, which hangs on it.
//
// Space: artwork, y up, with its origin at a crossing of the grid. An effect anchors its grid at the artwork's
//        origin whatever the document says: any other origin would snap beside the lines that people see.
// Units: points.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/svg_page.h"
#include "host/kit/svg_tree.h"

#include <cstdint>
#include <optional>

namespace vnt::host {

// What the grid suite says.
struct GridSettings {
    float spacing = 0;             // of the main lines
    std::int32_t subdivisions = 1; // parts of a main step; at least 1
    bool is_shown = false;
    bool is_snapped_to =
        false; // whether the editor snaps is not in the document; a shown grid counts as snapped to
};

struct DocumentGrid {
    GridSettings settings;
    Vec origin_on_page; // px; where the artwork's origin lies
};

// The grid is the first enabled rectangular one in document order, visible or not; no other is looked at. It is
// shown when the document shows its grids and it is visible itself, unless its steps differ in x and y: an effect
// knows squares alone. The artwork's origin is the grid's first crossing, (viewBox x + originx, viewBox y +
// originy), shown or not: it stays where it is when the grid is switched on or hidden. Without such a grid it is
// the page's top left corner.
DocumentGrid read_grid(const SvgTree& tree, const SvgPage& page);

} // namespace vnt::host
