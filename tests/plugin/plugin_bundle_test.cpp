// The bundle as a host sees it: loaded into a program that provides the services.
#include "tests/plugin/fixed_port_peer.h"
#include "tests/plugin/recording_host.h"
#include "tests/support/descriptors.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using plugin_tests::answering;
using plugin_tests::FixedPortPeer;
using plugin_tests::RecordingHost;
using Lines = std::vector<std::string>;

class Bundle : public testing::Test {
protected:
    Bundle()
    {
        // Never unloaded: the plug-in's one instance is never destroyed, and could not be reached any more.
        void* const bundle = dlopen(VNT_PLUGIN_BUNDLE, RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
        if (bundle == nullptr)
            throw std::runtime_error(dlerror());
        entry_ = reinterpret_cast<PluginEntry*>(dlsym(bundle, kPluginEntryName));
    }

    HostError send(const char* caller, const char* selector)
    {
        HostMessage message = host.message();
        return entry_(caller, selector, &message);
    }

    support::ParkedInput parked;
    RecordingHost host;

private:
    PluginEntry* entry_ = nullptr;
};

TEST_F(Bundle, AddsItsMenuItem)
{
    EXPECT_EQ(send(kInterfaceCaller, kStartupSelector), 0);
    EXPECT_EQ(host.menu_items, Lines{"Start VANT"});
    EXPECT_EQ(host.texts_alive, 0);
}

TEST_F(Bundle, DrawsWhatTheSketchApplicationAnswers)
{
    host.open_artwork({22, 0, 622, 800});
    FixedPortPeer peer(
        answering(R"(<vant><shape><line><start x="0" y="0"/><end x="100" y="50"/></line></shape></vant>)"));
    EXPECT_EQ(send(kMenuCaller, kGoSelector), 0);
    parked.park();
    ASSERT_EQ(host.paths.size(), 1U);
    ASSERT_EQ(host.paths[0].segments.size(), 2U);
    EXPECT_EQ(plugin_tests::text_of(host.paths[0].segments[1]), "p=100,50 in=100,50 out=100,50 corner");
}

TEST_F(Bundle, TurnsItsOwnExceptionsIntoAnAlert)
{
    host.null_suites = {"AI Grid Suite"};
    host.open_artwork({22, 0, 622, 800});
    EXPECT_EQ(send(kMenuCaller, kGoSelector), 0);
    parked.park();
    ASSERT_EQ(host.alerts.size(), 1U);
    EXPECT_EQ(host.alerts[0].text, "VANT information");
    EXPECT_EQ(host.alerts[0].explanation, "Unable to start VANT");
}

TEST_F(Bundle, AnswersUnloadLast)
{
    EXPECT_EQ(send(kInterfaceCaller, kShutdownSelector), 0);
    EXPECT_EQ(send(kAccessCaller, kUnloadSelector), 0);
}

} // namespace
