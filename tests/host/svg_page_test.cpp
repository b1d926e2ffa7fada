#include "host/kit/svg_layer.h"
#include "host/kit/svg_page.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace vnt::host;
using host_test::svg;

void expect_map(const Affine& map, const Affine& expected)
{
    constexpr double kRounding = 1e-12; // of products of numbers below 1e3
    EXPECT_NEAR(map.a, expected.a, kRounding);
    EXPECT_NEAR(map.b, expected.b, kRounding);
    EXPECT_NEAR(map.c, expected.c, kRounding);
    EXPECT_NEAR(map.d, expected.d, kRounding);
    EXPECT_NEAR(map.e, expected.e, kRounding);
    EXPECT_NEAR(map.f, expected.f, kRounding);
}

struct AspectCase {
    const char* name;
    const char* preserve_aspect_ratio;
    Affine map; // of a box from (10, 20) with the size 100 x 50 to a viewport of 300 x 300
};
const AspectCase kAspects[] = {
    {"WithoutAWordTheMiddle",       "",                       {3, 0, 0, 3, -30, 15}   },
    {"AWordOfNoSenseIsTheMiddle",   "xminYMin",               {3, 0, 0, 3, -30, 15}   },
    {"TheTop",                      "xMinYMin",               {3, 0, 0, 3, -30, -60}  },
    {"TheBottom",                   "xMidYMax meet",          {3, 0, 0, 3, -30, 90}   },
    {"DeferIsPassedOver",           "defer xMinYMin",         {3, 0, 0, 3, -30, -60}  },
    {"DeferIsPassedOverWithASlice", " defer\txMaxYMid slice", {6, 0, 0, 6, -360, -120}},
    {"ASliceFromTheLeft",           "xMinYMid slice",         {6, 0, 0, 6, -60, -120} },
    {"ASliceFromTheMiddle",         "xMidYMid slice",         {6, 0, 0, 6, -210, -120}},
    {"NoneStretches",               "none",                   {3, 0, 0, 6, -30, -120} },
    {"NoneStretchesAlsoWithASlice", "none slice",             {3, 0, 0, 6, -30, -120} },
};
class SvgAspect : public testing::TestWithParam<AspectCase> {};
TEST_P(SvgAspect, LaysTheBoxIntoTheViewport)
{
    expect_map(view_box_to_viewport({10, 20, 100, 50}, GetParam().preserve_aspect_ratio, 300, 300),
               GetParam().map);
}
INSTANTIATE_TEST_SUITE_P(, SvgAspect, testing::ValuesIn(kAspects),
                         [](const auto& row) { return row.param.name; });

