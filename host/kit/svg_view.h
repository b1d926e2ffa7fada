// The view of an SVG document that an effect is told of: a window, and how its pixels lie on the artwork.
//
// Space: view space has its origin at the window's top left corner, y down; artwork is y up.
// Units: screen pixels; points.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/svg_page.h"
#include "host/kit/svg_tree.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

// Screen pixels; 16 bits as the window calls have them. right and bottom are one past the last pixel.
struct WindowRect {
    std::int16_t left, top, right, bottom;
    bool operator==(const WindowRect&) const = default;
};

// What takes the place of the document's own record.
struct ViewOptions {
    struct Window {
        double x, y, width, height; // screen pixels
    };
    std::optional<Window> window;
    std::optional<double> zoom; // screen pixels for a px of the page
    std::optional<Vec> center; // the point of the page in the window's middle, in px from its top left corner
};

struct DocumentView {
    WindowRect window;
    double zoom;
    // Neither turned nor mirrored, whatever the editor's sheet is: its a is always positive, and its d negative. An
    // effect takes a as its tolerance, and cuts arcs for ever when that is 0 or less.
    Affine view_to_artwork;
    std::vector<std::string> notes;
    // How the editor's sheet is turned, in degrees, clockwise on the screen; for people who sketch on it, no more.
    double sheet_rotation = 0;
};

// The window's size is the editor's whole window: how large its canvas is, a document does not tell. What the
// document does not say is chosen so that the page fills the window.
//
// artwork_origin: on the page, in px.
// Accuracy:       a view so far from the artwork's origin, or so near to the page, that single precision moves
//                 its points by more than 4 pixels is given up, with a note: for one of the whole page, or where
//                 that lies as far, for one around the artwork's origin at zoom 1. So is one whose numbers are
//                 not finite.
DocumentView read_view(const SvgTree& tree, const SvgPage& page, const Vec& artwork_origin,
                       const ViewOptions& options);

} // namespace vnt::host
