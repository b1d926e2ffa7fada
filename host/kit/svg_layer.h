// The layer of an SVG document that new art goes to.
//
// Space: layer space is what coordinates in the layer are written in; page space as in svg_page.h.
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
    Affine layer_to_page;
    Affine page_to_layer;
    std::vector<std::string>
        notes; // what people should know of the choice; whole sentences, without an end stop
};

// The element that the editor's own record (sodipodi:namedview, inkscape:current-layer) names, which may be a
// group of any depth or the document's outermost element. Without a record, or when nothing can be seen there,
// the topmost layer; without layers the outermost element.
//
// A hidden or locked layer is drawn into all the same, with a note: the art of a long sketch is better in a
// layer that must be made visible than lost, and no other layer is the one that was asked for.
//
// Errors: a layer whose transform flattens it cannot be drawn into.
Result<DrawingLayer> find_current_layer(const SvgTree& tree, const SvgPage& page, const std::string& name);

// The editor's record of the view, grids and current layer; a null node when there is none.
pugi::xml_node find_named_view(const SvgTree& tree);

} // namespace vnt::host
