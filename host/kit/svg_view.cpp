#include "host/kit/svg_view.h"

#include "host/kit/svg_layer.h"
#include "host/kit/svg_numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vnt::host {
namespace {

// The editor's own limits.
constexpr double kLeastZoom = 0.01;
constexpr double kMostZoom = 256;

// The window when the document has none; it lies below a menu bar.
constexpr ViewOptions::Window kUsualWindow{0, 22, 1024, 768};

struct Sight {
    double zoom;
    Vec center;
};

std::optional<double> read_number(const SvgTree& tree, pugi::xml_node view, std::string_view name)
{
    const std::string text = tree.attribute(view, kInkscapeNamespace, name).value_or("");
    std::string_view rest = without_blanks(text);
    const std::optional<double> number = take_number(rest);
    return rest.empty() ? number : std::nullopt;
}

// The two edges of an extent that begins at begin, within what 16 bits hold and at least a pixel apart.
struct Edges {
    std::int16_t low, high;
};
Edges edges_of(double begin, double length)
{
    constexpr double kLow = std::numeric_limits<std::int16_t>::min();
    constexpr double kHigh = std::numeric_limits<std::int16_t>::max();
    const auto number = [](double edge) { return std::isnan(edge) ? 0 : std::round(edge); };
    const double low = std::clamp(number(begin), kLow, kHigh - 1);
    const double high = std::clamp(low + std::max(number(length), 1.0), kLow + 1, kHigh);
    return {static_cast<std::int16_t>(low), static_cast<std::int16_t>(high)};
}

WindowRect window_of(const SvgTree& tree, pugi::xml_node view, const ViewOptions& options)
{
    ViewOptions::Window window = kUsualWindow;
    const std::optional<double> width = read_number(tree, view, "window-width");
    const std::optional<double> height = read_number(tree, view, "window-height");
    if (width && height && *width > 0 && *height > 0) {
        window.width = *width;
        window.height = *height;
        window.x = read_number(tree, view, "window-x").value_or(window.x);
        window.y = read_number(tree, view, "window-y").value_or(window.y);
    }
    window = options.window.value_or(window);
    const Edges across = edges_of(window.x, window.width);
    const Edges down = edges_of(window.y, window.height);
    return {across.low, down.low, across.high, down.high};
}

Vec size_of(const WindowRect& window)
{
    return {static_cast<double>(window.right) - window.left, static_cast<double>(window.bottom) - window.top};
}

double within_limits(double zoom) { return std::clamp(zoom, kLeastZoom, kMostZoom); }

Sight whole_page(const SvgPage& page, const Vec& size)
{
    return {
        within_limits(std::min(size.x / page.width_px, size.y / page.height_px)),
        {page.width_px / 2, page.height_px / 2}
    };
}

Affine view_to_artwork(const Sight& sight, const Vec& size, const Vec& origin)
{
    const double step = 1 / (sight.zoom * kPxPerPt);
    return {step,
            0,
            0,
            -step,
            (sight.center.x - origin.x) / kPxPerPt - step * size.x / 2,
            -(sight.center.y - origin.y) / kPxPerPt + step * size.y / 2};
}

// Whether points of the view stay apart when they are handed over in single precision: they may move by a few
// pixels, as an effect measures the view over some hundred.
bool is_told_apart(const Affine& map, const Vec& size)
{
    constexpr double kMostPixels = 4;
    if (!map.is_finite())
        return false;
    const Vec corner = map({0, 0});
    const Vec other = map(size);
    const double farthest =
        std::max({std::abs(corner.x), std::abs(corner.y), std::abs(other.x), std::abs(other.y)});
    return farthest * std::numeric_limits<float>::epsilon() <= kMostPixels * map.a;
}

} // namespace

DocumentView read_view(const SvgTree& tree, const SvgPage& page, const Vec& artwork_origin,
                       const ViewOptions& options)
{
    const pugi::xml_node record = find_named_view(tree);
    DocumentView view{window_of(tree, record, options), 1, Affine(), {}, 0};
    view.sheet_rotation = read_number(tree, record, "rotation").value_or(0);
    const Vec size = size_of(view.window);
    const Sight fallback = whole_page(page, size);
    Sight sight = fallback;
    const std::optional<double> zoom = options.zoom ? options.zoom : read_number(tree, record, "zoom");
    if (zoom && *zoom > 0)
        sight.zoom = within_limits(*zoom);
    const std::optional<double> x = read_number(tree, record, "cx");
    const std::optional<double> y = read_number(tree, record, "cy");
    if (x && y)
        sight.center = {*x, *y};
    sight.center = options.center.value_or(sight.center);

    view.view_to_artwork = view_to_artwork(sight, size, artwork_origin);
    if (!is_told_apart(view.view_to_artwork, size)) {
        sight = fallback;
        view.view_to_artwork = view_to_artwork(sight, size, artwork_origin);
        const char* taken = "the whole page is taken for it";
        if (!is_told_apart(view.view_to_artwork, size)) {
            sight = {1, artwork_origin};
            view.view_to_artwork = view_to_artwork(sight, size, artwork_origin);
            taken = "what lies around that origin, in full size, is taken for it";
        }
        view.notes.push_back(
            std::string("the view lies too far from the artwork's origin, or too near to the page; ") +
            taken);
    }
    view.zoom = sight.zoom;
    return view;
}

} // namespace vnt::host
