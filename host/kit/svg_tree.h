// The elements of an SVG text, for queries. The text is never written from them: each knows where it stands.
//
// Shapes: a name is a namespace and a local name; which prefix stands for a namespace is the document's choice.
// Owner:  a tree keeps the text that it was made of; its nodes live as long as it does.
#pragma once

#include "host/kit/result.h"
#include "host/kit/xml_entities.h"

#include <pugixml.hpp>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vnt::host {

constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
constexpr std::string_view kInkscapeNamespace = "http://www.inkscape.org/namespaces/inkscape";
constexpr std::string_view kSodipodiNamespace = "http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd";
// Of some old documents. Whoever asks for the one above finds what is in this one too.
constexpr std::string_view kOldSodipodiNamespace = "http://inkscape.sourceforge.net/DTD/sodipodi-0.dtd";

// One element on the way from the outermost one to another.
struct PathStep {
    pugi::xml_node element;
    bool is_group = false;    // an svg, g, a or switch of SVG: what is in it is drawn where it stands
    bool is_viewport = false; // an svg of SVG
    bool is_locked = false;   // the editor takes any value of sodipodi:insensitive for a lock
};

class SvgTree {
public:
    // name: what the sentence of a problem calls the text.
    static Result<std::unique_ptr<SvgTree>> read(const std::string& name, std::string bytes);

    SvgTree(const SvgTree&) = delete;
    SvgTree& operator=(const SvgTree&) = delete;

    const std::string& bytes() const { return bytes_; }

    // The text behind a byte order mark.
    std::string_view text() const { return std::string_view(bytes_).substr(mark_size_); }
    std::string_view byte_order_mark() const { return std::string_view(bytes_).substr(0, mark_size_); }

    // The outermost svg element.
    pugi::xml_node root() const { return root_; }

    // Where an element's start tag begins in the text.
    std::size_t offset_of(pugi::xml_node element) const
    {
        return static_cast<std::size_t>(element.offset_debug()) - 1; // the name stands behind the <
    }

    // Whether element is what SVG calls name. Documents without any namespace count as SVG.
    bool is_svg(pugi::xml_node element, std::string_view name) const;
    bool is_of(pugi::xml_node element, std::string_view space, std::string_view name) const;

    // The value of an attribute without a namespace, or of one in a namespace.
    std::optional<std::string> attribute(pugi::xml_node element, std::string_view name) const;
    std::optional<std::string> attribute(pugi::xml_node element, std::string_view space,
                                         std::string_view name) const;

    // A property as the element itself gives it: in its style attribute, without comments and with !important
    // heeded, else in the attribute of that name. Style sheets are not looked at.
    std::optional<std::string> property(pugi::xml_node element, std::string_view name) const;

    // The first element in document order that has this id; a null node when none has.
    pugi::xml_node find_id(std::string_view id) const;

    // From the outermost element to element, in time that is proportional to what stands there.
    std::vector<PathStep> path_to(pugi::xml_node element) const;

    // Whether the text of a style sheet in the document holds word.
    bool style_sheets_hold(std::string_view word) const;

private:
    SvgTree() = default;
    std::string namespace_of(pugi::xml_node element, std::string_view prefix) const;

    std::string bytes_;
    std::size_t mark_size_ = 0;
    pugi::xml_document document_;
    pugi::xml_node root_;
    XmlEntities entities_;
    std::string svg_namespace_; // of the root: SVG's, or none
};

// The node behind node in document order within root: its first child, else what follows it or an ancestor.
pugi::xml_node next_in_document(pugi::xml_node node, pugi::xml_node root);

// Text of a document as sentences can quote it: bytes that are no UTF-8, as in documents of other encodings, and
// control characters are written as \xE9.
std::string quotable(std::string_view text);

} // namespace vnt::host
