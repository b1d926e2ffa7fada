// An X server for one test, a window manager on it, and programs with windows.
#pragma once

#include "tests/editor/running_program.h"
#include "tests/editor/surroundings.h"
#include "tests/support/program_start.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace editor_test {

class OwnDesktop {
public:
    static bool is_possible() { return support::is_installed("Xvfb") && support::is_installed("openbox"); }

    OwnDesktop()
        : server_({"Xvfb", "-displayfd", "1", "-screen", "0", "640x480x24", "-nolisten", "tcp", "-noreset"}),
          display_(":" + server_.line())
    {
    }

    const std::string& display() const { return display_; }
    std::vector<std::string> environment() const { return {"DISPLAY=" + display_, "WAYLAND_DISPLAY"}; }

    void start_manager()
    {
        manager_.emplace(std::vector<std::string>{"openbox", "--sm-disable", "--startup", "echo ready"},
                         environment());
        while (manager_->line() != "ready") { // it may have something to say of its configuration before
        }
    }
    RunningProgram& manager() { return *manager_; }
    RunningProgram& server() { return server_; }

private:
    RunningProgram server_;
    std::string display_;
    std::optional<RunningProgram> manager_;
};

// A process with windows, which are there and known to the window manager.
class WindowedProgram : public RunningProgram {
public:
    // windows: as own_windows.cpp takes them
    WindowedProgram(const OwnDesktop& desktop, std::vector<std::string> windows)
        : RunningProgram(with_program(std::move(windows)), desktop.environment())
    {
        std::istringstream ids(line());
        for (std::uint32_t id = 0; ids >> id;)
            windows_.push_back(id);
    }
    std::uint32_t window(std::size_t index) const { return windows_.at(index); }

    // Waits until a window has the keyboard, whosever it is; throws when it never does.
    void wait_until_active(std::uint32_t id)
    {
        while (std::stoul(line()) != id) {
        }
    }

private:
    static std::vector<std::string> with_program(std::vector<std::string> windows)
    {
        windows.insert(windows.begin(), VNT_OWN_WINDOWS);
        return windows;
    }

    std::vector<std::uint32_t> windows_;
};

class OnADesktop : public testing::Test {
protected:
    void SetUp() override
    {
        if (!OwnDesktop::is_possible())
            GTEST_SKIP() << "Xvfb or openbox is missing (Debian: xvfb openbox)";
        desktop_ = std::make_unique<OwnDesktop>();
        desktop_->start_manager();
        here_.reset(new Surroundings{
            {"DISPLAY",         desktop_->display()},
            {"WAYLAND_DISPLAY", std::nullopt       }
        });
    }

    std::unique_ptr<OwnDesktop> desktop_;
    std::unique_ptr<Surroundings> here_;
};

} // namespace editor_test
