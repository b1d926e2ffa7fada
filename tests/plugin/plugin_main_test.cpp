#include "Source/plugin/vantPlugin.h"
#include "tests/plugin/recording_host.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using plugin_tests::Fault;
using plugin_tests::RecordingHost;
using Lines = std::vector<std::string>;

const Lines kNothing;
const Lines kSuites = {
    "AcquireSuite AI Document View Suite 1010", "AcquireSuite AI Grid Suite 1003",
    "AcquireSuite AI Art Suite 1015",           "AcquireSuite AI Path Suite 1009",
    "AcquireSuite AI Layer Suite 1011",         "AcquireSuite AI Document Suite 1012",
};
const Lines kMenuSuites = {
    "AcquireSuite AI Menu Suite 1009",
    "AcquireSuite AI Unicode String Suite 1006",
    "AcquireSuite SP Blocks Suite 2",
};
const Lines kMenuItem = {
    "MakeText 'Start VANT' 0",
    "AddMenuItem plugin VANT 'View Utilities' 'Start VANT' 1",
    "ReleaseText 'Start VANT'",
};
// The command where no window is open.
const Lines kCommand = {
    "GetShowPageTiling",
    "ActiveNonFloatingWindow",
    "CreateStandardAlert 0 'VANT information' 'Unable to find document'",
    "RunStandardAlert",
};

