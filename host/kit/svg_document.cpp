#include "host/kit/svg_document.h"

#include "host/kit/svg_compare.h"
#include "host/kit/svg_decimals.h"
#include "host/kit/svg_layer.h"
#include "host/kit/svg_numbers.h"
#include "host/kit/svg_path_data.h"
#include "host/kit/svg_splice.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

namespace vnt::host {
namespace {

constexpr std::string_view kIdStem = "vant-path";

// The first number of which no number that stands behind the stem anywhere in the document, be it in an id, a
// reference or a style sheet, is as large: a new id neither is there already nor is what something refers to.
std::uint64_t first_free_number(const SvgTree& tree)
{
    std::uint64_t largest = 0;
    const auto look_through = [&](std::string_view text) {
        for (std::size_t at = text.find(kIdStem); at != text.npos; at = text.find(kIdStem, at + 1)) {
            const char* const digits = text.data() + at + kIdStem.size();
            std::uint64_t number = 0;
            const auto read = std::from_chars(digits, text.data() + text.size(), number);
            // Numbers past 10^15 are not counted on: nothing here gets that far.
            if (read.ec == std::errc() && number < 1'000'000'000'000'000)
                largest = std::max(largest, number);
        }
    };
    look_through(tree.text());
    for (pugi::xml_node node = tree.root(); node; node = next_in_document(node, tree.root())) {
        const std::string_view id = node.attribute("id").value();
        if (id.find('&') != id.npos)
            look_through(tree.attribute(node, "id").value_or("")); // written with character references
    }
    return largest + 1;
}

Affine artwork_to_page(const Vec& origin) { return {kPxPerPt, 0, 0, -kPxPerPt, origin.x, origin.y}; }

Affine page_to_artwork(const Vec& origin)
{
    return {1 / kPxPerPt, 0, 0, -1 / kPxPerPt, -origin.x / kPxPerPt, origin.y / kPxPerPt};
}

// A line of 1 pt on the page, whatever the layer's transform makes of it.
std::string style_of(const Affine& layer_to_page)
{
    const double width = kPxPerPt / mean_scale(layer_to_page);
    std::string style = "fill:none;stroke:#000000;stroke-width:";
    append_decimal(style, width, width * std::numeric_limits<float>::epsilon() / 2);
    return style;
}

const char* why_left_out(const PathArt& path)
{
    if (path.empty())
        return "has no segments";
    return is_finite(path) ? nullptr : "has a coordinate that is not a finite number";
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

DocumentView SvgDocument::view(const ViewOptions& options) const
{
    return read_view(*parts_->tree, parts_->page, parts_->grid.origin_on_page, options);
}

// Adds path elements to a document's text, at one place of it.
class SvgDocument::Drawer {
public:
    explicit Drawer(const Parts& parts)
        : splice_(*parts.tree, parts.layer.element),
          writer_(parts.artwork_to_layer,
                  page_to_artwork(parts.grid.origin_on_page) * parts.layer.layer_to_page),
          style_(style_of(parts.layer.layer_to_page)), number_(first_free_number(*parts.tree))
    {
        drawn_.text = parts.tree->byte_order_mark();
        splice_.begin(drawn_.text);
    }

    void add(const PathArt& path)
    {
        const std::size_t before = drawn_.text.size();
        const char* problem = why_left_out(path);
        std::string id(kIdStem);
        id += std::to_string(number_);
        if (problem == nullptr && !try_add_element(path, id))
            problem = "does not fit into the layer's coordinates";
        if (problem != nullptr) {
            drawn_.text.resize(before);
            drawn_.notes.push_back("path " + std::to_string(drawn_.ids.size()) + " " + problem +
                                   " and is left out");
            id.clear();
        } else {
            ++number_;
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
    std::uint64_t number_;
    DrawnText drawn_;
};

Result<DrawnText> SvgDocument::with_paths(const std::vector<PathArt>& paths) const
{
    Drawer drawer(*parts_);
    for (const PathArt& path : paths)
        drawer.add(path);
    DrawnText drawn = drawer.finish();
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
        fault = find_difference(*parts_->tree, parts_->layer.element, *std::get<0>(read_again), new_ids);
    if (!fault.empty())
        return Problem{"cannot add the paths to " + parts_->name + ": " + fault +
                       "; this is a defect of the program, please report it with the document"};
    return drawn;
}

} // namespace vnt::host
