#include "host/kit/svg_layer.h"

#include <algorithm>
#include <array>

namespace vnt::host {
namespace {

// What is in these is drawn where something refers to it, or not at all.
constexpr std::array<const char*, 9> kUndrawn = {
    "defs", "symbol", "marker", "pattern", "clipPath", "mask", "metadata", "foreignObject", "linearGradient"};

bool is_layer(const SvgTree& tree, pugi::xml_node element)
{
    return tree.is_svg(element, "g") && tree.attribute(element, kInkscapeNamespace, "groupmode") == "layer";
}

bool can_hold_paths(const SvgTree& tree, pugi::xml_node element)
{
    return tree.is_svg(element, "g") || tree.is_svg(element, "svg") || tree.is_svg(element, "a");
}

// From the outermost element to element.
std::vector<pugi::xml_node> chain_to(const SvgTree& tree, pugi::xml_node element)
{
    std::vector<pugi::xml_node> chain;
    for (; element != tree.root(); element = element.parent())
        chain.push_back(element);
    chain.push_back(element);
    std::reverse(chain.begin(), chain.end());
    return chain;
}

bool is_drawn(const SvgTree& tree, const std::vector<pugi::xml_node>& chain)
{
    return std::none_of(chain.begin(), chain.end(), [&](pugi::xml_node element) {
        return std::any_of(kUndrawn.begin(), kUndrawn.end(),
                           [&](const char* name) { return tree.is_svg(element, name); });
    });
}

std::string title_of(const SvgTree& tree, pugi::xml_node element)
{
    if (element == tree.root())
        return "the document's outermost element";
    const std::optional<std::string> label = tree.attribute(element, kInkscapeNamespace, "label");
    const std::optional<std::string> id = tree.attribute(element, "id");
    return "the layer \"" + (label && !label->empty() ? *label : id.value_or("")) + "\"";
}

pugi::xml_node topmost_layer(const SvgTree& tree)
{
    for (pugi::xml_node child = tree.root().last_child(); child; child = child.previous_sibling()) {
        if (is_layer(tree, child))
            return child;
    }
    return tree.root();
}

pugi::xml_node choose(const SvgTree& tree, std::vector<std::string>& notes)
{
    const pugi::xml_node fallback = topmost_layer(tree);
    const std::optional<std::string> id =
        tree.attribute(find_named_view(tree), kInkscapeNamespace, "current-layer");
    if (!id)
        return fallback;
    const pugi::xml_node named = tree.find_id(*id);
    const char* problem = nullptr;
    if (!named)
        problem = "is not in the document";
    else if (!can_hold_paths(tree, named))
        problem = "is no layer";
    else if (!is_drawn(tree, chain_to(tree, named)))
        problem = "is not drawn where it stands";
    if (problem == nullptr)
        return named;
    notes.push_back("the current layer, \"" + *id + "\", " + problem + "; the new paths go to " +
                    title_of(tree, fallback));
    return fallback;
}

void note_what_hides(const SvgTree& tree, const std::vector<pugi::xml_node>& chain,
                     std::vector<std::string>& notes)
{
    const std::string title = title_of(tree, chain.back());
    const auto any = [&](auto holds) { return std::any_of(chain.begin(), chain.end(), holds); };
    if (any([&](pugi::xml_node element) { return tree.property(element, "display") == "none"; }))
        notes.push_back(title + " is hidden; the new paths are in it all the same, and show when it does");
    // The editor takes any value of this attribute for a lock.
    if (any([&](pugi::xml_node element) {
            return tree.attribute(element, kSodipodiNamespace, "insensitive").has_value();
        }))
        notes.push_back(title + " is locked; the new paths are in it all the same");
}

} // namespace

pugi::xml_node find_named_view(const SvgTree& tree)
{
    for (const pugi::xml_node child : tree.root().children()) {
        if (tree.is_of(child, kSodipodiNamespace, "namedview"))
            return child;
    }
    return {};
}

Result<DrawingLayer> find_current_layer(const SvgTree& tree, const SvgPage& page, const std::string& name)
{
    DrawingLayer layer;
    layer.element = choose(tree, layer.notes);
    const std::vector<pugi::xml_node> chain = chain_to(tree, layer.element);
    const std::string title = title_of(tree, layer.element);
    note_what_hides(tree, chain, layer.notes);

    layer.layer_to_page = page.user_to_page;
    Vec viewport = page.viewport;
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const ElementSpace space = space_of(tree, chain[i], viewport);
        if (space.has_bad_transform)
            layer.notes.push_back("a transform of " + title + " cannot be understood and counts as none");
        layer.layer_to_page = layer.layer_to_page * space.content_to_parent;
        viewport = space.viewport;
    }
    const std::optional<Affine> inverse = try_inverse(layer.layer_to_page);
    if (!inverse)
        return Problem{"cannot draw into " + name + ": the transform of " + title +
                       " flattens everything in it; choose another current layer"};
    layer.page_to_layer = *inverse;
    return layer;
}

} // namespace vnt::host
