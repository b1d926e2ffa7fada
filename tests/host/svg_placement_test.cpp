#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::host;
using host_test::corner;
using host_test::document_of;
using host_test::svg;

// The path of a line from 0,0 to 30,-60 points: the element around it and its data; behind it the notes.
std::string placed(const std::string& text, const Placement& placement)
{
    const auto document = document_of(text);
    const auto result = document.with_paths(
        {
            {corner(0, 0), corner(30, -60)}
    },
        placement);
    if (const auto* problem = std::get_if<Problem>(&result))
        return problem->sentence;
    const DrawnText& drawn = std::get<0>(result);
    const auto tree = SvgTree::read("drawn", drawn.text);
    const SvgTree& read = *std::get<0>(tree);
    const pugi::xml_node path = read.find_id(drawn.ids.front());
    std::string is =
        read.attribute(path.parent(), "id").value_or("") + ": " + read.attribute(path, "d").value_or("");
    for (const std::string& note : drawn.notes)
        is += "; " + note;
    return is;
}

const std::string kMillimetres = "id='root' width='210mm' height='297mm' viewBox='0 0 210 297'";
const std::string kPoints = "id='root' width='600pt' height='600pt' viewBox='0 0 600 600'";
const std::string kLayers =
    "<sodipodi:namedview inkscape:current-layer='now'/>"
    "<g id='then' transform='translate(1,2)'><g id='inner' transform='scale(2)'/></g>"
    "<g id='now'/><path id='p'/><defs><g id='d'/></defs><g id='flat' transform='scale(0)'/>"
    "<g id='hidden' display='none' inkscape:label='Sky'/>";
constexpr Affine kSame{1, 0, 0, -1, 0, 0};  // user units are points, y down
constexpr Affine kMoved{1, 0, 0, -1, 5, 7}; // from another origin
constexpr Affine kFlat{1, 0, 0, 0, 0, 0};

std::string not_in(const std::string& id, const std::string& why)
{
    return "now: M 0,0 L 30,60; the layer that the new paths are for, \"" + id + "\", " + why +
           "; they go to the layer \"now\"";
}

struct PlaceCase {
    const char* name;
    const char* layer; // none: null
    const Affine* artwork_to_user;
    std::string placed;
};
// clang-format off
const PlaceCase kPlaces[] = {
    {"InTheCurrentLayer", nullptr, nullptr, "now: M 0,0 L 30,60"},
    {"InTheCurrentLayerByItsName", "now", nullptr, "now: M 0,0 L 30,60"},
    {"InALayerOfATransform", "then", nullptr, "then: M -1,-2 L 29,58"},
    {"InALayerOfTwo", "inner", nullptr, "inner: M -0.5,-1 L 14.5,29"},
    {"InTheOutermostElement", "root", nullptr, "root: M 0,0 L 30,60"},
    {"ByTheDocumentsOwnMap", nullptr, &kSame, "now: M 0,0 L 30,60"},
    {"ByAMapOfItsOwn", nullptr, &kMoved, "now: M 5,7 L 35,67"},
    {"ByAMapOfItsOwnInALayer", "inner", &kMoved, "inner: M 2,2.5 L 17,32.5"},
    {"NotInALayerThatIsGone", "gone", nullptr, not_in("gone", "is not in the document")},
    {"NotInAPath", "p", nullptr, not_in("p", "is no layer")},
    {"NotInADefinition", "d", nullptr, not_in("d", "is not drawn where it stands")},
    {"NotInAFlatLayer", "flat", nullptr, not_in("flat", "is flattened by its transform")},
    {"NotInALayerWithoutAName", "", nullptr, not_in("", "is not in the document")},
    {"InAHiddenLayerWithANote", "hidden", nullptr,
     "hidden: M 0,0 L 30,60; the layer \"Sky\" is hidden; the new paths are in it all the same, and show when it "
     "does"},
    {"NotByAMapThatFlattens", nullptr, &kFlat,
     "cannot add the paths to drawing.svg: the map that places them flattens everything; draw them anew"},
};
// clang-format on
class Placed : public testing::TestWithParam<PlaceCase> {};
TEST_P(Placed, AreNewPaths)
{
    Placement placement;
    if (GetParam().layer != nullptr)
        placement.layer_id = GetParam().layer;
    if (GetParam().artwork_to_user != nullptr)
        placement.artwork_to_user = *GetParam().artwork_to_user;
    EXPECT_EQ(placed(svg(kPoints, kLayers), placement), GetParam().placed);
}
INSTANTIATE_TEST_SUITE_P(, Placed, testing::ValuesIn(kPlaces),
                         [](const auto& row) { return row.param.name; });

