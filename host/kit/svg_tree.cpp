#include "host/kit/svg_tree.h"

#include "host/kit/svg_numbers.h"
#include "host/kit/xml_check.h"

namespace vnt::host {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

struct SplitName {
    std::string_view prefix;
    std::string_view local;
};

SplitName split(std::string_view name)
{
    const std::size_t colon = name.find(':');
    if (colon == name.npos)
        return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

// Why bytes are no text that the tokens can be looked for in; empty when they are one.
std::string unreadable_because(std::string_view bytes)
{
    if (bytes.empty())
        return "it is empty";
    if (bytes.starts_with("\x1F\x8B"))
        return "it is compressed; unpack it first (gunzip < drawing.svgz > drawing.svg)";
    if (bytes.starts_with("\xFE\xFF") || bytes.starts_with("\xFF\xFE") ||
        bytes.substr(0, 4).find('\0') != bytes.npos)
        return "it is not in UTF-8; save it in that encoding";
    return {};
}

Problem problem_of(const std::string& name, const std::string& why)
{
    return {"cannot read " + name + " as SVG: " + why};
}

Problem problem_at(const std::string& name, std::string_view text, const XmlFault& fault)
{
    const TextPosition at = position_of(text, fault.offset);
    return problem_of(name, "line " + std::to_string(at.line) + ", column " + std::to_string(at.column) +
                                ": " + fault.what + "; mend it, or save it again from a drawing program");
}

} // namespace

Result<std::unique_ptr<SvgTree>> SvgTree::read(const std::string& name, std::string bytes)
{
    if (const std::string why = unreadable_because(bytes); !why.empty())
        return problem_of(name, why);
    std::unique_ptr<SvgTree> tree(new SvgTree);
    tree->bytes_ = std::move(bytes);
    tree->mark_size_ = tree->bytes_.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
    const std::string_view text = tree->text();
    if (!has_ascii_markup(text))
        return problem_of(name, "its encoding is not UTF-8; save it in that encoding");
    if (const std::optional<XmlFault> fault = find_fault(text, tree->entities_))
        return problem_at(name, text, *fault);
    const pugi::xml_parse_result parsed =
        tree->document_.load_buffer(text.data(), text.size(), pugi::parse_minimal, pugi::encoding_utf8);
    if (!parsed)
        return problem_at(name, text, {static_cast<std::size_t>(parsed.offset), parsed.description()});
    tree->root_ = tree->document_.document_element();
    const SplitName root = split(tree->root_.name());
    tree->svg_namespace_ = tree->namespace_of(tree->root_, root.prefix);
    const bool in_svg =
        tree->svg_namespace_ == kSvgNamespace || (tree->svg_namespace_.empty() && root.prefix.empty());
    if (root.local != "svg" || !in_svg)
        return problem_of(name, "its outermost element is <" + std::string(tree->root_.name()) +
                                    ">, which is not SVG's; choose an SVG file");
    return tree;
}

std::string SvgTree::namespace_of(pugi::xml_node element, std::string_view prefix) const
{
    if (prefix == "xml")
        return "http://www.w3.org/XML/1998/namespace";
    const std::string declaration = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
    for (; element.type() == pugi::node_element; element = element.parent()) {
        if (const pugi::xml_attribute found = element.attribute(declaration.c_str()))
            return entities_.expand(found.value());
    }
    return {};
}

bool SvgTree::is_svg(pugi::xml_node element, std::string_view name) const
{
    return is_of(element, svg_namespace_, name);
}

bool SvgTree::is_of(pugi::xml_node element, std::string_view space, std::string_view name) const
{
    const SplitName own = split(element.name());
    return own.local == name && element.type() == pugi::node_element &&
           namespace_of(element, own.prefix) == space;
}

std::optional<std::string> SvgTree::attribute(pugi::xml_node element, std::string_view name) const
{
    for (const pugi::xml_attribute found : element.attributes()) {
        if (name == found.name())
            return entities_.expand(found.value());
    }
    return std::nullopt;
}

std::optional<std::string> SvgTree::attribute(pugi::xml_node element, std::string_view space,
                                              std::string_view name) const
{
    for (const pugi::xml_attribute found : element.attributes()) {
        const SplitName own = split(found.name());
        if (own.local == name && !own.prefix.empty() && namespace_of(element, own.prefix) == space)
            return entities_.expand(found.value());
    }
    return std::nullopt;
}

std::optional<std::string> SvgTree::property(pugi::xml_node element, std::string_view name) const
{
    const std::string style = attribute(element, "style").value_or("");
    std::optional<std::string> value;
    for (std::string_view rest = style; !rest.empty();) {
        const std::string_view declaration = rest.substr(0, rest.find(';'));
        rest.remove_prefix(std::min(declaration.size() + 1, rest.size()));
        const std::size_t colon = declaration.find(':');
        if (colon != declaration.npos && without_blanks(declaration.substr(0, colon)) == name)
            value = without_blanks(declaration.substr(colon + 1)); // the last one counts
    }
    return value ? value : attribute(element, name);
}

pugi::xml_node SvgTree::find_id(std::string_view id) const
{
    for (pugi::xml_node node = root_; node; node = next_in_document(node, root_)) {
        const pugi::xml_attribute own = node.attribute("id");
        if (own && entities_.expand(own.value()) == id)
            return node;
    }
    return {};
}

pugi::xml_node next_in_document(pugi::xml_node node, pugi::xml_node root)
{
    if (const pugi::xml_node child = node.first_child())
        return child;
    while (node != root) {
        if (const pugi::xml_node sibling = node.next_sibling())
            return sibling;
        node = node.parent();
    }
    return {};
}

} // namespace vnt::host
