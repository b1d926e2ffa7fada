// What the process says that waits for a sketch, when the editor is not there any more: as notifications of the desktop.
#include "tests/editor/own_bus.h"
#include "tests/host_app/host_program.h"
#include "tests/peer/peer_program.h"
#include "tests/support/program_start.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

namespace {

using namespace host_app_test;

class Agent : public testing::Test {
protected:
    void SetUp() override
    {
        if (!support::is_installed("dbus-daemon"))
            GTEST_SKIP() << "dbus-daemon is missing (Debian: dbus)";
        bus_ = std::make_unique<editor_test::OwnBus>();
        const std::string address = "DBUS_SESSION_BUS_ADDRESS=" + bus_->address();
        desktop_ = std::make_unique<editor_test::RunningProgram>(
            std::vector<std::string>{VNT_FAKE_EDITOR, "--notifications", "body"},
            std::vector<std::string>{address});
        ASSERT_EQ(desktop_->line(), "ready");
        for (const char* const folder : {"STATE_HOME", "DATA_HOME", "CONFIG_HOME", "RUNTIME_DIR"})
            surroundings_.environment.push_back(std::string("XDG_") + folder + "=" + place_.path(folder));
        for (const std::string& set :
             {address, std::string("DOCUMENT_PATH="), std::string("PATH=/nowhere"), std::string("DISPLAY=")})
            surroundings_.environment.push_back(set);
    }

    // As an editor that is on no bus: the test reads what the extension prints, and nothing may be.
    void choose_start() const
    {
        EXPECT_EQ(run_host({"extension", place_.path("small.svg")}, surroundings_), (ProgramEnd{0, "", ""}));
    }

    // It takes its folder away last.
    void wait_for_its_end() const
    {
        const auto limit = std::chrono::steady_clock::now() + kLimit;
        while (names_in("RUNTIME_DIR/vant") != std::vector<std::string>{"sketch.lock"}) {
            ASSERT_LT(std::chrono::steady_clock::now(), limit);
            std::this_thread::yield();
        }
    }

    std::vector<std::string> names_in(const std::string& folder) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(place_.path(folder)))
            names.push_back(entry.path().filename().string());
        return names;
    }

    Workplace place_;
    Surroundings surroundings_;
    std::unique_ptr<editor_test::OwnBus> bus_;
    std::unique_ptr<editor_test::RunningProgram> desktop_;
};

TEST_F(Agent, NotifiesOfASketchWhoseEditorHasGone)
{
    peer_test::Program peer({"--answer", place_.path("line.xml"), "--timeout", "80"});
    peer.port();
    choose_start();
    EXPECT_EQ(
        desktop_->line(),
        "notified VANT|The sketch is kept|The editor of the sketch could not be reached. Extensions > View "
        "Utilities > Place VANT sketch puts it into a document.");
    wait_for_its_end();
    EXPECT_EQ(names_in("DATA_HOME/vant/sketches").size(), 1U);
}

TEST_F(Agent, NotifiesOfWhatWentWrong)
{
    choose_start();
    EXPECT_EQ(
        desktop_->line(),
        "notified VANT|VANT|There is no sketch application: none listens on 127.0.0.1:4910, and vant-sketch "
        "is "
        "not installed. Install the package vant-sketch, or start your sketch application, and choose Start "
        "VANT again.");
    wait_for_its_end();
    EXPECT_FALSE(std::filesystem::exists(place_.path("DATA_HOME/vant/sketches")));
}

TEST_F(Agent, NotifiesOfTheEndWhereItCannotRaiseTheEditor)
{
    peer_test::Program peer({"--answer", place_.file("nothing.xml", "<vant></vant>\n"), "--timeout", "80"});
    peer.port();
    choose_start();
    EXPECT_EQ(desktop_->line(), "notified VANT|VANT|The sketch is in the editor.");
    wait_for_its_end();
}

} // namespace
