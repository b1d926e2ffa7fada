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
    {"WhatIsInALink", current("d") + "<a><g id='d'/></a>", "d"},
    {"ALink", current("d") + "<a id='d'/>", "d"},
    {"WhatIsInASwitch", current("d") + "<switch><g><svg id='d'/></g></switch>", "d"},
    {"NotASwitch", current("d") + "<switch id='d'/>",
     "root; the current layer, \"d\", is no layer; the new paths go to the document's outermost element"},
    {"NotWhatIsInAText", current("d") + "<text><a id='d'/></text>",
     "root; the current layer, \"d\", is not drawn where it stands; the new paths go to the document's "
     "outermost " "element"},
    {"NotWhatIsInAnUnknownElement", current("d") + "<group><g id='d'/></group>",
     "root; the current layer, \"d\", is not drawn where it stands; the new paths go to the document's "
     "outermost " "element"},
    {"NotWhatIsInAGroupOfAnotherNamespace",
     current("d") + "<x:g xmlns:x='u'><g id='d'/></x:g>",
     "root; the current layer, \"d\", is not drawn where it stands; the new paths go to the document's "
     "outermost " "element"},
    {"WhatIsInAGroupOfAPrefixThatIsBoundAgain",
     current("d") + "<x:g xmlns:x='http://www.w3.org/2000/svg'><x:g><g id='d'/></x:g></x:g>", "d"},
    {"NotWhatIsInAGroupWhosePrefixIsBoundToAnother",
     current("d") + "<x:g xmlns:x='http://www.w3.org/2000/svg'><x:g xmlns:x='u'><g id='d'/></x:g></x:g>",
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
    {"OneThatAStyleHidesWithImportance", current("h") + "<g id='h' style='display : none ! important'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatAnImportantStyleHides",
     current("h") + "<g id='h' style='display:none!important;display:inline'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatAnImportantStyleShows",
     current("h") + "<g id='h' style='display:inline !important;display:none'/>",
     "h"},
    {"OneThatAStyleBehindACommentHides", current("h") + "<g id='h' style='/*x;*/display/**/:none/* y'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneWhoseStyleIsAComment", current("h") + "<g id='h' style='/*display:none*/'/>", "h"},
    {"OneWhoseStyleIsInAString",
     current("h") + "<g id='h' style='a:\";display:none;\";b:url(;display:none;)'/>", "h"},
    {"OneThatAStyleBehindAStringHides", current("h") + "<g id='h' style='a:\"(;/*\";b:url(c);display:none'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatAnAttributeWithBlanksHides", current("h") + "<g id='h' display=' none '/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatIsNotVisible", current("h") + "<g id='h' visibility='hidden'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneThatIsCollapsed", current("h") + "<g id='h' style='visibility:collapse'/>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"OneInOneThatIsNotVisible", current("h") + "<g visibility='hidden'><g id='h' visibility='inherit'/></g>",
     "h; the layer \"h\" is hidden; the new paths are in it all the same, and show when it does"},
    {"AVisibleOneInOneThatIsNot",
     current("h") + "<g visibility='hidden'><g id='h' visibility='visible'/></g>",
     "h"},
    {"OneInAHiddenOne", current("h") + "<g style='display:none'><g id='h' inkscape:label='In'/></g>",
     "h; the layer \"In\" is hidden; the new paths are in it all the same, and show when it does"},
    {"ALockedOne", current("l") + "<g id='l' sodipodi:insensitive='true'/>",
     "l; the layer \"l\" is locked; the new paths are in it all the same"},
    {"ALockedOneOfAnyValue", current("l") + "<g id='l' sodipodi:insensitive=''/>",
     "l; the layer \"l\" is locked; the new paths are in it all the same"},
    {"OneInALockedOneOfAnOldNamespace",
     current("l") + "<g xmlns:old='http://inkscape.sourceforge.net/DTD/sodipodi-0.dtd' old:insensitive='1'>"
     "<g id='l'/></g>",
     "l; the layer \"l\" is locked; the new paths are in it all the same"},
    {"OneThatOnlyAnotherNamespaceLocks",
     current("l") + "<g id='l' insensitive='1' xmlns:x='u' x:insensitive='1'/>",
     "l"},
    {"ARecordOfAnOldNamespace",
     "<old:namedview xmlns:old='http://inkscape.sourceforge.net/DTD/sodipodi-0.dtd' "
     "inkscape:current-layer='below'/>" + kLayers, "below"},
    {"NotByARecordOfANamespaceLikeIt",
     "<no:namedview xmlns:no='http://sodipodi.sourceforge.net/DTD/sodipodi-1.dtd' "
     "inkscape:current-layer='below'/>" + kLayers, "above"},
    {"OneWithALineEndInItsName",
     current("l") + "<g id='l' inkscape:label='a&#10;b' sodipodi:insensitive='1'/>",
     "l; the layer \"a\\x0Ab\" is locked; the new paths are in it all the same"},
    {"OneWithATransformOfNoSense", current("t") + "<g id='t' transform='wobble(1)'/>",
     "t; a transform of the layer \"t\" cannot be understood and counts as none"},
    {"OneInOneWithATransformOfNoSense",
     current("t") + "<g transform='scale'><g transform='x'><g id='t'/></g></g>",
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

// In 100,000 elements of that tag.
std::string deep_inside(const std::string& start_tag, const std::string& end_tag)
{
    constexpr int kDeep = 100'000;
    std::string body = current("deep");
    for (int i = 0; i < kDeep; ++i)
        body += start_tag;
    body += "<g id='deep'/>";
    for (int i = 0; i < kDeep; ++i)
        body += end_tag;
    return svg("", body);
}

// A way that grows with the depth for each level would take minutes here.
struct DepthCase {
    const char* name;
    const char* start_tag;
    const char* end_tag;
    const char* chosen; // what the notes say of it
};
const DepthCase kDeep[] = {
    {"OfGroups",          "<g>",                               "</g>",    ""},
    {"OfLockedGroups",    "<g sodipodi:insensitive='1'>",      "</g>",
     "the layer \"deep\" is locked; the new paths are in it all the same"   },
    {"OfViewports",       "<svg x='1' transform='wobble(1)'>", "</svg>",  ""},
    {"OfOtherNamespaces", "<x:g xmlns:x='u'>",                 "</x:g>",
     "the current layer, \"deep\", is not drawn where it stands; the new paths go to the document's "
     "outermost "
     "element"                                                              },
    {"OfDefinitions",     "<defs>",                            "</defs>",
     "the current layer, \"deep\", is not drawn where it stands; the new paths go to the document's "
     "outermost "
     "element"                                                              },
};
class SvgLayerDepth : public testing::TestWithParam<DepthCase> {};
TEST_P(SvgLayerDepth, IsNotLimited)
{
    const auto document = document_of(deep_inside(GetParam().start_tag, GetParam().end_tag));
    EXPECT_EQ(host_test::drawn(document, {{host_test::corner(0, 0)}}).ids.size(), 1U);
    std::string notes;
    for (const std::string& note : document.notes())
        notes += note;
    EXPECT_EQ(notes, GetParam().chosen);
}
INSTANTIATE_TEST_SUITE_P(, SvgLayerDepth, testing::ValuesIn(kDeep),
                         [](const auto& row) { return row.param.name; });

TEST(SvgLayerNotes, AreUtf8AlsoOfAnotherEncoding)
{
    const std::string text =
        "<?xml version='1.0' encoding='windows-1252'?>" +
        svg("", current("gr\xFC") + "<g id='l' inkscape:groupmode='layer' sodipodi:insensitive='1' "
                                    "inkscape:label='Stra\xDF"
                                    "e \xC3\xA4'/>");
    EXPECT_EQ(document_of(text).notes(),
              (std::vector<std::string>{
                  "the current layer, \"gr\\xFC\", is not in the document; the new paths go to the layer "
                  "\"Stra\\xDFe \xC3\xA4\"",
                  "the layer \"Stra\\xDFe \xC3\xA4\" is locked; the new paths are in it all the same"}));
    EXPECT_EQ(
        problem_of(
            "<?xml version='1.0' encoding='iso-8859-1'?><svg xmlns='http://www.w3.org/2000/svg'></\xE9>"),
        "cannot read drawing.svg as SVG: line 1, column 84: the end tag </\\xE9> stands where </svg> is "
        "due; mend it, or save it again from a drawing program");
}

} // namespace
