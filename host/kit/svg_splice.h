// Where new elements go in a document's text, and with which bytes around them.
//
// Shapes: all old bytes stay, in their order, but for the / of a layer that was an empty tag. Blanks are added in
//         front of and between new elements where the layer's own end tag stands on a line of its own; where it
//         does not, or where blanks count (xml:space), nothing but the elements is added.
#pragma once

#include "host/kit/svg_tree.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace vnt::host {

class ElementSplice {
public:
    // At the end of element, behind all that is in it: that is on top of it.
    ElementSplice(const SvgTree& tree, pugi::xml_node element);

    // What an element's name in here begins with: the element's own prefix and its colon, or nothing.
    std::string_view prefix() const { return prefix_; }

    // Appends what stands in front of the first new element: the old text up to there.
    void begin(std::string& text) const;
    // Appends what stands in front of each new element.
    void before_element(std::string& text) const { text += before_; }
    // Appends what stands behind the last one, with the rest of the old text.
    void end(std::string& text) const;

private:
    void lay_out(std::string_view line_end, std::string_view indent);

    std::string_view text_;
    std::size_t from_; // the old text is taken up to here
    std::size_t to_;   // and goes on here
    std::string prefix_;
    std::string opening_; // of an element that was an empty tag
    std::string before_;
    std::string after_;
};

} // namespace vnt::host
