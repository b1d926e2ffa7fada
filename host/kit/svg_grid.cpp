#include "host/kit/svg_grid.h"

#include "host/kit/svg_layer.h"
#include "host/kit/svg_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace vnt::host {
namespace {

// What the editor takes for attributes that a grid does not have. A grid that was just switched on has none.
constexpr double kDefaultSpacingPx = 1;
constexpr std::int32_t kDefaultEmpspacing = 5;

struct Steps {
    double x_px, y_px;
};

bool is_on(const SvgTree& tree, pugi::xml_node element, const char* name, bool otherwise)
{
    const std::optional<std::string> value = tree.attribute(element, name);
    if (!value)
        return otherwise;
    return *value == "true" || *value == "yes" || *value == "1";
}

// A length of a grid in px: without a unit it counts user units of px_per_unit.
std::optional<double> read_px(const SvgTree& tree, pugi::xml_node grid, const char* name, double px_per_unit)
{
    const std::optional<Length> length = try_read_length(tree.attribute(grid, name).value_or(""));
    if (!length || length->unit == LengthUnit::Percent)
        return std::nullopt;
    return length->unit == LengthUnit::None ? length->value * px_per_unit : px_of(*length, 0);
}

double step_px(const SvgTree& tree, pugi::xml_node grid, const char* name, double px_per_unit)
{
    const double step = read_px(tree, grid, name, px_per_unit).value_or(kDefaultSpacingPx);
    return step > 0 ? step : kDefaultSpacingPx;
}

std::int32_t read_empspacing(const SvgTree& tree, pugi::xml_node grid)
{
    const std::string text = tree.attribute(grid, "empspacing").value_or("");
    const std::string_view digits = without_blanks(text);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    const bool is_number = error == std::errc() && end == digits.data() + digits.size() && !digits.empty();
    return is_number ? std::max(number, 1) : kDefaultEmpspacing;
}

Vec crossing_of(const SvgTree& tree, pugi::xml_node grid, const SvgPage& page)
{
    const Affine& map = page.user_to_page;
    const Vec corner = map(page.view_box_corner);
    const Vec crossing{corner.x + read_px(tree, grid, "originx", map.a).value_or(0),
                       corner.y + read_px(tree, grid, "originy", map.d).value_or(0)};
    return std::isfinite(crossing.x) && std::isfinite(crossing.y) ? crossing : Vec();
}

GridSettings settings_of(const SvgTree& tree, pugi::xml_node grid, const SvgPage& page, bool shown)
{
    const Steps steps{step_px(tree, grid, "spacingx", page.user_to_page.a),
                      step_px(tree, grid, "spacingy", page.user_to_page.d)};
    // Steps that are the same in print may differ in the last digits that a unit's conversion left.
    constexpr double kSame = 1e-6;
    GridSettings settings;
    settings.subdivisions = read_empspacing(tree, grid);
    settings.spacing = static_cast<float>(steps.x_px / kPxPerPt * settings.subdivisions);
    const bool is_square = std::abs(steps.x_px - steps.y_px) <= kSame * steps.x_px;
    settings.is_shown = shown && is_square && settings.spacing > 0 && std::isfinite(settings.spacing);
    settings.is_snapped_to = settings.is_shown;
    return settings;
}

} // namespace

DocumentGrid read_grid(const SvgTree& tree, const SvgPage& page)
{
    const pugi::xml_node view = find_named_view(tree);
    DocumentGrid grid;
    for (const pugi::xml_node child : view.children()) {
        if (!tree.is_of(child, kInkscapeNamespace, "grid") || tree.attribute(child, "type") != "xygrid" ||
            !is_on(tree, child, "enabled", true))
            continue;
        grid.origin_on_page = crossing_of(tree, child, page);
        grid.settings = settings_of(
            tree, child, page, is_on(tree, view, "showgrid", false) && is_on(tree, child, "visible", true));
        break;
    }
    return grid;
}

} // namespace vnt::host
