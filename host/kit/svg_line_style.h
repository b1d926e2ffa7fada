// The style of a new path: a thin black line of 1 pt on the page, not filled.
//
// Shapes: a path inherits from what it stands in. What would dash, mark, cap, join or fade the line is written down
//         with its initial value where an element around the path sets it, as an attribute or in its style. A
//         style sheet is not understood: a property whose name stands in one counts as set. Sheets outside the
//         document are not looked at.
//         What is not inherited, as opacity and clips, acts on the layer as a whole and stays: it is the drawing's
//         own business. So does visibility, of which svg_layer.h makes a note.
#pragma once

#include "host/kit/affine.h"
#include "host/kit/svg_tree.h"

#include <string>
#include <vector>

namespace vnt::host {

// "fill:none;stroke:#000000;stroke-width:1.3333333", and what else it takes.
//
// path: from the outermost element to the one that the line goes into.
std::string thin_line_style(const SvgTree& tree, const std::vector<PathStep>& path,
                            const Affine& layer_to_page);

} // namespace vnt::host
