#include "host/kit/plugin_bundle.h"
#include "host/kit/session.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

namespace {

using vnt::host::PluginBundle;
using vnt::host::Problem;
using vnt::host::Session;
using vnt::host::SessionSetup;

struct UnloadableCase {
    const char* name;
    const char* file;
    std::string start; // of the problem, up to what the system says
    std::string end;
};

const std::string kNameOne = "; name a plug-in for this machine with --plugin";

const UnloadableCase kUnloadable[] = {
    {"AFileThatThereIsNot",     "/missing/vant.so",   "cannot load the plug-in /missing/vant.so: ",       kNameOne},
    {"AFileThatIsNoLibrary",    __FILE__,             "cannot load the plug-in " __FILE__ ": ",           kNameOne},
    {"AFolder",                 "/tmp",               "cannot load the plug-in /tmp: ",                   kNameOne},
    {"ALibraryOfTheSystem",     "libm.so.6",          "cannot load the plug-in libm.so.6: ",              kNameOne},
    {"ALibraryWithoutTheEntry", VNT_ENTRYLESS_PLUGIN,
     "cannot use the plug-in " VNT_ENTRYLESS_PLUGIN ": it has no PluginMain",
     "; name a plug-in with --plugin"                                                                             },
    {"AnUnknownService",        VNT_WISHFUL_PLUGIN,   "cannot load the plug-in " VNT_WISHFUL_PLUGIN ": ",
     "PlayFanfare" + kNameOne                                                                                     },
};

class UnloadableBundles : public testing::TestWithParam<UnloadableCase> {};

TEST_P(UnloadableBundles, AreTold)
{
    const auto loaded = PluginBundle::load(GetParam().file);
    const auto* const problem = std::get_if<Problem>(&loaded);
    ASSERT_NE(problem, nullptr);
    EXPECT_TRUE(problem->sentence.starts_with(GetParam().start)) << problem->sentence;
    EXPECT_TRUE(problem->sentence.ends_with(GetParam().end)) << problem->sentence;
}

INSTANTIATE_TEST_SUITE_P(, UnloadableBundles, testing::ValuesIn(kUnloadable),
                         [](const auto& row) { return row.param.name; });

TEST(PluginBundles, AreLoadedWithTheirServices)
{
    const auto loaded = PluginBundle::load(VNT_PLUGIN_BUNDLE);
    ASSERT_TRUE(std::holds_alternative<PluginBundle>(loaded)) << std::get<Problem>(loaded).sentence;
    Session session(SessionSetup{});
    PluginEntry& entry = std::get<PluginBundle>(loaded).entry();
    EXPECT_EQ(std::get<HostError>(session.send(entry, kInterfaceCaller, kStartupSelector)), 0);
    EXPECT_TRUE(session.has_menu_item("Start VANT"));
    EXPECT_EQ(std::get<HostError>(session.send(entry, kAccessCaller, kUnloadSelector)), 0);
}

TEST(PluginBundles, AreTheSameWhenLoadedAgain)
{
    const auto first = PluginBundle::load(VNT_PLUGIN_BUNDLE);
    const auto second = PluginBundle::load(VNT_PLUGIN_BUNDLE);
    EXPECT_EQ(&std::get<PluginBundle>(first).entry(), &std::get<PluginBundle>(second).entry());
}

} // namespace
