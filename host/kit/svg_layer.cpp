#include "host/kit/svg_layer.h"

#include <algorithm>

namespace vnt::host {
namespace {

bool is_layer(const SvgTree& tree, pugi::xml_node element)
{
    return tree.is_svg(element, "g") && tree.attribute(element, kInkscapeNamespace, "groupmode") == "layer";
}

bool can_hold_paths(const SvgTree& tree, pugi::xml_node element)
{
    return tree.is_svg(element, "g") || tree.is_svg(element, "svg") || tree.is_svg(element, "a");
}

bool is_drawn(const std::vector<PathStep>& path)
{
    return std::all_of(path.begin(), path.end(), [](const PathStep& step) { return step.is_group; });
}

std::string title_of(const SvgTree& tree, pugi::xml_node element)
{
    if (element == tree.root())
        return "the document's outermost element";
    const std::optional<std::string> label = tree.attribute(element, kInkscapeNamespace, "label");
    const std::optional<std::string> id = tree.attribute(element, "id");
    return "the layer \"" + quotable(label && !label->empty() ? *label : id.value_or("")) + "\"";
}

pugi::xml_node topmost_layer(const SvgTree& tree)
{
    for (pugi::xml_node child = tree.root().last_child(); child; child = child.previous_sibling()) {
        if (is_layer(tree, child))
            return child;
    }
    return tree.root();
}

// Why nothing can be drawn into an element; null when it can.
const char* find_obstacle(const SvgTree& tree, pugi::xml_node element)
{
    if (!element)
        return "is not in the document";
    if (!can_hold_paths(tree, element))
        return "is no layer";
    return is_drawn(tree.path_to(element)) ? nullptr : "is not drawn where it stands";
}

pugi::xml_node choose(const SvgTree& tree, std::vector<std::string>& notes)
{
    const pugi::xml_node fallback = topmost_layer(tree);
    const std::optional<std::string> id =
        tree.attribute(find_named_view(tree), kInkscapeNamespace, "current-layer");
    if (!id)
        return fallback;
    const pugi::xml_node named = tree.find_id(*id);
    const char* const problem = find_obstacle(tree, named);
    if (problem == nullptr)
        return named;
    notes.push_back("the current layer, \"" + quotable(*id) + "\", " + problem + "; the new paths go to " +
                    title_of(tree, fallback));
    return fallback;
}

// The innermost element that says something of its visibility decides; one that is not displayed hides all in it.
bool is_hidden(const SvgTree& tree, const std::vector<PathStep>& path)
{
    if (std::any_of(path.begin(), path.end(),
                    [&](const PathStep& step) { return tree.property(step.element, "display") == "none"; }))
        return true;
    for (auto step = path.rbegin(); step != path.rend(); ++step) {
        const std::optional<std::string> own = tree.property(step->element, "visibility");
        if (own && own != "inherit")
            return own == "hidden" || own == "collapse";
    }
    return false;
}

void note_what_hides(const SvgTree& tree, const std::vector<PathStep>& path, std::vector<std::string>& notes)
{
    const std::string title = title_of(tree, path.back().element);
    if (is_hidden(tree, path))
        notes.push_back(title + " is hidden; the new paths are in it all the same, and show when it does");
    if (std::any_of(path.begin(), path.end(), [](const PathStep& step) { return step.is_locked; }))
        notes.push_back(title + " is locked; the new paths are in it all the same");
}

// Finds the maps of a layer whose element is set; false when its transform flattens it.
bool try_measure(const SvgTree& tree, const SvgPage& page, DrawingLayer& layer)
{
    layer.path = tree.path_to(layer.element);
    const std::string title = title_of(tree, layer.element);
    note_what_hides(tree, layer.path, layer.notes);

    layer.layer_to_page = page.user_to_page;
    layer.layer_to_user = Affine();
    Vec viewport = page.viewport;
    bool has_bad_transform = false;
    for (std::size_t i = 1; i < layer.path.size(); ++i) {
        const ElementSpace space = space_of(tree, layer.path[i], viewport);
        has_bad_transform = has_bad_transform || space.has_bad_transform;
        layer.layer_to_page = layer.layer_to_page * space.content_to_parent;
        layer.layer_to_user = layer.layer_to_user * space.content_to_parent;
        viewport = space.viewport;
    }
    if (has_bad_transform)
        layer.notes.push_back("a transform of " + title + " cannot be understood and counts as none");
    const std::optional<Affine> inverse = try_inverse(layer.layer_to_page);
    layer.page_to_layer = inverse.value_or(Affine());
    return inverse.has_value();
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
    if (!try_measure(tree, page, layer))
        return Problem{"cannot draw into " + name + ": the transform of " + title_of(tree, layer.element) +
                       " flattens everything in it; choose another current layer"};
    return layer;
}

DrawingLayer find_layer(const SvgTree& tree, const SvgPage& page, const std::string& id,
                        const DrawingLayer& current)
{
    DrawingLayer layer;
    layer.element = tree.find_id(id);
    const char* obstacle = find_obstacle(tree, layer.element);
    if (obstacle == nullptr && !try_measure(tree, page, layer))
        obstacle = "is flattened by its transform";
    if (obstacle == nullptr)
        return layer;
    layer = current;
    layer.notes = {"the layer that the new paths are for, \"" + quotable(id) + "\", " + obstacle +
                   "; they go to " + title_of(tree, layer.element)};
    return layer;
}

} // namespace vnt::host
