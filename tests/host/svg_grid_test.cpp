#include "host/kit/svg_grid.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::host;
using host_test::svg;
using host_test::with_named_view;

DocumentGrid grid_of(const std::string& text)
{
    const auto tree = SvgTree::read("drawing.svg", text);
    const SvgTree& read = *std::get<0>(tree);
    return read_grid(read, read_page(read));
}

std::string shown(const std::string& grids) { return with_named_view("showgrid='true'", grids); }

struct GridCase {
    const char* name;
    std::string text;
    bool in_force;
    float spacing; // points
    int subdivisions;
    double x, y; // of the origin, px on the page
};
// clang-format off
const GridCase kGrids[] = {
    {"ABareOneHasTheEditorsDefaults", shown("<inkscape:grid type='xygrid'/>"), true, 3.75F, 5, 0, 0},
    {"PixelsAreUserUnitsHere",
     shown("<inkscape:grid type='xygrid' spacingx='8' spacingy='8' empspacing='3' originx='4' originy='-6'/>"),
     true, 18, 3, 4, -6},
    {"AUnitIsALengthOnThePage",
     shown("<inkscape:grid type='xygrid' spacingx='1in' spacingy='72pt' empspacing='1' originx='6pc' "
           "originy='1px'/>"),
     true, 72, 1, 96, 1},
    {"UserUnitsAreScaledAndTheViewBoxShiftsTheOrigin",
     svg("width='400' height='200' viewBox='10 20 200 100'",
         "<sodipodi:namedview showgrid='true'><inkscape:grid type='xygrid' spacingx='3' spacingy='3' "
         "empspacing='4' originx='5' originy='7'/></sodipodi:namedview>"),
     true, 18, 4, 10, 14},
    {"MillimetresOfAMillimetreDocument",
     svg("width='210mm' height='297mm' viewBox='0 0 210 297'",
         "<sodipodi:namedview showgrid='true'><inkscape:grid type='xygrid' spacingx='12.7' spacingy='12.7' "
         "empspacing='2' originx='25.4'/></sodipodi:namedview>"),
     true, 72, 2, 96, 0},
    {"EmpspacingIsAtLeastOne",
     shown("<inkscape:grid type='xygrid' spacingx='4' spacingy='4' empspacing='0'/>"), true, 3, 1, 0, 0},
    {"WhatIsNoNumberIsTheDefault",
     shown("<inkscape:grid type='xygrid' spacingx='wide' spacingy='-1' empspacing='2.5' originx='50%'/>"),
     true, 3.75F, 5, 0, 0},
    {"StepsThatDifferAreNoGrid",
     shown("<inkscape:grid type='xygrid' spacingx='4' spacingy='5' originx='3' originy='2'/>"), false, 0, 0,
     3, 2},
    {"StepsThatDifferInTheirLastDigitsAreOne",
     shown("<inkscape:grid type='xygrid' spacingx='4' spacingy='4.000001' empspacing='1'/>"), true, 3, 1, 0,
     0},
    {"AnAxonometricOneIsNone", shown("<inkscape:grid type='axonomgrid' originx='3'/>"), false, 0, 0, 0, 0},
    {"OneThatIsSwitchedOffIsNone", shown("<inkscape:grid type='xygrid' enabled='false' originx='3'/>"),
     false, 0, 0, 0, 0},
    {"AnInvisibleOneIsNoneButHasTheOrigin",
     shown("<inkscape:grid type='xygrid' visible='false' originx='3' originy='4'/>"), false, 0, 0, 3, 4},
    {"TheFirstThatIsEnabled",
     shown("<inkscape:grid type='axonomgrid' originx='1'/>"
     "<inkscape:grid type='xygrid' enabled='false' originx='2'/>"
     "<inkscape:grid type='xygrid' spacingx='4' spacingy='4' empspacing='1' originx='3'/>"
     "<inkscape:grid type='xygrid' originx='4'/>"),
     true, 3, 1, 3, 0},
    {"NoOtherThanTheFirstThatIsEnabled",
     shown("<inkscape:grid type='xygrid' visible='false' originx='2'/>"
     "<inkscape:grid type='xygrid' spacingx='4' spacingy='4' empspacing='1' originx='3'/>"),
     false, 0, 0, 2, 0},
    {"NoOtherThanTheFirstAlsoWhenItsStepsDiffer",
     shown("<inkscape:grid type='xygrid' spacingx='4' spacingy='5' originx='2'/>"
     "<inkscape:grid type='xygrid' originx='3'/>"),
     false, 0, 0, 2, 0},
    {"ACrossingThatIsNoNumberIsThePagesCorner",
     svg("width='400' height='200' viewBox='0 0 200 100'",
         "<sodipodi:namedview><inkscape:grid type='xygrid' originx='1e308' originy='7'/>"
         "</sodipodi:namedview>"),
     false, 0, 0, 0, 0},
    {"GridsThatTheDocumentDoesNotShowStillHaveTheOrigin",
     with_named_view("showgrid='false'", "<inkscape:grid type='xygrid' originx='3' originy='4'/>"), false, 0,
     0, 3, 4},
    {"WithoutShowgridTheyAreNotShown", with_named_view("", "<inkscape:grid type='xygrid'/>"), false, 0, 0, 0,
     0},
    {"AGridOfAnotherNamespaceIsNone", shown("<grid type='xygrid' originx='3'/>"), false, 0, 0, 0, 0},
    {"WithoutANamedViewThereIsNone", svg("", ""), false, 0, 0, 0, 0},
    {"TheOriginOfALetterboxIsWhereItsCornerIs",
     svg("width='300' height='100' viewBox='0 0 100 100'",
         "<sodipodi:namedview><inkscape:grid type='xygrid' originx='5'/></sodipodi:namedview>"),
     false, 0, 0, 105, 0},
    {"WithoutAGridTheOriginIsThePagesCornerAlsoInALetterbox",
     svg("width='300' height='100' viewBox='0 0 100 100'", ""), false, 0, 0, 0, 0},
    {"SquaresOfAStretchedPageAreNoGrid",
     svg("width='200' height='100' viewBox='0 0 100 100' preserveAspectRatio='none'",
         "<sodipodi:namedview showgrid='true'><inkscape:grid type='xygrid' spacingx='5' spacingy='5'/>"
         "</sodipodi:namedview>"),
     false, 0, 0, 0, 0},
};
// clang-format on
class SvgGrid : public testing::TestWithParam<GridCase> {};
TEST_P(SvgGrid, IsRead)
{
    const DocumentGrid grid = grid_of(GetParam().text);
    EXPECT_EQ(grid.settings.is_shown, GetParam().in_force);
    EXPECT_EQ(grid.settings.is_snapped_to, GetParam().in_force);
    EXPECT_GE(grid.settings.subdivisions, 1);
    if (GetParam().in_force) {
        EXPECT_FLOAT_EQ(grid.settings.spacing, GetParam().spacing);
        EXPECT_EQ(grid.settings.subdivisions, GetParam().subdivisions);
    }
    EXPECT_DOUBLE_EQ(grid.origin_on_page.x, GetParam().x);
    EXPECT_DOUBLE_EQ(grid.origin_on_page.y, GetParam().y);
}
INSTANTIATE_TEST_SUITE_P(, SvgGrid, testing::ValuesIn(kGrids),
                         [](const auto& row) { return row.param.name; });

} // namespace