struct SpaceCase {
    const char* name;
    std::string root;
    std::string body;
    Vec origin; // of the artwork, in user space
    Vec end;    // of a vector of 72 by 72 points from there
};
// clang-format off
const SpaceCase kSpaces[] = {
    {"OfPoints", kPoints, "", {0, 0}, {72, -72}},
    {"OfMillimetres", kMillimetres, "", {0, 0}, {25.4, -25.4}},
    {"OfPixels", "width='600' height='300'", "", {0, 0}, {96, -96}},
    {"OfAViewBoxThatIsMoved", "width='100' height='100' viewBox='10 20 50 50'", "", {10, 20}, {58, -28}},
    {"OfAGridWithAnOrigin", kPoints,
     "<sodipodi:namedview showgrid='true'><inkscape:grid type='xygrid' originx='3' originy='4' spacingx='9' "
     "spacingy='9'/></sodipodi:namedview>", {3, 4}, {75, -68}},
    {"OfALayerDoesNotMatter", kPoints, "<g inkscape:groupmode='layer' transform='scale(7)'/>", {0, 0}, {72, -72}},
};
// clang-format on
class UserSpace : public testing::TestWithParam<SpaceCase> {};
TEST_P(UserSpace, IsReachedFromTheArtwork)
{
    const auto document = document_of(svg(GetParam().root, GetParam().body));
    const Affine map = document.artwork_to_user();
    constexpr double kRounding = 1e-12;
    const Vec origin = map({0, 0});
    EXPECT_NEAR(origin.x, GetParam().origin.x, kRounding);
    EXPECT_NEAR(origin.y, GetParam().origin.y, kRounding);
    const Vec end = map({72, 72});
    EXPECT_NEAR(end.x, GetParam().end.x, kRounding);
    EXPECT_NEAR(end.y, GetParam().end.y, kRounding);
}
INSTANTIATE_TEST_SUITE_P(, UserSpace, testing::ValuesIn(kSpaces),
                         [](const auto& row) { return row.param.name; });

// The page was made larger on all sides, so that its corner, the artwork's origin, is elsewhere.
TEST(PlacementOfThen, StaysWhereTheObjectsStay)
{
    const auto before = document_of(svg("width='100pt' height='100pt' viewBox='0 0 100 100'", "<g id='l'/>"));
    const std::string after = svg("width='140pt' height='140pt' viewBox='-20 -20 140 140'", "<g id='l'/>");
    EXPECT_EQ(placed(after, {"l", before.artwork_to_user()}), "l: M 0,0 L 30,60");
    EXPECT_EQ(placed(after, {"l", {}}), "l: M -20,-20 L 10,40");
}

TEST(DocumentIds, AreThoseOfAllElements)
{
    const auto document = document_of(svg(
        "id='root'", "<defs id='d'><g/></defs><!-- id='no' --><g id='a&amp;b'><path id=''/></g><g id='d'/>"));
    EXPECT_EQ(document.ids(), (std::vector<std::string>{"root", "d", "a&b", "", "d"}));
    EXPECT_EQ(document.root_id(), "root");
    EXPECT_EQ(document.layer_id(), "root");
}

TEST(DocumentIds, MayBeMissing)
{
    const auto document = document_of(svg("", "<g inkscape:groupmode='layer'/>"));
    EXPECT_EQ(document.ids(), std::vector<std::string>());
    EXPECT_EQ(document.root_id(), "");
    EXPECT_EQ(document.layer_id(), "");
}

TEST(DocumentLayer, IsTheCurrentOne) { EXPECT_EQ(document_of(svg(kPoints, kLayers)).layer_id(), "now"); }

} // namespace
