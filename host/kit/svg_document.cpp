#include "host/kit/svg_document.h"

#include "host/kit/svg_compare.h"
#include "host/kit/svg_layer.h"
#include "host/kit/svg_line_style.h"
#include "host/kit/svg_numbers.h"
#include "host/kit/svg_path_data.h"
#include "host/kit/svg_splice.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <set>
#include <string_view>

namespace vnt::host {
namespace {

constexpr std::string_view kIdStem = "vant-path";

// The numbers of new ids, upwards. None stands behind the stem anywhere in the document, be it in an id, a
// reference or a style sheet: a new id neither is there already nor is what something refers to.
class FreeNumbers {
public:
    explicit FreeNumbers(const SvgTree& tree)
    {
        look_through(tree.text());
        for (pugi::xml_node node = tree.root(); node; node = next_in_document(node, tree.root())) {
            const std::string_view id = node.attribute("id").value();
            if (id.find('&') != id.npos)
                look_through(tree.attribute(node, "id").value_or("")); // written with character references
        }
        take();
    }

    std::uint64_t next() const { return next_; }

    void take()
    {
        do
            ++next_;
        while (huge_.count(next_) != 0);
    }

private:
    void look_through(std::string_view text)
    {
        for (std::size_t at = text.find(kIdStem); at != text.npos; at = text.find(kIdStem, at + 1)) {
            const char* const digits = text.data() + at + kIdStem.size();
            std::uint64_t number = 0;
            const auto read = std::from_chars(digits, text.data() + text.size(), number);
            if (read.ec != std::errc())
                continue; // no number, or one that counting never gets to
            if (number < kHuge)
                next_ = std::max(next_, number);
            else
                huge_.insert(number);
        }
    }

    // From here on numbers are not counted up from, so that one near the end leaves others to count on. They are
    // passed over instead.
    static constexpr std::uint64_t kHuge = 999'999'999'999'999;

    std::uint64_t next_ = 0;
    std::set<std::uint64_t> huge_;
};

Affine artwork_to_page(const Vec& origin) { return {kPxPerPt, 0, 0, -kPxPerPt, origin.x, origin.y}; }

Affine page_to_artwork(const Vec& origin)
{
    return {1 / kPxPerPt, 0, 0, -1 / kPxPerPt, -origin.x / kPxPerPt, origin.y / kPxPerPt};
}

// A page is its viewBox, moved and stretched.
Affine page_to_user(const SvgPage& page)
{
    const Affine& map = page.user_to_page;
    return {1 / map.a, 0, 0, 1 / map.d, -map.e / map.a, -map.f / map.d};
}

} // namespace

struct SvgDocument::Parts {
    std::string name;
    std::unique_ptr<SvgTree> tree;
    SvgPage page;
    DocumentGrid grid;
    DrawingLayer layer;
    Affine artwork_to_layer;
};

SvgDocument::SvgDocument(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
SvgDocument::SvgDocument(SvgDocument&&) noexcept = default;
SvgDocument& SvgDocument::operator=(SvgDocument&&) noexcept = default;
SvgDocument::~SvgDocument() = default;

Result<SvgDocument> SvgDocument::read(const std::string& name, std::string bytes)
{
    Result<std::unique_ptr<SvgTree>> tree = SvgTree::read(name, std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&tree))
        return *problem;
    auto parts = std::make_unique<Parts>();
    parts->name = name;
    parts->tree = std::move(std::get<0>(tree));
    parts->page = read_page(*parts->tree);
    parts->grid = read_grid(*parts->tree, parts->page);
    Result<DrawingLayer> layer = find_current_layer(*parts->tree, parts->page, name);
    if (const auto* problem = std::get_if<Problem>(&layer))
        return *problem;
    parts->layer = std::move(std::get<0>(layer));
    parts->artwork_to_layer = parts->layer.page_to_layer * artwork_to_page(parts->grid.origin_on_page);
    return SvgDocument(std::move(parts));
}

const std::string& SvgDocument::bytes() const { return parts_->tree->bytes(); }
const std::vector<std::string>& SvgDocument::notes() const { return parts_->layer.notes; }
const GridSettings& SvgDocument::grid() const { return parts_->grid.settings; }
const Affine& SvgDocument::artwork_to_layer() const { return parts_->artwork_to_layer; }

std::string SvgDocument::layer_id() const
{
    return parts_->tree->attribute(parts_->layer.element, "id").value_or("");
}

std::string SvgDocument::root_id() const
{
    return parts_->tree->attribute(parts_->tree->root(), "id").value_or("");
}

std::vector<std::string> SvgDocument::ids() const
{
    std::vector<std::string> ids;
    const SvgTree& tree = *parts_->tree;
    for (pugi::xml_node node = tree.root(); node; node = next_in_document(node, tree.root())) {
        if (node.attribute("id"))
            ids.push_back(tree.attribute(node, "id").value_or(""));
    }
    return ids;
}

Affine SvgDocument::artwork_to_user() const
{
    return page_to_user(parts_->page) * artwork_to_page(parts_->grid.origin_on_page);
}

DocumentView SvgDocument::view(const ViewOptions& options) const
{
    return read_view(*parts_->tree, parts_->page, parts_->grid.origin_on_page, options);
}

// How the artwork's coordinates become those of a layer, and back.
struct SvgDocument::LayerMaps {
    Affine artwork_to_layer;
    Affine layer_to_artwork;
};

// Adds path elements to a document's text, at one place of it.
class SvgDocument::Drawer {
public:
    Drawer(const SvgTree& tree, const DrawingLayer& layer, const LayerMaps& maps)
        : splice_(tree, layer.element), writer_(maps.artwork_to_layer, maps.layer_to_artwork),
          style_(thin_line_style(tree, layer.path, layer.layer_to_page)), numbers_(tree)
    {
        drawn_.text = tree.byte_order_mark();
        splice_.begin(drawn_.text);
    }

