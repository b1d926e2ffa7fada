#include "host/kit/svg_new_document.h"

#include "host/kit/svg_decimals.h"

#include <algorithm>
#include <string_view>

namespace vnt::host {
namespace {

// The grid is there for the artwork's origin: one of its crossings is that, also far from the page's corner.
constexpr std::string_view kText = R"(<?xml version="1.0" encoding="UTF-8"?>
<svg width="@WIDTH@pt" height="@HEIGHT@pt" viewBox="@LEFT@ @TOP@ @WIDTH@ @HEIGHT@"
    xmlns="http://www.w3.org/2000/svg"
    xmlns:inkscape="http://www.inkscape.org/namespaces/inkscape"
    xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd">
  <sodipodi:namedview id="namedview1" showgrid="false" inkscape:current-layer="layer1">
    <inkscape:grid id="grid1" type="xygrid" units="pt" originx="@ORIGIN_X@" originy="@ORIGIN_Y@"
        spacingx="25" spacingy="25" empspacing="2"/>
  </sodipodi:namedview>
  <g id="layer1" inkscape:groupmode="layer" inkscape:label="VANT">
  </g>
</svg>
)";

void fill_in(std::string& text, std::string_view name, double value)
{
    std::string number;
    append_decimal(number, value, 0);
    for (std::size_t at = text.find(name); at != text.npos; at = text.find(name))
        text.replace(at, name.size(), number);
}

} // namespace

std::string make_svg_document(const ArtBox& box, double margin)
{
    constexpr double kLeastSize = 1;
    const double left = box.left - margin;
    const double top = -box.top - margin;
    std::string text(kText);
    fill_in(text, "@WIDTH@", std::max(box.right - box.left + 2 * margin, kLeastSize));
    fill_in(text, "@HEIGHT@", std::max(box.top - box.bottom + 2 * margin, kLeastSize));
    fill_in(text, "@LEFT@", left);
    fill_in(text, "@TOP@", top);
    fill_in(text, "@ORIGIN_X@", -left);
    fill_in(text, "@ORIGIN_Y@", -top);
    return text;
}

} // namespace vnt::host
