#include "host/kit/svg_compare.h"

#include "host/kit/svg_numbers.h"

#include <algorithm>

namespace vnt::host {
namespace {

std::size_t ordinal_of(pugi::xml_node wanted, pugi::xml_node root)
{
    std::size_t ordinal = 0;
    for (pugi::xml_node node = root; node != wanted; node = next_in_document(node, root))
        ++ordinal;
    return ordinal;
}

pugi::xml_node node_at(std::size_t ordinal, pugi::xml_node root)
{
    pugi::xml_node node = root;
    for (; ordinal > 0 && node; --ordinal)
        node = next_in_document(node, root);
    return node;
}

// Text loses the blanks behind it, which the place of a new element may have moved.
std::string_view value_of(pugi::xml_node node)
{
    std::string_view value = node.value();
    const std::size_t last = value.find_last_not_of(" \t\r\n");
    return value.substr(0, last == value.npos ? 0 : last + 1);
}

bool is_same_attribute(const pugi::xml_attribute& a, const pugi::xml_attribute& b)
{
    return std::string_view(a.name()) == b.name() && std::string_view(a.value()) == b.value();
}

// A node is an element, which has a name, or a text, which has a value.
bool is_same_node(pugi::xml_node a, pugi::xml_node b)
{
    const auto a_attributes = a.attributes();
    const auto b_attributes = b.attributes();
    return std::string_view(a.name()) == b.name() && value_of(a) == value_of(b) &&
           std::equal(a_attributes.begin(), a_attributes.end(), b_attributes.begin(), b_attributes.end(),
                      is_same_attribute);
}

// Walks both in step, so that both always are at the same depth. Where one has a child or a sibling and the other
// has none, the next pair differs.
bool is_same_tree(pugi::xml_node root_a, pugi::xml_node root_b)
{
    pugi::xml_node a = root_a;
    pugi::xml_node b = root_b;
    while (is_same_node(a, b)) {
        if (a.first_child() || b.first_child()) {
            a = a.first_child();
            b = b.first_child();
            continue;
        }
        while (a != root_a && !a.next_sibling() && !b.next_sibling()) {
            a = a.parent();
            b = b.parent();
        }
        if (a == root_a)
            return true;
        a = a.next_sibling();
        b = b.next_sibling();
    }
    return false;
}

} // namespace

std::string find_difference(const SvgTree& before, pugi::xml_node layer, const SvgTree& after,
                            const std::vector<std::string>& new_ids)
{
    pugi::xml_node twin = node_at(ordinal_of(layer, before.root()), after.root());
    for (auto id = new_ids.rbegin(); id != new_ids.rend(); ++id) {
        const pugi::xml_node added = twin.last_child();
        if (!after.is_svg(added, "path") || after.attribute(added, "id") != *id)
            return "a new path is not where it should be";
        twin.remove_child(added);
    }
    return is_same_tree(before.root(), after.root()) ? "" : "an old element is not as it was";
}

} // namespace vnt::host
