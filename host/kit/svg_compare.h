// Whether a text that was made of an SVG document still is that document, with new elements in it.
#pragma once

#include "host/kit/svg_tree.h"

#include <string>
#include <vector>

namespace vnt::host {

// Takes the new elements, the last ones of layer's twin, out of after, and compares the rest element by element,
// with attributes and text, blanks behind a text aside. Comments, instructions, CDATA sections and what stands
// around the outermost element are not looked at. Empty when all is as it should be; else a phrase that says what
// is not.
//
// layer:   a node of before.
// new_ids: those of the new elements, in their order.
std::string find_difference(const SvgTree& before, pugi::xml_node layer, const SvgTree& after,
                            const std::vector<std::string>& new_ids);

} // namespace vnt::host