    void add(const PathArt& path)
    {
        const std::size_t before = drawn_.text.size();
        const char* problem = why_left_out(path);
        std::string id(kIdStem);
        id += std::to_string(numbers_.next());
        if (problem == nullptr && !try_add_element(path, id))
            problem = "does not fit into the layer's coordinates";
        if (problem != nullptr) {
            drawn_.text.resize(before);
            drawn_.notes.push_back("path " + std::to_string(drawn_.ids.size()) + " " + problem +
                                   " and is left out");
            id.clear();
        } else {
            numbers_.take();
        }
        drawn_.ids.push_back(std::move(id));
    }

    DrawnText finish()
    {
        splice_.end(drawn_.text);
        return std::move(drawn_);
    }

private:
    bool try_add_element(const PathArt& path, const std::string& id)
    {
        splice_.before_element(drawn_.text);
        drawn_.text.append("<").append(splice_.prefix()).append("path id=\"").append(id);
        drawn_.text.append("\" style=\"").append(style_).append("\" d=\"");
        const bool fits = writer_.try_append(drawn_.text, path);
        drawn_.text.append("\"/>");
        return fits;
    }

    ElementSplice splice_;
    PathDataWriter writer_;
    std::string style_;
    FreeNumbers numbers_;
    DrawnText drawn_;
};

std::optional<SvgDocument::LayerMaps>
SvgDocument::try_maps(const DrawingLayer& layer, const std::optional<Affine>& artwork_to_user) const
{
    const Vec& origin = parts_->grid.origin_on_page;
    if (!artwork_to_user)
        return LayerMaps{layer.page_to_layer * artwork_to_page(origin),
                         page_to_artwork(origin) * layer.layer_to_page};
    const std::optional<Affine> user_to_layer = try_inverse(layer.layer_to_user);
    const std::optional<Affine> user_to_artwork = try_inverse(*artwork_to_user);
    if (!user_to_layer || !user_to_artwork)
        return std::nullopt;
    return LayerMaps{*user_to_layer * *artwork_to_user, *user_to_artwork * layer.layer_to_user};
}

Result<DrawnText> SvgDocument::with_paths(const std::vector<PathArt>& paths, const Placement& placement) const
{
    const bool is_asked_for = placement.layer_id && *placement.layer_id != layer_id();
    const DrawingLayer layer =
        is_asked_for ? find_layer(*parts_->tree, parts_->page, *placement.layer_id, parts_->layer)
                     : parts_->layer;
    const std::optional<LayerMaps> maps = try_maps(layer, placement.artwork_to_user);
    if (!maps)
        return Problem{"cannot add the paths to " + parts_->name +
                       ": the map that places them flattens everything; draw them anew"};
    Drawer drawer(*parts_->tree, layer, *maps);
    for (const PathArt& path : paths)
        drawer.add(path);
    DrawnText drawn = drawer.finish();
    if (is_asked_for)
        drawn.notes.insert(drawn.notes.begin(), layer.notes.begin(), layer.notes.end());
    std::vector<std::string> new_ids = drawn.ids;
    new_ids.erase(std::remove(new_ids.begin(), new_ids.end(), ""), new_ids.end());
    if (new_ids.empty()) {
        drawn.text = bytes();
        return drawn;
    }
    const std::string name = parts_->name + " with the new paths";
    const Result<std::unique_ptr<SvgTree>> read_again = SvgTree::read(name, drawn.text);
    std::string fault;
    if (const auto* problem = std::get_if<Problem>(&read_again))
        fault = problem->sentence;
    else
        fault = find_difference(*parts_->tree, layer.element, *std::get<0>(read_again), new_ids);
    if (!fault.empty())
        return Problem{"cannot add the paths to " + parts_->name + ": " + fault +
                       "; this is a defect of the program, please report it with the document"};
    return drawn;
}

} // namespace vnt::host
