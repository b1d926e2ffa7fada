// vant-host: runs the plug-in over SVG documents.
#include "host/app/agent_command.h"
#include "host/app/draw_command.h"
#include "host/app/editor_options.h"
#include "host/app/extension_command.h"
#include "host/app/guard.h"
#include "host/app/help_text.h"
#include "host/app/install_command.h"
#include "host/app/options.h"
#include "host/app/place_command.h"
#include "host/app/run_command.h"
#include "tools/program/console.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <exception>
#include <filesystem>
#include <new>
#include <string>
#include <variant>
#include <vector>

namespace {

using namespace vnt::host;
using namespace vnt::program;

constexpr std::array kEditorCommands = {"extension", "place", "agent", "install", "uninstall"};

bool is_editor_command(const std::string& name)
{
    return std::find(kEditorCommands.begin(), kEditorCommands.end(), name) != kEditorCommands.end();
}

ExitStatus run_editor_command(const std::vector<std::string>& arguments, const Console& console)
{
    const auto read = read_editor_options(arguments.front(), {arguments.begin() + 1, arguments.end()});
    if (const auto* problem = std::get_if<vnt::program::Problem>(&read))
        return console.report(*problem);
    const auto& options = std::get<EditorOptions>(read);
    switch (options.command) {
    case EditorCommand::help: return console.print(help_text(options.subject));
    case EditorCommand::extension: return extension_command(options);
    case EditorCommand::place: return place_command(options, console);
    case EditorCommand::list: return list_command(console);
    case EditorCommand::agent: return agent_command(options);
    case EditorCommand::install: return install_command(options, console);
    case EditorCommand::uninstall: return uninstall_command(options, console);
    }
    return kFailed;
}

ExitStatus run(const std::vector<std::string>& arguments, const Console& console)
{
    const auto start = std::chrono::steady_clock::now();
    if (!arguments.empty() && is_editor_command(arguments.front()))
        return run_editor_command(arguments, console);
    const auto read = read_options(arguments);
    if (const auto* problem = std::get_if<vnt::program::Problem>(&read))
        return console.report(*problem);
    const auto& options = std::get<Options>(read);
    switch (options.command) {
    case Command::help: return console.print(help_text(options.subject));
    case Command::version: return console.print(version_text());
    case Command::run: return run_command(options, start, console);
    case Command::draw: return draw_command(options, start, console);
    }
    return kFailed;
}

// The editor starts the program by links whose names say what for.
std::vector<std::string> arguments_of(int argc, char** argv)
{
    std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    const std::string name = argc > 0 ? std::filesystem::path(argv[0]).filename().string() : std::string();
    if (name == "vant-start")
        arguments.insert(arguments.begin(), "extension");
    else if (name == "vant-place")
        arguments.insert(arguments.begin(), "place");
    return arguments;
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    park_descriptors();
    const Console console("vant-host");
    try {
        return run(arguments_of(argc, argv), console);
    } catch (const std::bad_alloc&) {
        return console.report({kFailed,
                               "not enough memory; no file was changed; close other programs, or work on "
                               "a smaller document"});
    } catch (const std::exception& error) {
        return console.report(
            {kFailed, std::string("cannot go on: ") + error.what() + "; no file was changed; try again"});
    }
}
