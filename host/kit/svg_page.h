// The page of an SVG document: its size, and how user units lie on it.
//
// Space: user space is the document's, y down; page space has its origin at the page's top left corner, y down.
// Units: px on the page.
// Source: Scalable Vector Graphics (SVG) 1.1, chapter 7, "Coordinate Systems, Transformations and Units". Where
//         renderers differ the page is as Inkscape 1.2 shows it, since it is there that people draw: a size that
//         is missing is 100% of the viewBox, or of A4 without one (librsvg completes it by the viewBox's
//         proportions), and a transform of an svg element, the outermost or one inside, does nothing (librsvg
//         heeds it). Not as in Inkscape: a size in em or ex hangs on a font, and counts as missing. Inkscape
//         makes a size of it, which was not the same in all documents that were tried.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/svg_tree.h"

#include <optional>
#include <string_view>

namespace vnt::host {

struct ViewBox {
    double x, y, width, height;
};

// None when it does not hold four numbers, or a size that is not positive.
std::optional<ViewBox> try_read_view_box(std::string_view text);

// Where a viewBox lies in a viewport of this size.
//
// preserve_aspect_ratio: the attribute's value; one that is not understood, or none, is xMidYMid meet.
Affine view_box_to_viewport(const ViewBox& box, std::string_view preserve_aspect_ratio, double width,
                            double height);

struct SvgPage {
    double width_px;
    double height_px;
    Affine user_to_page;
    Vec view_box_corner; // the viewBox's x and y, in user units; 0, 0 without one
    Vec viewport;        // what a per cent of a length is a hundredth of, in user units
};

SvgPage read_page(const SvgTree& tree);

// What a transform attribute, or instead of it the x, y and viewBox of an svg element inside the document, make
// of an element's coordinates: those of its content in those of its parent.
struct ElementSpace {
    Affine content_to_parent;
    Vec viewport;                   // as above, for what is inside
    bool has_bad_transform = false; // a transform that cannot be understood counts as none, as in the editor
};
ElementSpace space_of(const SvgTree& tree, const PathStep& step, const Vec& viewport_outside);

} // namespace vnt::host
