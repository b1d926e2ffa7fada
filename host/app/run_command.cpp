#include "host/app/run_command.h"

#include "host/app/guard.h"
#include "host/app/stage.h"
#include "host/editor/kept_art.h"
#include "host/editor/local_time.h"
#include "host/kit/launch.h"
#include "host/kit/listening_port.h"
#include "host/kit/plugin_bundle.h"
#include "tools/program/whole_file.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>
#include <variant>

namespace vnt::host {
namespace {

using program::Console;
using program::ExitStatus;
using program::kFailed;
using Time = std::chrono::steady_clock::time_point;

constexpr const char* kMenuItem = "Start VANT";

// The plug-in beside this program: where the build leaves it, or where it is installed.
program::Result<std::string> find_plugin(const Options& options, const std::string& unharmed)
{
    if (options.plugin)
        return *options.plugin;
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* const beside : {VNT_BUNDLE_FROM_BUILT, VNT_BUNDLE_FROM_INSTALLED}) {
        const std::filesystem::path file = (folder / beside).lexically_normal();
        if (std::filesystem::exists(file, error))
            return file.string();
    }
    return program::Problem{kFailed, "cannot find the plug-in beside " + folder.string() + "; " + unharmed +
                                         "; name it with --plugin"};
}

// Empty when all is well; a problem ends the command.
std::optional<program::Problem> launch(const Options& options, std::optional<Time> deadline,
                                       const std::string& unharmed)
{
    if (!options.launch)
        return std::nullopt;
    const Result<Launched> launched = launch_and_wait(*options.launch, kSketchPort, deadline);
    if (const auto* problem = std::get_if<Problem>(&launched))
        return in_words(*problem, unharmed);
    if (std::get<Launched>(launched) == Launched::time_up)
        return program::Problem{program::kTimeUp, "the time of --timeout is up before " + *options.launch +
                                                      " listened on 127.0.0.1:4910; " + unharmed +
                                                      "; give it more time"};
    return std::nullopt;
}

GridSettings grid_of(const Options& options, const SvgDocument& document)
{
    GridSettings grid = document.grid();
    if (options.grid)
        grid = {static_cast<float>(options.grid->spacing), options.grid->subdivisions, true, true};
    if (options.no_grid)
        grid.is_shown = grid.is_snapped_to = false;
    return grid;
}

// The plug-in's life, message by message. A problem is a message that it did not survive.
std::optional<program::Problem> live(Session& session, PluginEntry& entry, const std::string& unharmed)
{
    struct Step {
        const char* caller;
        const char* selector;
    };
    constexpr std::array kSteps = {
        Step{kInterfaceCaller, kStartupSelector },
        Step{kMenuCaller,      kGoSelector      },
        Step{kInterfaceCaller, kShutdownSelector},
        Step{kAccessCaller,    kUnloadSelector  },
    };
    for (const Step& step : kSteps) {
        const Result<HostError> answer = session.send(entry, step.caller, step.selector);
        if (const auto* problem = std::get_if<Problem>(&answer))
            return in_words(*problem, unharmed);
        if (step.selector == kStartupSelector && !session.has_menu_item(kMenuItem))
            return program::Problem{kFailed, std::string("the plug-in has not added its menu item \"") +
                                                 kMenuItem + "\"; " + unharmed +
                                                 "; see with --trace what it tried"};
    }
    return std::nullopt;
}

// The plug-in's words for an exception differ from those for a missing figure.
const char* what_to_do(const ShownAlert& alert, bool nobody_listens)
{
    if (alert.text == "VANT information")
        return "if the figure is very large, allow more with --memory; see with --trace what the plug-in did";
    return nobody_listens
               ? "nothing listens on 127.0.0.1:4910: start the sketch application first, or name it with "
                 "--launch"
               : "look at what the sketch application says, and try again";
}

program::Problem alert_problem(const Session& session, bool nobody_listens, const std::string& unharmed)
{
    const ShownAlert& alert = session.alerts().back();
    return {program::kAlert, "the plug-in ended with an alert (" + alert.text + ": " + alert.explanation +
                                 "); " + unharmed + "; " + what_to_do(alert, nobody_listens)};
}

program::Result<std::vector<PathArt>> run_plugin(const Options& options, const SvgDocument& document,
                                                 PluginEntry& entry, Trace* trace,
                                                 std::optional<Time> deadline, const std::string& unharmed,
                                                 const Console& console)
{
    DocumentView view = document.view(options.view);
    for (const std::string& note : view.notes)
        console.note(note);
    Session session(
        make_setup(options, std::move(view), grid_of(options, document), trace, unharmed, console));
    const bool nobody_listens = listening_on(kSketchPort) == Listening::no;
    GuardSetup setup{deadline, true, options.memory, unharmed, [&session] { return session.path_count(); }};
    auto guard = Guard::stand(std::move(setup));
    if (const auto* problem = std::get_if<program::Problem>(&guard))
        return *problem;
    const std::optional<program::Problem> death = live(session, entry, unharmed);
    std::get<0>(guard).reset();
    if (death)
        return *death;
    if (auto failure = find_failure(session, trace, unharmed))
        return *failure;
    if (!session.alerts().empty())
        return alert_problem(session, nobody_listens, unharmed);
    std::vector<PathArt> paths = session.take_paths();
    for (const std::string& note : session.notes())
        console.note(note);
    return paths;
}

// The paths by themselves. Nothing when there are none that could be placed.
std::optional<program::Problem> write_art(const Options& options, const SvgDocument& document,
                                          const DocumentMark& mark, const std::vector<PathArt>& paths,
                                          const std::string& unharmed)
{
    const bool is_drawn = std::any_of(paths.begin(), paths.end(),
                                      [](const PathArt& path) { return !path.empty() && is_finite(path); });
    if (!options.art || !is_drawn)
        return std::nullopt;
    KeptArt art{make_art_id(),       local_time_now(),           mark,
                document.layer_id(), document.artwork_to_user(), paths};
    const Result<std::string> text = svg_of(art);
    if (const auto* problem = std::get_if<Problem>(&text))
        return in_words(*problem, unharmed);
    if (const std::error_code error = program::write_whole_file(*options.art, std::get<std::string>(text)))
        return program::Problem{kFailed, "cannot write " + *options.art + ": " + error.message() + "; " +
                                             unharmed + "; " + remedy_for(error, "--art")};
    return std::nullopt;
}

// A run that writes no document.
ExitStatus tell_of_art(const Options& options, std::size_t paths, const Console& console)
{
    disarm_deadline();
    const bool is_made = paths > 0;
    return tell_done(console, *options.art + (is_made ? ": " + std::to_string(paths) +
                                                            (paths == 1 ? " new path\n" : " new paths\n")
                                                      : " was not made: nothing was drawn\n"));
}

} // namespace

