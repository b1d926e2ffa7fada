#include "host/kit/svg_tree.h"

#include "host/kit/svg_numbers.h"
#include "host/kit/utf8.h"
#include "host/kit/xml_check.h"

#include <algorithm>
#include <functional>
#include <map>

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
                                ": " + quotable(fault.what) +
                                "; mend it, or save it again from a drawing program");
}

bool is_same_space(std::string_view own, std::string_view wanted)
{
    return own == wanted || (wanted == kSodipodiNamespace && own == kOldSodipodiNamespace);
}

// The namespaces that are bound at one element after the other, downwards.
class BoundNamespaces {
public:
    explicit BoundNamespaces(const XmlEntities& entities) : entities_(entities) {}

    void enter(pugi::xml_node element)
    {
        for (const pugi::xml_attribute attribute : element.attributes()) {
            const std::string_view name = attribute.name();
            if (name == "xmlns" || name.starts_with("xmlns:"))
                bound_[std::string(name.substr(std::min<std::size_t>(name.size(), 6)))] =
                    entities_.expand(attribute.value());
        }
    }

    std::string_view of(std::string_view prefix) const
    {
        const auto found = bound_.find(prefix);
        return found == bound_.end() ? std::string_view() : found->second;
    }

private:
    const XmlEntities& entities_;
    std::map<std::string, std::string, std::less<>> bound_; // by prefix
};

bool is_group_name(std::string_view local)
{
    return local == "svg" || local == "g" || local == "a" || local == "switch";
}

// Takes a declaration and the semicolon behind it; comments are left out of it. Neither counts in a string or
// between parentheses.
std::string take_declaration(std::string_view& style)
{
    std::string declaration;
    char quote = '\0';
    int open = 0;
    while (!style.empty()) {
        const char c = style.front();
        if (quote == '\0' && style.starts_with("/*")) {
            const std::size_t end = style.find("*/", 2);
            style.remove_prefix(end == style.npos ? style.size() : end + 2);
            continue;
        }
        style.remove_prefix(1);
        if (c == ';' && quote == '\0' && open == 0)
            break;
        if (quote != '\0')
            quote = c == quote ? '\0' : quote;
        else if (c == '"' || c == '\'')
            quote = c;
        else if (c == '(' || c == ')')
            open = std::max(open + (c == '(' ? 1 : -1), 0);
        declaration += c;
    }
    return declaration;
}

// Takes !important from the end of a value; whether it was there.
bool take_important(std::string_view& value)
{
    const std::size_t mark = value.rfind('!');
    if (mark == value.npos || without_blanks(value.substr(mark + 1)) != "important")
        return false;
    value = without_blanks(value.substr(0, mark));
    return true;
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
        return problem_of(name, "its outermost element is <" + quotable(tree->root_.name()) +
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
           is_same_space(namespace_of(element, own.prefix), space);
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
        if (own.local == name && !own.prefix.empty() &&
            is_same_space(namespace_of(element, own.prefix), space))
            return entities_.expand(found.value());
    }
    return std::nullopt;
}

std::optional<std::string> SvgTree::property(pugi::xml_node element, std::string_view name) const
{
    if (!element.first_attribute())
        return std::nullopt; // as most groups of a deep document
    const std::string style = attribute(element, "style").value_or("");
    std::optional<std::string> value;
    bool is_important = false;
    for (std::string_view rest = style; !rest.empty();) {
        const std::string taken = take_declaration(rest);
        const std::string_view declaration = taken;
        const std::size_t colon = declaration.find(':');
        if (colon == declaration.npos || without_blanks(declaration.substr(0, colon)) != name)
            continue;
        std::string_view found = without_blanks(declaration.substr(colon + 1));
        const bool important = take_important(found);
        if (important || !is_important)
            value = found; // the last one counts, of the important ones if there are such
        is_important = is_important || important;
    }
    if (value)
        return value;
    const std::optional<std::string> plain = attribute(element, name);
    return plain ? std::optional<std::string>(without_blanks(*plain)) : std::nullopt;
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

std::vector<PathStep> SvgTree::path_to(pugi::xml_node element) const
{
    std::vector<PathStep> path;
    for (; element != root_; element = element.parent())
        path.push_back({element});
    path.push_back({root_});
    std::reverse(path.begin(), path.end());
    BoundNamespaces bound(entities_);
    for (PathStep& step : path) {
        bound.enter(step.element);
        const SplitName name = split(step.element.name());
        const bool is_svg = bound.of(name.prefix) == svg_namespace_;
        step.is_group = is_svg && is_group_name(name.local);
        step.is_viewport = is_svg && name.local == "svg";
        for (const pugi::xml_attribute attribute : step.element.attributes()) {
            const SplitName own = split(attribute.name());
            step.is_locked = step.is_locked || (own.local == "insensitive" && !own.prefix.empty() &&
                                                is_same_space(bound.of(own.prefix), kSodipodiNamespace));
        }
    }
    return path;
}

bool SvgTree::style_sheets_hold(std::string_view word) const
{
    std::size_t looked_through = 0;
    for (pugi::xml_node node = root_; node; node = next_in_document(node, root_)) {
        if (split(node.name()).local != "style" || offset_of(node) < looked_through)
            continue;
        // In the text itself, as it may stand in a CDATA section.
        const ElementSpan span = find_element(text(), offset_of(node));
        looked_through = span.end_tag;
        if (text().substr(span.content, span.end_tag - span.content).find(word) != word.npos)
            return true;
    }
    return false;
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

std::string quotable(std::string_view text)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string quoted;
    while (!text.empty()) {
        const std::size_t good = size_of_utf8(text);
        const std::size_t size = std::max<std::size_t>(good, 1);
        for (const char c : text.substr(0, size)) {
            const auto byte = static_cast<unsigned char>(c);
            if (good != 0 && byte >= 0x20 && byte != 0x7F)
                quoted += c;
            else
                quoted.append("\\x").append({kDigits[byte / 16], kDigits[byte % 16]});
        }
        text.remove_prefix(size);
    }
    return quoted;
}

} // namespace vnt::host
