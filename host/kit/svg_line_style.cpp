#include "host/kit/svg_line_style.h"

#include "host/kit/svg_decimals.h"
#include "host/kit/svg_numbers.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace vnt::host {
namespace {

// What a path inherits that shows in a line. Any of the names is answered by the one declaration.
struct Inherited {
    std::array<std::string_view, 4> names;
    std::string_view declaration;
};

constexpr std::array<Inherited, 6> kInherited = {
    {
     {{"stroke-opacity"}, ";stroke-opacity:1"},
     {{"stroke-dasharray"}, ";stroke-dasharray:none"},
     {{"stroke-linecap"}, ";stroke-linecap:butt"},
     {{"stroke-linejoin"}, ";stroke-linejoin:miter"},
     {{"stroke-miterlimit"}, ";stroke-miterlimit:4"},
     {{"marker", "marker-start", "marker-mid", "marker-end"}, ";marker:none"},
     }
};

bool is_set(const SvgTree& tree, const std::vector<PathStep>& path, std::string_view name)
{
    return std::any_of(path.begin(), path.end(),
                       [&](const PathStep& step) { return tree.property(step.element, name).has_value(); }) ||
           tree.style_sheets_hold(name);
}

} // namespace

std::string thin_line_style(const SvgTree& tree, const std::vector<PathStep>& path,
                            const Affine& layer_to_page)
{
    const double width = kPxPerPt / mean_scale(layer_to_page);
    std::string style = "fill:none;stroke:#000000;stroke-width:";
    append_decimal(style, width, width * std::numeric_limits<float>::epsilon() / 2);
    for (const Inherited& inherited : kInherited) {
        if (std::any_of(inherited.names.begin(), inherited.names.end(),
                        [&](std::string_view name) { return !name.empty() && is_set(tree, path, name); }))
            style += inherited.declaration;
    }
    return style;
}

} // namespace vnt::host
