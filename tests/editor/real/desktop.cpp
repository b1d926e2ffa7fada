#include "tests/editor/real/desktop.h"

#include "tests/support/program_start.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace real_editor_test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kScreen = "1280x1024x24";

struct Needed {
    const char* program;
    const char* package; // of Debian
};
constexpr std::array kNeeded = {
    Needed{"inkscape",    "inkscape"      },
    Needed{"Xvfb",        "xvfb"          },
    Needed{"openbox",     "openbox"       },
    Needed{"dbus-daemon", "dbus"          },
    Needed{"gdbus",       "libglib2.0-bin"},
    Needed{"xdotool",     "xdotool"       },
    Needed{"xclip",       "xclip"         },
    Needed{"xprop",       "x11-utils"     },
    Needed{"import",      "imagemagick"   },
    Needed{"setpriv",     "util-linux"    },
};

void make_folder(const std::string& path)
{
    fs::create_directories(path);
    chmod(path.c_str(), S_IRWXU);
}

} // namespace

std::string Desktop::missing()
{
    std::string text;
    for (const auto& [program, package] : kNeeded) {
        if (!support::is_installed(program))
            text +=
                (text.empty() ? "" : ", ") + std::string(program) + " is missing (Debian: " + package + ")";
    }
    return text;
}

Desktop::Desktop()
{
    for (const char* const name : {"home", "runtime", "profile", "bin", "temporary"})
        make_folder(path(name));
    environment_ = {
        "HOME=" + path("home"),
        "XDG_RUNTIME_DIR=" + path("runtime"),
        "INKSCAPE_PROFILE_DIR=" + path("profile"),
        "PATH=" + path("bin"),
        "TMPDIR=" + path("temporary"),
        "DBUS_SESSION_BUS_ADDRESS=" + bus_.address(),
        "XDG_DATA_HOME",
        "XDG_STATE_HOME",
        "XDG_CONFIG_HOME",
        "XDG_CACHE_HOME",
        "XDG_CURRENT_DESKTOP",
        "WAYLAND_DISPLAY",
        "XAUTHORITY",
        "SESSION_MANAGER",
        "LANGUAGE",
        "LC_ALL=C.UTF-8",
        "GDK_BACKEND=x11",
        "NO_AT_BRIDGE=1", // accessibility would start a bus of its own
    };
    server_ = start({"Xvfb", "-displayfd", "1", "-screen", "0", kScreen, "-nolisten", "tcp", "-noreset"},
                    "display");
    wait_until("the X server", [this] { return server_->output().find('\n') != std::string::npos; });
    environment_.push_back("DISPLAY=:" + server_->output().substr(0, server_->output().find('\n')));
    manager_ = start({"openbox", "--sm-disable"}, "manager");
    wait_until("the window manager", [this] {
        return run({"xdotool", "get_num_desktops"}).status == 0; // which it tells, nobody else
    });
    const Ended installed = run({VNT_HOST_PROGRAM, "install", "--user"});
    if (installed.status != 0)
        throw std::runtime_error("vant-host install failed: " + content("errors"));
}

bool Desktop::has(const std::string& name) const { return fs::exists(path(name)); }

std::unique_ptr<Process> Desktop::start(const std::vector<std::string>& words, const std::string& name) const
{
    return std::make_unique<Process>(words, environment_, path(name), path("errors"));
}

Ended Desktop::run(const std::vector<std::string>& words, std::chrono::seconds limit) const
{
    const auto process = start(words);
    const int status = process->end(limit);
    return {status, process->output()};
}

void Desktop::add_program(const std::string& name, const std::string& script) const
{
    file(name, "#!/bin/sh\n" + script + "\n");
    chmod(path(name).c_str(), S_IRWXU);
}

std::string Desktop::log() const
{
    const std::string name = "home/.local/state/vant/vant-host.log";
    if (!has(name))
        return {};
    std::istringstream lines(content(name));
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t process = line.find("] ");
        text += (line.front() == ' ' || process == line.npos ? line : line.substr(process + 2)) + "\n";
    }
    return text;
}

std::vector<std::string> Desktop::art_in(const std::string& folder) const
{
    std::vector<std::string> files;
    const fs::path all = path("home/.local/share/vant/" + folder);
    if (!fs::exists(all))
        return files;
    for (const auto& entry : fs::directory_iterator(all)) {
        if (entry.path().extension() == ".svg")
            files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void Desktop::wait_for_the_sketch_to_end() const
{
    wait_until("the end of the sketch", [this] {
        const fs::path runtime = path("runtime/vant");
        if (!fs::exists(runtime))
            return true;
        return std::none_of(fs::directory_iterator(runtime), fs::directory_iterator(), [](const auto& entry) {
            return entry.path().filename().string().starts_with("sketch-");
        });
    });
}

void Desktop::save_picture(const std::string& file) const { run({"import", "-window", "root", file}); }

} // namespace real_editor_test
