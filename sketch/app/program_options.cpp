#include "sketch/app/program_options.h"

#include "tools/program/arguments.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace program = vnt::program;

namespace {

const char* const kHelp = R"(usage: vant-sketch [OPTION]... [FILE]

Draw by hand over the view of an editor: choose Start VANT there, draw, press
Ctrl+Return, and the editor has the paths. Without an editor it is a sketch
program: start, draw, export. When it runs already, its window comes up.

  FILE                      open this sketch
  --sheet-rotation DEGREES  show the editor's sheet turned by so much,
                            clockwise, as the editor shows it
  --no-link                 do not listen for editors on port 4910
  --help                    print this
  --version                 print the version

F1 in the window lists its keys. Every stroke is kept as it is drawn, in
~/.local/share/vant/vant-sketch/sketches; what happens with editors stands in
~/.local/state/vant/vant-sketch.log.

Exit status:
  0  done; or the program that runs already has taken over
  1  the machine failed, as where there is no display
  2  wrong usage

Examples:
  vant-sketch
  vant-sketch harbour.xml
  vant-sketch --sheet-rotation 15
  vant-host run drawing.svg -o drawing.svg --launch vant-sketch
)";

// What Qt takes for itself, and session managers give.
constexpr std::array kOfQt = {"-session", "-platform", "-style", "-display"};

bool take(program::Arguments& arguments, ProgramOptions& options)
{
    const std::string option = arguments.option();
    if (!arguments.is_option()) {
        if (!options.file.empty())
            arguments.refuse_unknown("one sketch is opened at a time");
        options.file = option;
    } else if (option == "--help" || option == "-h") {
        arguments.no_value();
        options.help = true;
        return false;
    } else if (option == "--version") {
        arguments.no_value();
        options.version = true;
        return false;
    } else if (option == "--no-link") {
        arguments.no_value();
        options.isLinked = false;
    } else if (option == "--sheet-rotation")
        options.sheetRotation = arguments.number<double>("an angle in degrees, as 15 or -22.5");
    else if (std::find(kOfQt.begin(), kOfQt.end(), option) != kOfQt.end())
        arguments.value("its value");
    else
        arguments.refuse_unknown("vant-sketch --help lists the options");
    return true;
}

} // namespace

program::Result<ProgramOptions> readProgramOptions(const std::vector<std::string>& arguments)
{
    ProgramOptions options;
    program::Arguments rest(arguments, "nothing was started");
    try {
        while (rest.next()) {
            if (!take(rest, options))
                break;
        }
    } catch (const program::WrongUsage& wrong) {
        return program::Problem{program::kWrongUsage, wrong.sentence};
    }
    return options;
}

std::vector<std::string> argumentsFor(const ProgramOptions& options)
{
    std::vector<std::string> arguments;
    if (options.sheetRotation)
        arguments.push_back("--sheet-rotation=" + std::to_string(*options.sheetRotation));
    if (!options.file.empty()) {
        std::error_code failed;
        const auto whole = std::filesystem::absolute(options.file, failed);
        arguments.insert(arguments.end(), {"--", failed ? options.file : whole.string()});
    }
    return arguments;
}

std::string helpText() { return kHelp; }

std::string versionText() { return "vant-sketch " VNT_PROJECT_VERSION "\n"; }
