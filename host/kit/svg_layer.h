// The layer of an SVG document that new art goes to.
//
// Space: layer space is what coordinates in the layer are written in; user space what those of the document's outermost
//        element are; page space as in svg_page.h.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/result.h"
#include "host/kit/svg_page.h"
#include "host/kit/svg_tree.h"

#include <string>
#include <vector>

namespace vnt::host {

struct DrawingLayer {
    pugi::xml_node element;
    std::vector<PathStep> path; // from the outermost element to it
    Affine layer_to_page;
    Affine page_to_layer;
    Affine layer_to_user;
    std::vector<std::string>
        notes; // what people should know of the choice; whole sentences, without an end stop
};

// The element that the editor's own record (sodipodi:namedview, inkscape:current-layer) names: an svg, g or a
// of any depth, the document's outermost element too, with nothing but svg, g, a and switch of SVG around it.
// In all else (defs, symbols, elements of other namespaces) nothing is drawn where it stands. Which child of a
// switch is chosen is not looked at. Without a record, or when it names no such element, the topmost layer;
// without layers the outermost element.
//
// A hidden (display, visibility) or locked layer is drawn into all the same, with a note: the art of a long
// sketch is better in a layer that must be made visible than lost, and no other layer is the one that was asked
// for. Style sheets are not looked at for that.
//
// Errors: a layer whose transform flattens it cannot be drawn into.
Result<DrawingLayer> find_current_layer(const SvgTree& tree, const SvgPage& page, const std::string& name);

// The element of an id, where it can be drawn into in the sense above; else the current layer, and the one note says
// why.
DrawingLayer find_layer(const SvgTree& tree, const SvgPage& page, const std::string& id,
                        const DrawingLayer& current);

// The editor's record of the view, grids and current layer; a null node when there is none.
pugi::xml_node find_named_view(const SvgTree& tree);

} // namespace vnt::host
