#include "host/app/options.h"

#include "host/editor/editor_process.h"
#include "tools/program/arguments.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace vnt::host {
namespace {

bool has_help(const std::string& command)
{
    constexpr std::array kCommands = {"run", "draw", "place", "extension", "install", "uninstall", "help"};
    return std::find(kCommands.begin(), kCommands.end(), command) != kCommands.end();
}

using program::Arguments;

constexpr double kMebibyte = 1024.0 * 1024.0;
constexpr double kMostMebibytes = 1e9;

bool fits_a_window(double edge)
{
    return edge >= std::numeric_limits<std::int16_t>::min() &&
           edge <= std::numeric_limits<std::int16_t>::max();
}

ViewOptions::Window window(Arguments& arguments)
{
    const char* const meaning =
        "X,Y,WIDTH,HEIGHT in pixels of the screen, whose edges are from -32768 to 32767";
    const std::vector<double> n = arguments.numbers(4, meaning);
    if (!fits_a_window(n[0]) || !fits_a_window(n[1]) || n[2] < 1 || n[3] < 1 || !fits_a_window(n[0] + n[2]) ||
        !fits_a_window(n[1] + n[3]))
        arguments.refuse_value(meaning);
    return {n[0], n[1], n[2], n[3]};
}

double zoom(Arguments& arguments)
{
    const char* const meaning = "a number above 0: 2 shows a pixel of the page as 2 of the screen";
    const auto value = arguments.number<double>(meaning);
    if (!(value > 0))
        arguments.refuse_value(meaning);
    return value;
}

GridOption grid(Arguments& arguments)
{
    const char* const meaning = "SPACING,SUBDIVISIONS: points above 0, and a whole number from 1 to 1000000";
    constexpr double kMostSubdivisions = 1e6;
    const std::vector<double> n = arguments.numbers(2, meaning);
    if (!(n[0] > 0) || n[1] < 1 || n[1] > kMostSubdivisions || n[1] != static_cast<std::int32_t>(n[1]))
        arguments.refuse_value(meaning);
    return {n[0], static_cast<std::int32_t>(n[1])};
}

std::uint64_t memory(Arguments& arguments)
{
    const char* const meaning = "a number of mebibytes above 0 and up to 1000000000";
    const auto value = arguments.number<double>(meaning);
    if (!(value > 0) || value > kMostMebibytes)
        arguments.refuse_value(meaning);
    return static_cast<std::uint64_t>(value * kMebibyte);
}

std::string editor(Arguments& arguments)
{
    const char* const meaning = "an editor's name, as 4711-123456, or none";
    const std::string& name = arguments.value(meaning);
    if (name == kNoEditor)
        return {};
    if (!is_editor_name(name))
        arguments.refuse_value(meaning);
    return name;
}

// Takes an option that both commands have; false when it is another.
bool take_common(Arguments& arguments, Options& options)
{
    const std::string& option = arguments.option();
    if (option == "-o" || option == "--output")
        options.out = arguments.value("the file to write");
    else if (option == "--trace")
        options.trace = arguments.value("the file to write the calls to");
    else if (option == "--timeout")
        options.timeout = arguments.seconds();
    else if (option == "--memory")
        options.memory = memory(arguments);
    else if (option == "--strict") {
        arguments.no_value();
        options.strict = true;
    } else
        return false;
    return true;
}

bool take_run(Arguments& arguments, Options& options)
{
    const std::string& option = arguments.option();
    if (option == "--plugin")
        options.plugin = arguments.value("the plug-in to load");
    else if (option == "--launch")
        options.launch = arguments.value("the command that starts the sketch application");
    else if (option == "--art")
        options.art = arguments.value("the file to write the sketch to");
    else if (option == "--editor")
        options.editor = editor(arguments);
    else if (option == "--view")
        options.view.window = window(arguments);
    else if (option == "--zoom")
        options.view.zoom = zoom(arguments);
    else if (option == "--center") {
        const std::vector<double> n = arguments.numbers(2, "X,Y in pixels of the page");
        options.view.center = Vec{n[0], n[1]};
    } else if (option == "--grid")
        options.grid = grid(arguments);
    else if (option == "--no-grid") {
        arguments.no_value();
        options.no_grid = true;
    } else
        return false;
    return true;
}

bool take_draw(Arguments& arguments, Options& options)
{
    const std::string& option = arguments.option();
    if (option == "--into")
        options.into = arguments.value("the artwork to draw into");
    else if (option == "--tolerance")
        options.tolerance = arguments.number<double>("a number of points");
    else if (option == "--join") {
        arguments.no_value();
        options.join = true;
    } else
        return false;
    return true;
}

void check_run(const Arguments& arguments, const Options& options)
{
    if (options.artwork.empty())
        arguments.refuse("no artwork to work on", "name it, as in vant-host run drawing.svg -o result.svg");
    if (options.out.empty() && !options.art)
        arguments.refuse("no file to write", "name it with -o FILE, which may be the artwork itself");
    if (options.grid && options.no_grid)
        arguments.refuse("cannot use both --grid and --no-grid", "leave one out");
}

void check_draw(const Arguments& arguments, const Options& options)
{
    if (options.answer.empty())
        arguments.refuse("no answer to draw", "name it, as in vant-host draw answer.xml -o result.svg");
    if (options.out.empty())
        arguments.refuse("no file to write", "name it with -o FILE");
}

bool ends_reading(Arguments& arguments, Options& options, Command command)
{
    const std::string& option = arguments.option();
    if (option == "--help" || option == "-h") {
        arguments.no_value();
        options.command = Command::help;
        options.subject = command == Command::run ? "run" : command == Command::draw ? "draw" : "";
        return true;
    }
    if (option == "--version") {
        arguments.no_value();
        options.command = Command::version;
        return true;
    }
    return false;
}

Options read_command(Arguments& arguments, Command command)
{
    Options options;
    options.command = command;
    std::string& file = command == Command::run ? options.artwork : options.answer;
    while (arguments.next()) {
        if (!arguments.is_option() && file.empty()) {
            file = arguments.option();
            continue;
        }
        if (!arguments.is_option())
            arguments.refuse("unexpected argument " + arguments.option(), "one file is worked on at a time");
        if (ends_reading(arguments, options, command))
            return options;
        if (!take_common(arguments, options) &&
            !(command == Command::run ? take_run(arguments, options) : take_draw(arguments, options)))
            arguments.refuse_unknown(std::string("vant-host ") + (command == Command::run ? "run" : "draw") +
                                     " --help lists the options");
    }
    if (command == Command::run)
        check_run(arguments, options);
    else
        check_draw(arguments, options);
    return options;
}

Options read_all(Arguments& arguments)
{
    if (!arguments.next())
        arguments.refuse("no command", "vant-host --help lists the commands");
    Options options;
    const std::string command = arguments.option();
    if (arguments.is_option()) {
        if (!ends_reading(arguments, options, Command::help))
            arguments.refuse_unknown("vant-host --help lists the commands");
        return options;
    }
    if (command == "run")
        return read_command(arguments, Command::run);
    if (command == "draw")
        return read_command(arguments, Command::draw);
    if (command == "help") {
        if (!arguments.next())
            return options;
        options.subject = arguments.option();
        if (!has_help(options.subject))
            arguments.refuse("no help for " + options.subject, "vant-host --help lists the commands");
        return options;
    }
    arguments.refuse("unknown command " + command, "vant-host --help lists the commands");
}

} // namespace

program::Result<Options> read_options(const std::vector<std::string>& arguments)
{
    Arguments rest(arguments, "nothing was done", "o");
    try {
        return read_all(rest);
    } catch (const program::WrongUsage& wrong) {
        return program::Problem{program::kWrongUsage, wrong.sentence};
    }
}

} // namespace vnt::host
