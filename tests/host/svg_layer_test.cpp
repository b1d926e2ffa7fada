#include "host/kit/svg_layer.h"
#include "tests/host/svg_samples.h"

#include <gtest/gtest.h>

namespace {

using namespace vnt::host;
using host_test::document_of;
using host_test::problem_of;
using host_test::svg;

std::string current(const std::string& id)
{
    return "<sodipodi:namedview inkscape:current-layer=\"" + id + "\"/>";
}

// The id of the element that is chosen for body, or the problem; behind it the notes.
std::string chosen(const std::string& body, const std::string& attributes = "id=\"root\"")
{
    const auto tree = SvgTree::read("drawing.svg", svg(attributes, body));
    if (const auto* problem = std::get_if<Problem>(&tree))
        return problem->sentence;
    const SvgTree& read = *std::get<0>(tree);
    const auto layer = find_current_layer(read, read_page(read), "drawing.svg");
    if (const auto* problem = std::get_if<Problem>(&layer))
        return problem->sentence;
    std::string text = std::get<0>(layer).element.attribute("id").value();
    for (const std::string& note : std::get<0>(layer).notes)
        text += "; " + note;
    return text;
}

const std::string kLayers =
    "<g id='below' inkscape:groupmode='layer'><g id='sub' inkscape:groupmode='layer'/></g>"
    "<g id='above' inkscape:groupmode='layer' inkscape:label='Top'/><g id='group'/>";

struct ChoiceCase {
    const char* name;
    std::string body;
    std::string chosen;
};
// clang-format off
const ChoiceCase kChoices[] = {
    {"TheOneThatIsNamed", current("below") + kLayers, "below"},
    {"ASubLayer", current("sub") + kLayers, "sub"},
    {"AGroupThatIsNoLayer", current("group") + kLayers, "group"},
    {"TheOutermostElement", current("root") + kLayers, "root"},
    {"TheTopmostWithoutARecord", kLayers, "above"},
    {"TheTopmostWhenTheRecordNamesNone", "<sodipodi:namedview/>" + kLayers, "above"},
    {"TheFirstOfTwoRecords", current("below") + current("sub") + kLayers, "below"},
    {"ARecordInsideAGroupDoesNotCount", "<g>" + current("below") + "</g>" + kLayers, "above"},
    {"TheOutermostElementWithoutLayers", "<g id='group'/>", "root"},
    {"ALayerInAGroupIsNotTopmost", "<g><g id='in' inkscape:groupmode='layer'/></g>", "root"},
    {"TheFirstElementOfAnIdThatIsThereTwice",
     current("twice") + "<g id='group'><g id='twice' inkscape:label='1'/></g><path id='twice'/>", "twice"},
    {"NotWhatIsMissing", current("gone") + kLayers,
     "above; the current layer, \"gone\", is not in the document; the new paths go to the layer \"Top\""},
    {"NotAPath", current("p") + kLayers + "<path id='p'/>",
     "above; the current layer, \"p\", is no layer; the new paths go to the layer \"Top\""},
    {"NotAGroupOfAnotherNamespace", current("p") + "<g xmlns='http://example.com' id='p'/>",
     "root; the current layer, \"p\", is no layer; the new paths go to the document's outermost element"},
    {"NotWhatIsOnlyDefined", current("d") + "<defs><g><g id='d'/></g></defs>",
     "root; the current layer, \"d\", is not drawn where it stands; the new paths go to the document's "
     "outermost " "element"},
    {"NotWhatIsInASymbol", current("d") + "<symbol><g id='d'/></symbol>",
     "root; the current layer, \"d\", is not drawn where it stands; the new paths go to the document's "
     "outermost " "element"},
    {"AHiddenOne", current("h") + "<g id='h' display='none'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatAStyleHides", current("h") + "<g id='h' display='inline' style='a:b; display : none ;c:d'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatAStyleShows", current("h") + "<g id='h' display='none' style='display:none;display:inline'/>",
     "h"},
    {"OneInAHiddenOne", current("h") + "<g style='display:none'><g id='h' inkscape:label='In'/></g>",
     "h; the layer \"In\" is hidden; the new paths are in it all the same, and show when it does"},
    {"ALockedOne", current("l") + "<g id='l' sodipodi:insensitive='true'/>",
     "l; the layer \"l\" is locked; the new paths are in it all the same"},
    {"OneWithATransformOfNoSense", current("t") + "<g id='t' transform='wobble(1)'/>",
     "t; a transform of the layer \"t\" cannot be understood and counts as none"},
};
// clang-format on
class SvgLayer : public testing::TestWithParam<ChoiceCase> {};
TEST_P(SvgLayer, IsChosen) { EXPECT_EQ(chosen(GetParam().body), GetParam().chosen); }
INSTANTIATE_TEST_SUITE_P(, SvgLayer, testing::ValuesIn(kChoices),
                         [](const auto& row) { return row.param.name; });

struct FlatCase {
    const char* name;
    const char* body;
};
const FlatCase kFlat[] = {
    {"ByItsOwnTransform", "<g id='f' transform='scale(0)'/>"                                      },
    {"ByOneAroundIt",     "<g transform='matrix(1 1 1 1 0 0)'><g id='f'/></g>"                    },
    {"ByAllTogether",     "<g transform='scale(1e-200)'><g id='f' transform='scale(1e-200)'/></g>"},
};
class SvgFlatLayer : public testing::TestWithParam<FlatCase> {};
TEST_P(SvgFlatLayer, CannotBeDrawnInto)
{
    EXPECT_EQ(
        problem_of(svg("", current("f") + GetParam().body)),
        "cannot draw into drawing.svg: the transform of the layer \"f\" flattens everything in it; choose "
        "another current layer");
}
INSTANTIATE_TEST_SUITE_P(, SvgFlatLayer, testing::ValuesIn(kFlat),
                         [](const auto& row) { return row.param.name; });

TEST(SvgLayerDepth, IsNotLimited)
{
    constexpr int kDeep = 100'000;
    std::string body = current("deep");
    for (int i = 0; i < kDeep; ++i)
        body += "<g>";
    body += "<g id='deep'/>";
    for (int i = 0; i < kDeep; ++i)
        body += "</g>";
    const auto document = document_of(svg("", body));
    EXPECT_EQ(host_test::drawn(document, {{host_test::corner(0, 0)}}).ids.size(), 1U);
}

} // namespace
