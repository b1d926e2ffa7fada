#include "host/kit/svg_line_style.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace vnt::host;
using host_test::svg;

// What stands in the style behind the width, for a path in what has the id l.
std::string added_style(const std::string& attributes, const std::string& body)
{
    const auto read = SvgTree::read("drawing.svg", svg(attributes, body));
    if (const auto* problem = std::get_if<Problem>(&read))
        throw std::runtime_error(problem->sentence);
    const SvgTree& tree = *std::get<0>(read);
    const std::string style = thin_line_style(tree, tree.path_to(tree.find_id("l")), Affine());
    const std::string plain = "fill:none;stroke:#000000;stroke-width:1.3333333";
    return style.substr(0, plain.size()) == plain ? style.substr(plain.size()) : "(" + style + ")";
}

struct StyleCase {
    const char* name;
    const char* attributes; // of the outermost element
    const char* body;
    const char* added;
};
// clang-format off
const StyleCase kStyles[] = {
    {"NothingWhereNothingIsSet", "",
     "<g id='l' style='display:inline;opacity:0.5;fill:red' transform='scale(2)'/>",
     ""},
    {"TheOpacityOfStrokes", "", "<g id='l' stroke-opacity='0'/>", ";stroke-opacity:1"},
    {"Dashes", "", "<g id='l' style='stroke-dasharray:0 9'/>", ";stroke-dasharray:none"},
    {"Caps", "", "<g id='l' style='stroke-linecap:round'/>", ";stroke-linecap:butt"},
    {"Joins", "", "<g id='l' style='stroke-linejoin:bevel'/>", ";stroke-linejoin:miter"},
    {"Mitres", "", "<g id='l' stroke-miterlimit='1'/>", ";stroke-miterlimit:4"},
    {"MarkersOfAllKinds", "", "<g id='l' style='marker:url(#m)'/>", ";marker:none"},
    {"MarkersAtTheStart", "", "<g id='l' marker-start='url(#m)'/>", ";marker:none"},
    {"MarkersInTheMiddle", "", "<g id='l' style='marker-mid:url(#m)'/>", ";marker:none"},
    {"MarkersAtTheEnd", "", "<g id='l' style='marker-end:url(#m)'/>", ";marker:none"},
    {"SeveralInOneOrder", "", "<g id='l' style='marker-end:url(#m);stroke-dasharray:1;stroke-opacity:0'/>",
     ";stroke-opacity:1;stroke-dasharray:none;marker:none"},
    {"WhatALayerAroundItSets", "",
     "<g style='stroke-dasharray:1'><g><g id='l'/></g></g>", ";stroke-dasharray:none"},
    {"WhatTheOutermostElementSets", "stroke-opacity='0.5'", "<g id='l'/>", ";stroke-opacity:1"},
    {"NothingOfAnotherLayer", "", "<g style='stroke-dasharray:1'/><g id='l'/>", ""},
    {"NothingOfAnotherPath", "", "<g id='l'><path style='stroke-opacity:0'/></g>", ""},
    {"NothingOfATransform", "", "<g id='l' transform='scale(1)'/>", ""},
    {"WhatAStyleSheetNames", "", "<g id='l'/><style>path { stroke-opacity: 0 }</style>", ";stroke-opacity:1"},
    {"WhatAStyleSheetInASectionNames", "",
     "<defs><style><![CDATA[g > * { marker-mid: none }]]></style></defs><g id='l'/>",
     ";marker:none"},
    {"NothingForAStyleSheetOfOtherNames", "",
     "<style>path { stroke: red; opacity: 0 }</style><g id='l'/>", ""},
    {"NothingForAnEmptyStyleSheet", "", "<style/><desc>stroke-opacity</desc><g id='l'/>", ""},
};
// clang-format on
class SvgLineStyle : public testing::TestWithParam<StyleCase> {};
TEST_P(SvgLineStyle, UndoesWhatTheLineWouldInherit)
{
    EXPECT_EQ(added_style(GetParam().attributes, GetParam().body), GetParam().added);
}
INSTANTIATE_TEST_SUITE_P(, SvgLineStyle, testing::ValuesIn(kStyles),
                         [](const auto& row) { return row.param.name; });

TEST(SvgStyleSheets, TakeNoTimeWhenTheyStandInOneAnother)
{
    constexpr int kDeep = 50'000;
    std::string body = "<g id='l'/>";
    for (int i = 0; i < kDeep; ++i)
        body += "<style>";
    for (int i = 0; i < kDeep; ++i)
        body += "</style>";
    EXPECT_EQ(added_style("", body), "");
}

} // namespace