Lines operator+(Lines first, const Lines& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// A plug-in that has just been loaded.
class Messages : public testing::Test {
protected:
    Messages()
    {
        *vantPlugin::get() = vantPlugin();
        sAIUnicodeString = nullptr;
        sSPBlocks = nullptr;
    }

    RecordingHost host;
    HostMessage message = host.message();

    HostError send(const char* caller, const char* selector)
    {
        return ::PluginMain(caller, selector, &message);
    }
};

// ------------------------------------------------------------------------------------------ the dispatch

struct DispatchCase {
    const char* name;
    const char* caller;
    const char* selector;
    std::vector<const char*> caller_compared;
    std::vector<const char*> selector_compared;
    Lines calls;
};

// clang-format off
const DispatchCase kMessages[] = {
    {"AccessUnloadDoesNothing", "SP Access", "Unload",
     {"SP Access"}, {"Unload"}, kNothing},
    {"AccessReloadDoesNothing", "SP Access", "Reload",
     {"SP Access"}, {"Unload", "Reload"}, kNothing},
    {"AnotherAccessDoesNothing", "SP Access", "Startup",
     {"SP Access"}, {"Unload", "Reload"}, kNothing},
    {"StartupAddsTheMenuItem", "SP Interface", "Startup",
     {"SP Access", "SP Interface"}, {"Startup"}, kSuites + kMenuSuites + kMenuItem},
    {"AboutAcquiresSuitesAlone", "SP Interface", "About",
     {"SP Access", "SP Interface"}, {"Startup", "About"}, kSuites},
    {"ShutdownAcquiresSuitesAlone", "SP Interface", "Shutdown",
     {"SP Access", "SP Interface"}, {"Startup", "About", "Shutdown"}, kSuites},
    {"AnUnknownInterfaceSelectorAcquiresSuitesAlone", "SP Interface", "Unload",
     {"SP Access", "SP Interface"}, {"Startup", "About", "Shutdown"}, kSuites},
    {"ChoosingAnyMenuItemRunsTheCommand", "AI Menu", "AI Go",
     {"SP Access", "SP Interface", "AI Menu"}, {"AI Go"}, kSuites + kCommand},
    {"AMenuUpdateAcquiresSuitesAlone", "AI Menu", "AI Update",
     {"SP Access", "SP Interface", "AI Menu"}, {"AI Go"}, kSuites},
    {"GoOfAnotherCallerAcquiresSuitesAlone", "AI Tool", "AI Go",
     {"SP Access", "SP Interface", "AI Menu"}, {}, kSuites},
    {"NamesAreComparedWhole", "SP Accessory", "Unload",
     {"SP Access", "SP Interface", "AI Menu"}, {}, kSuites},
    {"EmptyNamesAcquireSuitesAlone", "", "",
     {"SP Access", "SP Interface", "AI Menu"}, {}, kSuites},
};
// clang-format on

class Dispatch : public Messages, public testing::WithParamInterface<DispatchCase> {};

TEST_P(Dispatch, AnswersZero)
{
    EXPECT_EQ(send(GetParam().caller, GetParam().selector), 0);
    Lines comparisons;
    for (const char* name : GetParam().caller_compared)
        comparisons.push_back(GetParam().caller + std::string(" = ") + name);
    for (const char* name : GetParam().selector_compared)
        comparisons.push_back(GetParam().selector + std::string(" = ") + name);
    EXPECT_EQ(host.comparisons, comparisons);
    EXPECT_EQ(host.calls, GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(, Dispatch, testing::ValuesIn(kMessages),
                         [](const auto& row) { return row.param.name; });

class PluginMain : public Messages {};

TEST_F(PluginMain, AnswersAMenuMessageWithTheCommandsCode)
{
    host.page_tiling_code = 4711;
    EXPECT_EQ(send("AI Menu", "AI Go"), 4711);
}

// ---------------------------------------------------------------------------------------------- the suites

TEST_F(PluginMain, KeepsAcquiringTheSuitesWithEveryMessage)
{
    EXPECT_EQ(send("SP Interface", "About"), 0);
    EXPECT_EQ(send("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(send("SP Access", "Unload"), 0);
    EXPECT_EQ(host.calls, kSuites + kSuites);
}

TEST_F(PluginMain, KnowsTheSuitesAfterAMessage)
{
    send("SP Interface", "About");
    const vantPlugin& plugin = *vantPlugin::get();
    EXPECT_EQ(plugin.document_view_suite, &plugin_tests::document_view_table());
    for (const void* suite :
         {static_cast<const void*>(plugin.grid_suite), static_cast<const void*>(plugin.art_suite),
          static_cast<const void*>(plugin.path_suite), static_cast<const void*>(plugin.layer_suite),
          static_cast<const void*>(plugin.document_suite)})
        EXPECT_NE(suite, nullptr);
}

TEST_F(PluginMain, AnswersZeroWhenNoSuiteCanBeAcquired)
{
    for (const std::string& line : kSuites)
        host.faults[line.substr(0, line.rfind(' '))] = Fault{kHostNoSuite};
    EXPECT_EQ(send("SP Interface", "About"), 0);
    EXPECT_EQ(host.calls, kSuites);
}

TEST_F(PluginMain, LeavesTheFieldOfALostSuiteAsItWas)
{
    send("SP Interface", "About");
    host.missing_suites = {"AI Document View Suite"};
    send("SP Interface", "About");
    EXPECT_EQ(vantPlugin::get()->document_view_suite, &plugin_tests::document_view_table());
}

TEST_F(PluginMain, ForgetsASuiteThatTheHostSetsToNull)
{
    send("SP Interface", "About");
    host.null_suites = {"AI Document View Suite"};
    send("SP Interface", "About");
    EXPECT_EQ(vantPlugin::get()->document_view_suite, nullptr);
}

// -------------------------------------------------------------------------------------------- the instance

TEST(VantPlugin, IsTheSameInstanceEveryTime)
{
    vantPlugin* const first = vantPlugin::get();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(vantPlugin::get(), first);
    EXPECT_EQ(vantPlugin::inst, first);
}

TEST(VantPlugin, LeavesMenuItemAndDocumentSuiteAtInitialize)
{
    AIDocumentViewSuite document_view{};
    AILayerSuite layer{};
    AIGridSuite grid{};
    AIArtSuite art{};
    AIPathSuite path{};
    AIDocumentSuite document{};
    vantPlugin plugin;
    plugin.menu_item = plugin_tests::menu_item_handle();
    plugin.document_view_suite = &document_view;
    plugin.layer_suite = &layer;
    plugin.grid_suite = &grid;
    plugin.art_suite = &art;
    plugin.path_suite = &path;
    plugin.document_suite = &document;

    plugin.Initialize();

    EXPECT_EQ(plugin.menu_item, plugin_tests::menu_item_handle());
    EXPECT_EQ(plugin.document_suite, &document);
    EXPECT_EQ(plugin.document_view_suite, nullptr);
    EXPECT_EQ(plugin.layer_suite, nullptr);
    EXPECT_EQ(plugin.grid_suite, nullptr);
    EXPECT_EQ(plugin.art_suite, nullptr);
    EXPECT_EQ(plugin.path_suite, nullptr);
}

// -------------------------------------------------------------------------------------------- the menu item

class Menus : public Messages {};

TEST_F(Menus, HoldTheItemThatTheHostMade)
{
    EXPECT_EQ(vantPlugin::get()->AddMenus(&message), 0);
    EXPECT_EQ(vantPlugin::get()->menu_item, plugin_tests::menu_item_handle());
    EXPECT_EQ(host.menu_items, Lines{"Start VANT"});
    EXPECT_EQ(host.texts_alive, 0);
}

TEST_F(Menus, LeaveTheStringSuitesSetBehindThem)
{
    vantPlugin::get()->AddMenus(&message);
    EXPECT_NE(sAIUnicodeString, nullptr);
    EXPECT_NE(sSPBlocks, nullptr);
}

struct MenuFault {
    const char* name;
    std::map<std::string, Fault> faults;
    std::set<std::string> null_suites;
    HostError code;
    Lines calls; // after the suites
};

const char* const kAcquireMenu = "AcquireSuite AI Menu Suite";
const char* const kAcquireText = "AcquireSuite AI Unicode String Suite";
const char* const kAcquireBlocks = "AcquireSuite SP Blocks Suite";

// clang-format off
const MenuFault kMenuFaults[] = {
    {"AMissingBlocksSuiteEndsIt", {{kAcquireBlocks, {31}}}, {}, 31, kNothing},
    {"AMissingMenuSuiteIsNotCalled", {{kAcquireMenu, {32}}}, {}, 32, kNothing},
    {"AMissingStringSuiteIsNotCalled", {{kAcquireText, {33}}}, {}, 33, kNothing},
    {"TheBlocksSuitesCodeGoesFirst",
     {{kAcquireMenu, {32}}, {kAcquireText, {33}}, {kAcquireBlocks, {31}}}, {}, 31, kNothing},
    {"TheMenuSuitesCodeGoesBeforeTheStringSuites",
     {{kAcquireMenu, {32}}, {kAcquireText, {33}}}, {}, 32, kNothing},
    {"ANullMenuSuiteIsNotCalled", {}, {"AI Menu Suite"}, 0, kNothing},
    {"ANullStringSuiteIsNotCalled", {}, {"AI Unicode String Suite"}, 0, kNothing},
    {"ANullBlocksSuiteIsNotNeeded", {}, {"SP Blocks Suite"}, 0, kMenuItem},
    {"AFailedTextIsItsCode", {{"MakeText", {34}}}, {}, 34, {"MakeText 'Start VANT' 0"}},
    {"ARefusedItemIsItsCode", {{"AddMenuItem", {35}}}, {}, 35, kMenuItem},
};
// clang-format on

class MenuFaults : public Messages, public testing::WithParamInterface<MenuFault> {
protected:
    MenuFaults()
    {
        host.faults = GetParam().faults;
        host.null_suites = GetParam().null_suites;
    }
};

TEST_P(MenuFaults, ComeBackFromAddMenus)
{
    EXPECT_EQ(vantPlugin::get()->AddMenus(&message), GetParam().code);
    EXPECT_EQ(host.calls, kMenuSuites + GetParam().calls);
    EXPECT_EQ(host.texts_alive, 0);
}

TEST_P(MenuFaults, DoNotComeBackFromStartup)
{
    EXPECT_EQ(send("SP Interface", "Startup"), 0);
    EXPECT_EQ(host.calls, kSuites + kMenuSuites + GetParam().calls);
}

INSTANTIATE_TEST_SUITE_P(, MenuFaults, testing::ValuesIn(kMenuFaults),
                         [](const auto& row) { return row.param.name; });

} // namespace
