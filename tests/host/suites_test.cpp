// The functions of each suite, called as a plug-in calls them: what they answer, what the trace has, and who
// erred.
#include "tests/host/service_calls.h"

#include <gtest/gtest.h>

#include <string>

AIUnicodeStringSuite* sAIUnicodeString = nullptr;

namespace {

using namespace host_test;

class Suites : public testing::TestWithParam<ServiceCase> {};

TEST_P(Suites, AnswerAsDeclared) { expect_as_declared(GetParam()); }

// ------------------------------------------------------------------------------------- basic and view suites

// clang-format off
const ServiceCase kBasic[] = {
    {"AcquireSuiteGivesATable", [](PlugIn& p) { return acquire(p, "AI Grid Suite", 1003); }, "0 a table",
     "{\"call\":\"AcquireSuite\",\"name\":\"AI Grid Suite\",\"version\":1003}\n", ""},
    {"AcquireSuiteGivesTheDocumentSuite", [](PlugIn& p) { return acquire(p, "AI Document Suite", 1012); },
     "0 a table", "{\"call\":\"AcquireSuite\",\"name\":\"AI Document Suite\",\"version\":1012}\n", ""},
    {"AcquireSuiteGivesTheBlocksSuite", [](PlugIn& p) { return acquire(p, "SP Blocks Suite", 2); },
     "0 a table", "{\"call\":\"AcquireSuite\",\"name\":\"SP Blocks Suite\",\"version\":2}\n", ""},
    {"AcquireSuiteKnowsNoOtherName", [](PlugIn& p) { return acquire(p, "AI Mood Suite", 1); }, "2 untouched",
     "{\"call\":\"AcquireSuite\",\"name\":\"AI Mood Suite\",\"version\":1,\"error\":2}\n",
     "AcquireSuite asks for a suite, or a version of one, that this host does not have"},
    {"AcquireSuiteKnowsNoOtherVersion", [](PlugIn& p) { return acquire(p, "AI Grid Suite", 1004); },
     "2 untouched", "{\"call\":\"AcquireSuite\",\"name\":\"AI Grid Suite\",\"version\":1004,\"error\":2}\n",
     "AcquireSuite asks for a suite, or a version of one, that this host does not have"},
    {"AcquireSuiteNeedsAName", [](PlugIn& p) { return acquire(p, nullptr, 1003); }, "1 untouched",
     "{\"call\":\"AcquireSuite\",\"name\":null,\"version\":1003,\"error\":1}\n",
     "AcquireSuite has a null argument"},
    {"AcquireSuiteNeedsAPlaceForItsAnswer",
     [](PlugIn& p) { return answer(p.message.basic->AcquireSuite("AI Grid Suite", 1003, nullptr)); }, "1",
     "{\"call\":\"AcquireSuite\",\"name\":\"AI Grid Suite\",\"version\":1003,\"error\":1}\n",
     "AcquireSuite has a null argument"},
    {"IsEqualComparesBytes", [](PlugIn& p) { return answer(+p.message.basic->IsEqual("AI Go", "AI Go")); },
     "1", "{\"call\":\"IsEqual\",\"one\":\"AI Go\",\"other\":\"AI Go\",\"result\":true}\n", ""},
    {"IsEqualMindsCase", [](PlugIn& p) { return answer(+p.message.basic->IsEqual("AI Go", "AI GO")); }, "0",
     "{\"call\":\"IsEqual\",\"one\":\"AI Go\",\"other\":\"AI GO\",\"result\":false}\n", ""},
    {"NullEqualsNothing", [](PlugIn& p) { return answer(+p.message.basic->IsEqual(nullptr, nullptr)); }, "0",
     "{\"call\":\"IsEqual\",\"one\":null,\"other\":null,\"result\":false}\n", ""},
};
// clang-format on

std::string a_point_of_a_foreign_view_is_none(PlugIn& p)
{
    HostView foreign;
    return artwork_point(p, &foreign, {0, 0});
}

std::string a_point_must_not_be_null(PlugIn& p)
{
    AIRealPoint point{-1, -1};
    const HostError error = p.views.ViewPointToArtworkPoint(p.view, nullptr, &point);
    return answer(error, point.h);
}

std::string a_point_needs_a_place_for_its_answer(PlugIn& p)
{
    const AIPoint at{0, 0};
    return answer(p.views.ViewPointToArtworkPoint(p.view, &at, nullptr));
}

// clang-format off
const ServiceCase kViews[] = {
    {"PageTilingIsNotShown", show_page_tiling, "0 0", "{\"call\":\"GetShowPageTiling\"}\n", ""},
    {"PageTilingNeedsAPlaceForItsAnswer",
     [](PlugIn& p) { return answer(p.views.GetShowPageTiling(nullptr)); }, "1",
     "{\"call\":\"GetShowPageTiling\",\"error\":1}\n", "GetShowPageTiling has nowhere to write its answer"},
    {"TheFirstViewIsTheOnlyOne", [](PlugIn& p) { return nth_view(p, 0); }, "0 the view",
     "{\"call\":\"GetNthDocumentView\",\"number\":0}\n", ""},
    {"ThereIsNoSecondView", [](PlugIn& p) { return nth_view(p, 1); }, "4 null",
     "{\"call\":\"GetNthDocumentView\",\"number\":1,\"error\":4}\n",
     "GetNthDocumentView asks for another view than number 0, the only one"},
    {"ThereIsNoViewBeforeTheFirst", [](PlugIn& p) { return nth_view(p, -1); }, "4 null",
     "{\"call\":\"GetNthDocumentView\",\"number\":-1,\"error\":4}\n",
     "GetNthDocumentView asks for another view than number 0, the only one"},
    {"AViewNeedsAPlaceForItsAnswer", [](PlugIn& p) { return answer(p.views.GetNthDocumentView(0, nullptr)); },
     "1", "{\"call\":\"GetNthDocumentView\",\"number\":0,\"error\":1}\n",
     "GetNthDocumentView has nowhere to write its answer"},
    // (0.5 * 100 + 10, -0.5 * 200 + 300); a view point is vertical before horizontal.
    {"APointOfTheViewLiesInTheArtwork", [](PlugIn& p) { return artwork_point(p, p.view, {200, 100}); },
     "0 60 200",
     "{\"call\":\"ViewPointToArtworkPoint\",\"view_point\":[100,200],\"artwork_point\":[60,200]}\n", ""},
    {"APointMayLieLeftOfTheView", [](PlugIn& p) { return artwork_point(p, p.view, {-1, -32768}); },
     "0 -16374 300.5",
     "{\"call\":\"ViewPointToArtworkPoint\",\"view_point\":[-32768,-1],\"artwork_point\":[-16374,300.5]}\n",
     ""},
    {"APointNeedsAView", [](PlugIn& p) { return artwork_point(p, nullptr, {0, 0}); }, "1 -1 -1",
     "{\"call\":\"ViewPointToArtworkPoint\",\"error\":1}\n",
     "ViewPointToArtworkPoint is about a view that there is not"},
    {"APointOfAForeignViewIsNone", a_point_of_a_foreign_view_is_none, "1 -1 -1",
     "{\"call\":\"ViewPointToArtworkPoint\",\"error\":1}\n",
     "ViewPointToArtworkPoint is about a view that there is not"},
    {"APointMustNotBeNull", a_point_must_not_be_null, "1 -1",
     "{\"call\":\"ViewPointToArtworkPoint\",\"error\":1}\n", "ViewPointToArtworkPoint has a null point"},
    {"APointNeedsAPlaceForItsAnswer", a_point_needs_a_place_for_its_answer, "1",
     "{\"call\":\"ViewPointToArtworkPoint\",\"error\":1}\n", "ViewPointToArtworkPoint has a null point"},
};
// clang-format on

// -------------------------------------------------------------------------------------- grid, layer and art

std::string no_grid_is_snapped_to_in_a_foreign_view(PlugIn& p)
{
    HostView foreign;
    return answer(+p.grids.IsSnappedTo(&foreign));
}

std::string the_current_layer_is_the_same_again(PlugIn& p)
{
    AILayerHandle layer = nullptr;
    const HostError error = p.layers.GetCurrentLayer(&layer);
    return answer(error, layer == p.layer);
}

std::string a_layers_group_is_the_same_again(PlugIn& p)
{
    AIArtHandle group = nullptr;
    const HostError error = p.arts.GetFirstArtOfLayer(p.layer, &group);
    return answer(error, group == p.group);
}

std::string a_group_needs_a_layer(PlugIn& p)
{
    AIArtHandle group = nullptr;
    const HostError error = p.arts.GetFirstArtOfLayer(nullptr, &group);
    return answer(error, group == nullptr);
}

// clang-format off
const ServiceCase kGridsAndLayers[] = {
    {"TheGridHasSettings", grid_settings, "0 75.5 5",
     "{\"call\":\"GetSettings\",\"spacing\":75.5,\"subdivisions\":5}\n", ""},
    {"TheGridNeedsAPlaceForItsSettings", [](PlugIn& p) { return answer(p.grids.GetSettings(nullptr)); }, "1",
     "{\"call\":\"GetSettings\",\"error\":1}\n", "GetSettings has nowhere to write its answer"},
    {"TheGridIsShown", [](PlugIn& p) { return answer(+p.grids.IsShown(p.view)); }, "1",
     "{\"call\":\"IsShown\",\"result\":true}\n", ""},
    {"TheGridIsNotSnappedTo", [](PlugIn& p) { return answer(+p.grids.IsSnappedTo(p.view)); }, "0",
     "{\"call\":\"IsSnappedTo\",\"result\":false}\n", ""},
    {"NoGridIsShownInNoView", [](PlugIn& p) { return answer(+p.grids.IsShown(nullptr)); }, "0",
     "{\"call\":\"IsShown\",\"error\":1}\n", "IsShown is about a view that there is not"},
    {"NoGridIsSnappedToInAForeignView", no_grid_is_snapped_to_in_a_foreign_view, "0",
     "{\"call\":\"IsSnappedTo\",\"error\":1}\n", "IsSnappedTo is about a view that there is not"},
    {"TheCurrentLayerIsTheSameAgain", the_current_layer_is_the_same_again, "0 1",
     "{\"call\":\"GetCurrentLayer\"}\n", ""},
    {"TheCurrentLayerNeedsAPlaceForItsAnswer",
     [](PlugIn& p) { return answer(p.layers.GetCurrentLayer(nullptr)); }, "1",
     "{\"call\":\"GetCurrentLayer\",\"error\":1}\n", "GetCurrentLayer has nowhere to write its answer"},
    {"ALayersGroupIsTheSameAgain", a_layers_group_is_the_same_again, "0 1",
     "{\"call\":\"GetFirstArtOfLayer\"}\n", ""},
    {"AGroupNeedsALayer", a_group_needs_a_layer, "1 1", "{\"call\":\"GetFirstArtOfLayer\",\"error\":1}\n",
     "GetFirstArtOfLayer is about a layer that there is not"},
    {"AGroupNeedsAPlaceForItsAnswer",
     [](PlugIn& p) { return answer(p.arts.GetFirstArtOfLayer(p.layer, nullptr)); }, "1",
     "{\"call\":\"GetFirstArtOfLayer\",\"error\":1}\n", "GetFirstArtOfLayer has nowhere to write its answer"},
};
// clang-format on

std::string new_art_is_not_in_a_path(PlugIn& p)
{
    const AIArtHandle path = p.new_path();
    return new_art(p, kPathArt, kPlaceInsideOnTop, path);
}

// clang-format off
const ServiceCase kArts[] = {
    {"NewArtIsAPath", [](PlugIn& p) { return new_art(p, kPathArt, kPlaceInsideOnTop, p.group); }, "0 a path",
     "{\"call\":\"NewArt\",\"path\":0}\n", ""},
    {"NewArtIsOfNoOtherKind", [](PlugIn& p) { return new_art(p, 1, kPlaceInsideOnTop, p.group); }, "1 null",
     "{\"call\":\"NewArt\",\"kind\":1,\"place\":3,\"error\":1}\n",
     "NewArt asks for another kind of art than a path"},
    {"NewArtIsInNoOtherPlace", [](PlugIn& p) { return new_art(p, kPathArt, 1, p.group); }, "1 null",
     "{\"call\":\"NewArt\",\"kind\":2,\"place\":1,\"error\":1}\n",
     "NewArt asks for another place than on top of a group"},
    {"NewArtIsInNoOtherGroup", [](PlugIn& p) { return new_art(p, kPathArt, kPlaceInsideOnTop, nullptr); },
     "1 null", "{\"call\":\"NewArt\",\"error\":1}\n", "NewArt puts art into what is not the layer's group"},
    {"NewArtIsNotInAPath", new_art_is_not_in_a_path, "1 null",
     "{\"call\":\"NewArt\",\"path\":0}\n{\"call\":\"NewArt\",\"error\":1}\n",
     "NewArt puts art into what is not the layer's group"},
    {"NewArtNeedsAPlaceForItsAnswer",
     [](PlugIn& p) { return answer(p.arts.NewArt(kPathArt, kPlaceInsideOnTop, p.group, nullptr)); }, "1",
     "{\"call\":\"NewArt\",\"error\":1}\n", "NewArt has nowhere to write its answer"},
};
// clang-format on

// ---------------------------------------------------------------------------------------------- segments

const std::string kFirst = "\"p\":[1.5,2],\"in\":[3,4],\"out\":[5,-6],\"corner\":true";
const std::string kSecond = "\"p\":[10,0.100000001],\"in\":[10,10],\"out\":[20,20],\"corner\":false";
const std::string kNewPath = "{\"call\":\"NewArt\",\"path\":0}\n";
const std::string kSet = "{\"call\":\"SetPathSegments\",\"path\":0,\"index\":";
const std::string kOffThePath =
    "SetPathSegments has a segment number that is not on the path, nor one past its end";

std::string a_foreign_path_has_no_segments(PlugIn& p)
{
    p.new_path();
    HostArt foreign{};
    return set_segments(p, &foreign, 0, 1);
}

std::string an_earlier_path_stays_a_path(PlugIn& p)
{
    const AIArtHandle path = p.new_path();
    p.new_path();
    return set_segments(p, path, 0, 1);
}

// clang-format off
const ServiceCase kPaths[] = {
    {"ASegmentMakesAPathLonger", [](PlugIn& p) { return set_segments(p, p.new_path(), 0, 1); }, "0",
     kNewPath + kSet + "0," + kFirst + "}\n", ""},
    {"SegmentsComeInLists", [](PlugIn& p) { return set_segments(p, p.new_path(), 0, 2); }, "0",
     kNewPath + kSet + "0,\"count\":2,\"segments\":[{" + kFirst + "},{" + kSecond + "}]}\n", ""},
    {"ASegmentPastTheEndIsRefused", [](PlugIn& p) { return set_segments(p, p.new_path(), 1, 1); }, "4",
     kNewPath + kSet + "1," + kFirst + ",\"error\":4}\n", kOffThePath},
    {"ASegmentBelowZeroIsRefused", [](PlugIn& p) { return set_segments(p, p.new_path(), -1, 1); }, "4",
     kNewPath + kSet + "-1," + kFirst + ",\"error\":4}\n", kOffThePath},
    {"TheLeastSegmentNumberIsRefused", [](PlugIn& p) { return set_segments(p, p.new_path(), -32768, 1); },
     "4", kNewPath + kSet + "-32768," + kFirst + ",\"error\":4}\n", kOffThePath},
    {"NoSegmentsAreRefused", [](PlugIn& p) { return set_segments(p, p.new_path(), 0, 0); }, "1",
     kNewPath + kSet + "0,\"count\":0,\"segments\":[],\"error\":1}\n", "SetPathSegments has no segments"},
    {"LessThanNoSegmentsAreRefused", [](PlugIn& p) { return set_segments(p, p.new_path(), 0, -2); }, "1",
     kNewPath + kSet + "0,\"count\":-2,\"segments\":[],\"error\":1}\n", "SetPathSegments has no segments"},
    {"NullSegmentsAreRefused", [](PlugIn& p) { return set_segments(p, p.new_path(), 0, 1, nullptr); }, "1",
     kNewPath + kSet + "0,\"error\":1}\n", "SetPathSegments has no segments"},
    {"NoPathHasNoSegments", [](PlugIn& p) { return set_segments(p, nullptr, 0, 1); }, "1",
     "{\"call\":\"SetPathSegments\",\"path\":null,\"index\":0," + kFirst + ",\"error\":1}\n",
     "SetPathSegments is about art that is no path"},
    {"AGroupHasNoSegments", [](PlugIn& p) { return set_segments(p, p.group, 0, 1); }, "1",
     "{\"call\":\"SetPathSegments\",\"path\":null,\"index\":0," + kFirst + ",\"error\":1}\n",
     "SetPathSegments is about art that is no path"},
    {"AForeignPathHasNoSegments", a_foreign_path_has_no_segments, "1",
     kNewPath + "{\"call\":\"SetPathSegments\",\"path\":null,\"index\":0," + kFirst + ",\"error\":1}\n",
     "SetPathSegments is about art that is no path"},
    {"AnEarlierPathStaysAPath", an_earlier_path_stays_a_path, "0",
     kNewPath + "{\"call\":\"NewArt\",\"path\":1}\n" + kSet + "0," + kFirst + "}\n", ""},
};
// clang-format on

// --------------------------------------------------------------------------------------- menu and texts

// Adds an item with a text of its own.
std::string add_item(PlugIn& p, HostPluginReference plug_in, const char* key, const char* group)
{
    sAIUnicodeString = const_cast<AIUnicodeStringSuite*>(&p.texts);
    const AIPlatformAddMenuItemDataUS data{group, ai::UnicodeString("Start VANT", 10)};
    AIMenuItemHandle item = nullptr;
    const HostError error = p.menus.AddMenuItem(plug_in, key, &data, 1, &item);
    return answer(error, item == nullptr ? "null" : "an item");
}

std::string with_text(const std::string& line)
{
    return "{\"call\":\"MakeFromBytes\",\"text\":\"Start VANT\",\"encoding\":0}\n" + line +
           "{\"call\":\"Release\",\"text\":\"Start VANT\"}\n";
}

const std::string kItem = "{\"call\":\"AddMenuItem\",\"key\":\"VANT\",\"group\":\"View Utilities\","
                          "\"text\":\"Start VANT\",\"options\":1";

std::string a_menu_item_needs_its_data(PlugIn& p)
{
    AIMenuItemHandle item = nullptr;
    return answer(p.menus.AddMenuItem(p.message.plugin, "VANT", nullptr, 1, &item), item == nullptr);
}

std::string a_menu_item_needs_a_place_for_its_handle(PlugIn& p)
{
    sAIUnicodeString = const_cast<AIUnicodeStringSuite*>(&p.texts);
    const AIPlatformAddMenuItemDataUS data{"View Utilities", ai::UnicodeString("Start VANT", 10)};
    return answer(p.menus.AddMenuItem(p.message.plugin, "VANT", &data, 1, nullptr));
}

std::string a_menu_item_needs_a_text_that_there_is(PlugIn& p)
{
    sAIUnicodeString = const_cast<AIUnicodeStringSuite*>(&p.texts);
    AIMenuItemHandle item = nullptr;
    auto* const data = new AIPlatformAddMenuItemDataUS{"View Utilities", ai::UnicodeString("Start VANT", 10)};
    p.texts.Release(data->text.get());
    const HostError error = p.menus.AddMenuItem(p.message.plugin, "VANT", data, 1, &item);
    operator delete(data); // its end would give the text back again
    return answer(error, item == nullptr);
}

// clang-format off
const ServiceCase kMenus[] = {
    {"AMenuItemIsAdded", [](PlugIn& p) { return add_item(p, p.message.plugin, "VANT", "View Utilities"); },
     "0 an item", with_text(kItem + "}\n"), "", kInterfaceCaller, kStartupSelector},
    {"AMenuItemIsNotAddedByTheCommand",
     [](PlugIn& p) { return add_item(p, p.message.plugin, "VANT", "View Utilities"); }, "6 null",
     with_text(kItem + ",\"error\":6}\n"), "AddMenuItem came in another message than SP Interface / Startup"},
    {"AMenuItemIsNotAddedAtTheEnd",
     [](PlugIn& p) { return add_item(p, p.message.plugin, "VANT", "View Utilities"); }, "6 null",
     with_text(kItem + ",\"error\":6}\n"), "AddMenuItem came in another message than SP Interface / Startup",
     kInterfaceCaller, kShutdownSelector},
    {"AMenuItemIsNotAddedForNobody", [](PlugIn& p) { return add_item(p, nullptr, "VANT", "View Utilities"); },
     "1 null", with_text("{\"call\":\"AddMenuItem\",\"key\":\"VANT\",\"error\":1}\n"),
     "AddMenuItem is for another plug-in than the message's", kInterfaceCaller, kStartupSelector},
    {"AMenuItemNeedsAKey", [](PlugIn& p) { return add_item(p, p.message.plugin, nullptr, "View Utilities"); },
     "1 null", with_text("{\"call\":\"AddMenuItem\",\"key\":null,\"error\":1}\n"),
     "AddMenuItem has a null argument", kInterfaceCaller, kStartupSelector},
    {"AMenuItemNeedsAGroup", [](PlugIn& p) { return add_item(p, p.message.plugin, "VANT", nullptr); },
     "1 null", with_text("{\"call\":\"AddMenuItem\",\"key\":\"VANT\",\"error\":1}\n"),
     "AddMenuItem has a null argument", kInterfaceCaller, kStartupSelector},
    {"AMenuItemNeedsItsData", a_menu_item_needs_its_data, "1 1",
     "{\"call\":\"AddMenuItem\",\"key\":\"VANT\",\"error\":1}\n", "AddMenuItem has a null argument",
     kInterfaceCaller, kStartupSelector},
    {"AMenuItemNeedsAPlaceForItsHandle", a_menu_item_needs_a_place_for_its_handle, "1",
     with_text("{\"call\":\"AddMenuItem\",\"key\":\"VANT\",\"error\":1}\n"),
     "AddMenuItem has a null argument", kInterfaceCaller, kStartupSelector},
    {"AMenuItemNeedsATextThatThereIs", a_menu_item_needs_a_text_that_there_is, "1 1",
     with_text("") + "{\"call\":\"AddMenuItem\",\"key\":\"VANT\",\"error\":1}\n",
     "AddMenuItem has a text that there is not", kInterfaceCaller, kStartupSelector},
};
// clang-format on

std::string a_text_is_given_back_once(PlugIn& p)
{
    const HostText text = p.new_text("Start");
    p.texts.Release(text);
    return answer(p.texts.Release(text));
}

std::string a_foreign_text_is_not_given_back(PlugIn& p)
{
    HostTextBody foreign{"Start"};
    return answer(p.texts.Release(&foreign));
}

// clang-format off
const ServiceCase kTexts[] = {
    {"ATextHasItsBytes", [](PlugIn& p) { return make_text(p, "Start", 4, 0); }, "0 'Star'",
     "{\"call\":\"MakeFromBytes\",\"text\":\"Star\",\"encoding\":0}\n", ""},
    {"ATextMayBeEmpty", [](PlugIn& p) { return make_text(p, nullptr, 0, 0); }, "0 ''",
     "{\"call\":\"MakeFromBytes\",\"text\":\"\",\"encoding\":0}\n", ""},
    {"ATextIsUtf8", [](PlugIn& p) { return make_text(p, "\xC3\xA9t\xC3\xA9", 5, 0); },
     "0 '\xC3\xA9t\xC3\xA9'", "{\"call\":\"MakeFromBytes\",\"text\":\"\xC3\xA9t\xC3\xA9\",\"encoding\":0}\n",
     ""},
    {"ATextOfOtherBytesIsRefused", [](PlugIn& p) { return make_text(p, "\xE9t", 2, 0); }, "1 null",
     "{\"call\":\"MakeFromBytes\",\"text\":\"\xEF\xBF\xBDt\",\"encoding\":0,\"error\":1}\n",
     "MakeFromBytes has bytes that are no UTF-8, the platform's encoding here"},
    {"ATextCutOffIsRefused", [](PlugIn& p) { return make_text(p, "\xC3\xA9", 1, 0); }, "1 null",
     "{\"call\":\"MakeFromBytes\",\"text\":\"\xEF\xBF\xBD\",\"encoding\":0,\"error\":1}\n",
     "MakeFromBytes has bytes that are no UTF-8, the platform's encoding here"},
    {"ATextInAnotherEncodingIsRefused", [](PlugIn& p) { return make_text(p, "Start", 5, 3); }, "1 null",
     "{\"call\":\"MakeFromBytes\",\"text\":\"Start\",\"encoding\":3,\"error\":1}\n",
     "MakeFromBytes has an encoding that this host does not know"},
    {"ATextNeedsItsBytes", [](PlugIn& p) { return make_text(p, nullptr, 5, 0); }, "1 null",
     "{\"call\":\"MakeFromBytes\",\"error\":1}\n",
     "MakeFromBytes has no bytes, or nowhere to write its answer"},
    {"ATextHasNoNegativeSize", [](PlugIn& p) { return make_text(p, "Start", -1, 0); }, "1 null",
     "{\"call\":\"MakeFromBytes\",\"error\":1}\n",
     "MakeFromBytes has no bytes, or nowhere to write its answer"},
    {"ATextNeedsAPlaceForItsHandle",
     [](PlugIn& p) { return answer(p.texts.MakeFromBytes("Start", 5, 0, nullptr)); }, "1",
     "{\"call\":\"MakeFromBytes\",\"error\":1}\n",
     "MakeFromBytes has no bytes, or nowhere to write its answer"},
    {"ATextIsGivenBack", [](PlugIn& p) { return answer(p.texts.Release(p.new_text("Start"))); }, "0",
     "{\"call\":\"MakeFromBytes\",\"text\":\"Start\",\"encoding\":0}\n{\"call\":\"Release\","
     "\"text\":\"Start\"}\n", ""},
    {"ATextIsGivenBackOnce", a_text_is_given_back_once, "1",
     "{\"call\":\"MakeFromBytes\",\"text\":\"Start\",\"encoding\":0}\n{\"call\":\"Release\","
     "\"text\":\"Start\"}\n"
     "{\"call\":\"Release\",\"error\":1}\n", "Release gives back a text that there is not"},
    {"NoTextIsNotGivenBack", [](PlugIn& p) { return answer(p.texts.Release(nullptr)); }, "1",
     "{\"call\":\"Release\",\"error\":1}\n", "Release gives back a text that there is not"},
    {"AForeignTextIsNotGivenBack", a_foreign_text_is_not_given_back, "1",
     "{\"call\":\"Release\",\"error\":1}\n", "Release gives back a text that there is not"},
};
// clang-format on

const auto kName = [](const auto& row) { return row.param.name; };
INSTANTIATE_TEST_SUITE_P(Basic, Suites, testing::ValuesIn(kBasic), kName);
INSTANTIATE_TEST_SUITE_P(Views, Suites, testing::ValuesIn(kViews), kName);
INSTANTIATE_TEST_SUITE_P(GridsAndLayers, Suites, testing::ValuesIn(kGridsAndLayers), kName);
INSTANTIATE_TEST_SUITE_P(Arts, Suites, testing::ValuesIn(kArts), kName);
INSTANTIATE_TEST_SUITE_P(Paths, Suites, testing::ValuesIn(kPaths), kName);
INSTANTIATE_TEST_SUITE_P(Menus, Suites, testing::ValuesIn(kMenus), kName);
INSTANTIATE_TEST_SUITE_P(Texts, Suites, testing::ValuesIn(kTexts), kName);

} // namespace