ExitStatus run_command(const Options& options, Time start, const Console& console)
{
    const bool is_art_alone = options.out.empty();
    const std::string& made = is_art_alone ? *options.art : options.out;
    const std::string unharmed = unharmed_clause(made);
    const std::optional<Time> deadline = deadline_of(options, start);
    const Deadline limit(options.timeout, unharmed);
    const auto document = read_document(options.artwork, unharmed, console);
    if (const auto* problem = std::get_if<program::Problem>(&document))
        return console.report(*problem);
    if (options.art && ((!is_art_alone && is_same_file(*options.art, options.out)) ||
                        is_same_file(*options.art, options.artwork)))
        return console.report({program::kWrongUsage, "cannot write the sketch to " + *options.art +
                                                         ", which the command needs itself; " + unharmed +
                                                         "; name another file with --art"});
    if (const auto obstacle = find_obstacle(made, unharmed))
        return console.report(*obstacle);
    const auto file = find_plugin(options, unharmed);
    if (const auto* problem = std::get_if<program::Problem>(&file))
        return console.report(*problem);
    const Result<PluginBundle> bundle = PluginBundle::load(std::get<0>(file));
    if (const auto* problem = std::get_if<Problem>(&bundle))
        return console.report(in_words(*problem, unharmed));
    DocumentMark mark; // before the exchange: the document may be saved meanwhile
    if (options.art)
        mark = mark_of(std::get<0>(document), options.artwork, "");
    keep_some_ids(mark);
    const auto trace = open_trace(options, {options.artwork, made, std::get<0>(file)}, unharmed);
    if (const auto* problem = std::get_if<program::Problem>(&trace))
        return console.report(*problem);
    if (const auto problem = launch(options, deadline, unharmed))
        return console.report(*problem);
    const auto paths = run_plugin(options, std::get<0>(document), std::get<0>(bundle).entry(),
                                  std::get<0>(trace).get(), deadline, unharmed, console);
    if (const auto* problem = std::get_if<program::Problem>(&paths))
        return console.report(*problem);
    if (const auto problem = write_art(options, std::get<0>(document), mark, std::get<0>(paths), unharmed))
        return console.report(*problem);
    if (is_art_alone)
        return tell_of_art(options, std::get<0>(paths).size(), console);
    return write_drawing(std::get<0>(document), std::get<0>(paths), options,
                         "nothing was drawn; an unchanged copy of " + options.artwork, console);
}

} // namespace vnt::host