struct SpaceCase {
    const char* name;
    const char* attributes; // of the outermost element
    const char* body;
    Affine layer_to_page; // of what has the id l
};
const char* const kDouble = "width='400' height='200' viewBox='0 0 200 100'";
// clang-format off
const SpaceCase kSpaces[] = {
    {"APerCentIsOfTheViewBox", kDouble, "<svg id='l' x='10%' y='20%'/>", {2, 0, 0, 2, 40, 40}},
    {"APerCentIsOfThePageWithoutAViewBox", "width='400' height='200'", "<svg id='l' x='10%' y='20%'/>",
     {1, 0, 0, 1, 40, 40}},
    // 20 + 2 * 5 and 10 + 2 * 5 of the root's units
    {"OneLevelDeeperOfTheInnerViewBox", kDouble,
     "<svg x='10%' y='10%' width='100' height='50' viewBox='0 0 50 25'><svg id='l' x='10%' y='20%'/></svg>",
     {4, 0, 0, 4, 60, 40}},
    {"OneLevelDeeperOfTheInnerSizeWithoutAViewBox", kDouble,
     "<svg width='100' height='50'><svg id='l' x='10%' y='10%'/></svg>", {2, 0, 0, 2, 20, 10}},
    {"AGroupInBetweenKeepsTheViewport", kDouble, "<g transform='scale(2)'><svg id='l' x='10%'/></g>",
     {4, 0, 0, 4, 80, 0}},
    {"SizesInPerCentScaleTheirViewBox", kDouble, "<svg id='l' width='50%' height='50%' viewBox='0 0 10 5'/>",
     {20, 0, 0, 20, 0, 0}},
    {"ASizeThatIsMissingIsTheWhole", kDouble, "<svg id='l' viewBox='0 0 20 10'/>", {20, 0, 0, 20, 0, 0}},
    {"DeferOnAnInnerOne", kDouble,
     "<svg id='l' width='100' height='100' viewBox='0 0 100 50' preserveAspectRatio='defer xMinYMax'/>",
     {2, 0, 0, 2, 0, 100}},
    {"ATransformOfAnInnerOneDoesNothing", kDouble, "<svg id='l' x='1' transform='scale(3)'/>",
     {2, 0, 0, 2, 2, 0}},
    {"ATransformAroundAnInnerOneCounts", kDouble, "<g transform='translate(5)'><svg x='1'><g id='l' "
     "transform='scale(3)'/></svg></g>", {6, 0, 0, 6, 12, 0}},
    {"ATransformOfTheOutermostDoesNothing", "width='400' height='200' transform='scale(3)'", "<g id='l'/>",
     {1, 0, 0, 1, 0, 0}},
};
// clang-format on
class SvgSpace : public testing::TestWithParam<SpaceCase> {};
TEST_P(SvgSpace, IsThatOfTheViewportsAround)
{
    const auto read =
        SvgTree::read("drawing.svg",
                      svg(GetParam().attributes,
                          std::string("<sodipodi:namedview inkscape:current-layer='l'/>") + GetParam().body));
    const SvgTree& tree = *std::get<0>(read);
    const auto found = find_current_layer(tree, read_page(tree), "drawing.svg");
    const DrawingLayer& layer = std::get<0>(found);
    EXPECT_EQ(layer.notes, std::vector<std::string>{});
    expect_map(layer.layer_to_page, GetParam().layer_to_page);
}
INSTANTIATE_TEST_SUITE_P(, SvgSpace, testing::ValuesIn(kSpaces),
                         [](const auto& row) { return row.param.name; });

struct SizeCase {
    const char* name;
    const char* attributes;
    double width_px, height_px;
};
constexpr double kA4Width = 210 * 96 / 25.4;
constexpr double kA4Height = 297 * 96 / 25.4;
const SizeCase kSizes[] = {
    {"InTheirUnits",                       "width='2in' height='72pt'",                     192,      96       },
    {"OfTheViewBoxWhenOneIsMissing",       "width='50' viewBox='0 0 20 10'",                50,       10       },
    {"OfTheViewBoxWhenTheyHangOnAFont",    "width='10em' height='4ex' viewBox='0 0 20 10'", 20,       10       },
    {"OfTheViewBoxInPerCent",              "width='50%' height='100%' viewBox='0 0 20 10'", 10,       10       },
    {"OfASheetWithoutAnything",            "",                                              kA4Width, kA4Height},
    {"OfASheetWithAViewBoxThatIsNone",     "viewBox='0 0 0 10'",                            kA4Width, kA4Height},
    {"OfTheViewBoxWhenTheyAreNotPositive", "width='-5' height='0' viewBox='0 0 20 10'",     20,       10       },
};
class SvgPageSize : public testing::TestWithParam<SizeCase> {};
TEST_P(SvgPageSize, IsRead)
{
    const auto read = SvgTree::read("drawing.svg", svg(GetParam().attributes, ""));
    const SvgPage page = read_page(*std::get<0>(read));
    EXPECT_DOUBLE_EQ(page.width_px, GetParam().width_px);
    EXPECT_DOUBLE_EQ(page.height_px, GetParam().height_px);
}
INSTANTIATE_TEST_SUITE_P(, SvgPageSize, testing::ValuesIn(kSizes),
                         [](const auto& row) { return row.param.name; });

} // namespace
