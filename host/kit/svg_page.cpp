#include "host/kit/svg_page.h"

#include "host/kit/svg_numbers.h"

#include <algorithm>

namespace vnt::host {
namespace {

constexpr double kA4WidthPx = 210 * 96 / 25.4;
constexpr double kA4HeightPx = 297 * 96 / 25.4;

std::string_view take_word(std::string_view& text)
{
    text = without_blanks(text);
    const std::string_view word = text.substr(0, text.find_first_of(" \t\r\n"));
    text.remove_prefix(word.size());
    return word;
}

// The share of the spare room that lies in front of the box: 0 Min, 0.5 Mid, 1 Max.
double share_of(std::string_view word) { return word == "Min" ? 0 : (word == "Max" ? 1 : 0.5); }

bool is_align(std::string_view word)
{
    const auto is_part = [](std::string_view part, char axis) {
        return part[0] == axis &&
               (part.substr(1) == "Min" || part.substr(1) == "Mid" || part.substr(1) == "Max");
    };
    return word.size() == 8 && is_part(word.substr(0, 4), 'x') && is_part(word.substr(4), 'Y');
}

std::optional<ViewBox> view_box_of(const SvgTree& tree, pugi::xml_node element)
{
    return try_read_view_box(tree.attribute(element, "viewBox").value_or(""));
}

// A size in px, or user units; whole where it is missing, or is none.
double size_of(const SvgTree& tree, pugi::xml_node element, const char* name, double whole)
{
    const std::optional<Length> length = try_read_length(tree.attribute(element, name).value_or("100%"));
    const double size = length ? px_of(*length, whole) : whole;
    return size > 0 ? size : whole;
}

double place_of(const SvgTree& tree, pugi::xml_node element, const char* name, double whole)
{
    const std::optional<Length> length = try_read_length(tree.attribute(element, name).value_or("0"));
    return length ? px_of(*length, whole) : 0;
}

} // namespace

std::optional<ViewBox> try_read_view_box(std::string_view text)
{
    text = without_blanks(text);
    double numbers[4];
    for (double& number : numbers) {
        const std::optional<double> read = take_number(text);
        if (!read)
            return std::nullopt;
        number = *read;
        take_separator(text);
    }
    if (!text.empty() || !(numbers[2] > 0) || !(numbers[3] > 0))
        return std::nullopt;
    return ViewBox{numbers[0], numbers[1], numbers[2], numbers[3]};
}

Affine view_box_to_viewport(const ViewBox& box, std::string_view preserve_aspect_ratio, double width,
                            double height)
{
    const double scale_x = width / box.width;
    const double scale_y = height / box.height;
    const Affine to_corner = Affine::translation(-box.x, -box.y);
    std::string_view align = take_word(preserve_aspect_ratio);
    if (align == "defer")
        align = take_word(preserve_aspect_ratio);
    if (align == "none")
        return Affine::scaling(scale_x, scale_y) * to_corner;
    if (!is_align(align))
        align = "xMidYMid";
    const bool slice = take_word(preserve_aspect_ratio) == "slice";
    const double scale = slice ? std::max(scale_x, scale_y) : std::min(scale_x, scale_y);
    const double spare_x = width - scale * box.width;
    const double spare_y = height - scale * box.height;
    return Affine::translation(share_of(align.substr(1, 3)) * spare_x,
                               share_of(align.substr(5, 3)) * spare_y) *
           Affine::scaling(scale, scale) * to_corner;
}

SvgPage read_page(const SvgTree& tree)
{
    const pugi::xml_node root = tree.root();
    const std::optional<ViewBox> box = view_box_of(tree, root);
    SvgPage page{};
    page.width_px = size_of(tree, root, "width", box ? box->width : kA4WidthPx);
    page.height_px = size_of(tree, root, "height", box ? box->height : kA4HeightPx);
    page.viewport = {page.width_px, page.height_px};
    if (box) {
        page.user_to_page = view_box_to_viewport(
            *box, tree.attribute(root, "preserveAspectRatio").value_or(""), page.width_px, page.height_px);
        page.view_box_corner = {box->x, box->y};
        page.viewport = {box->width, box->height};
    }
    return page;
}

ElementSpace space_of(const SvgTree& tree, const PathStep& step, const Vec& viewport_outside)
{
    const pugi::xml_node element = step.element;
    ElementSpace space{Affine(), viewport_outside};
    if (!step.is_viewport) {
        const std::optional<Affine> transform =
            try_read_transform(tree.attribute(element, "transform").value_or(""));
        space.has_bad_transform = !transform;
        space.content_to_parent = transform.value_or(Affine());
        return space;
    }
    const double width = size_of(tree, element, "width", viewport_outside.x);
    const double height = size_of(tree, element, "height", viewport_outside.y);
    Affine inner = Affine::translation(place_of(tree, element, "x", viewport_outside.x),
                                       place_of(tree, element, "y", viewport_outside.y));
    space.viewport = {width, height};
    if (const std::optional<ViewBox> box = view_box_of(tree, element)) {
        inner = inner * view_box_to_viewport(
                            *box, tree.attribute(element, "preserveAspectRatio").value_or(""), width, height);
        space.viewport = {box->width, box->height};
    }
    space.content_to_parent = inner;
    return space;
}

} // namespace vnt::host
