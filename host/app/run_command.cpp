#include "host/app/run_command.h"

#include "host/app/editor_context.h"
#include "host/app/guard.h"
#include "host/app/sketch_application.h"
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

// None when the sketch application is not to be started. A command of the user's own is left as it is: what options it
// knows is not known here.
std::optional<std::string> launch_command(const Options& options, const SvgDocument& document)
{
    if (options.launch || !options.editor)
        return options.launch;
    return sketch_application_command(document.view(options.view).sheet_rotation);
}

// Empty when all is well; a problem ends the command.
std::optional<program::Problem> launch(const std::optional<std::string>& command,
                                       std::optional<Time> deadline, const std::string& unharmed)
{
    if (!command)
        return std::nullopt;
    const Result<Launched> launched = launch_and_wait(*command, kSketchPort, deadline);
    if (const auto* problem = std::get_if<Problem>(&launched))
        return in_words(*problem, unharmed);
    if (std::get<Launched>(launched) == Launched::time_up)
        return program::Problem{program::kTimeUp, "the time of --timeout is up before " + *command +
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

bool has_document(const Options& options) { return !options.out.empty(); }

// The files that the command reads and writes besides the trace, which must be none of them.
std::vector<std::string> own_files(const Options& options, const std::string& plugin)
{
    std::vector<std::string> files = {options.artwork, plugin};
    if (has_document(options))
        files.push_back(options.out);
    if (options.art)
        files.push_back(*options.art);
    return files;
}

// Looks whether what will be drawn can be written, before somebody draws it.
std::optional<program::Problem> find_obstacles(const Options& options, const std::string& plugin,
                                               const std::string& unharmed)
{
    const auto is_art = [&](const std::string& file) { return is_same_file(*options.art, file); };
    if (options.art &&
        (is_art(options.artwork) || is_art(plugin) || (has_document(options) && is_art(options.out))))
        return program::Problem{program::kWrongUsage, "cannot write the sketch to " + *options.art +
                                                          ", which the command needs itself; " + unharmed +
                                                          "; name another file with --art"};
    if (has_document(options)) {
        if (auto obstacle = find_obstacle(options.out, "-o", unharmed))
            return obstacle;
    }
    return options.art ? find_obstacle(*options.art, "--art", unharmed) : std::nullopt;
}

// Taken before the exchange: the document may be saved meanwhile.
DocumentMark mark_at_start(const Options& options, const SvgDocument& document)
{
    if (!options.art)
        return {};
    DocumentMark mark = options.editor ? mark_of(document, EditorContext::document_path(), *options.editor)
                                       : mark_of(document, absolute_path(options.artwork), "");
    keep_some_ids(mark);
    return mark;
}

// The paths by themselves. Nothing when there are none that could be placed.
std::optional<Problem> write_art(const Options& options, const SvgDocument& document,
                                 const DocumentMark& mark, const std::vector<PathArt>& paths)
{
    const bool is_drawn = std::any_of(paths.begin(), paths.end(),
                                      [](const PathArt& path) { return why_left_out(path) == nullptr; });
    if (!options.art || !is_drawn)
        return std::nullopt;
    const KeptArt art{make_art_id(),       local_time_now(),           mark,
                      document.layer_id(), document.artwork_to_user(), paths};
    const Result<std::string> text = svg_of(art);
    if (const auto* problem = std::get_if<Problem>(&text))
        return *problem;
    disarm_deadline();
    if (const std::error_code error = program::write_whole_file(*options.art, std::get<std::string>(text)))
        return Problem{"cannot write " + *options.art + ": " + error.message() + "; " +
                       remedy_for(error, "--art")};
    return std::nullopt;
}

// Of a run that writes no document.
ExitStatus tell_of_art(const Options& options, const std::vector<PathArt>& paths, const Console& console)
{
    disarm_deadline();
    if (paths.empty())
        return tell_done(console, "nothing was drawn; " + unharmed_clause(*options.art) + "\n");
    std::size_t made = 0;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const char* const problem = why_left_out(paths[i]);
        if (problem == nullptr)
            ++made;
        else
            console.note("path " + std::to_string(i) + " " + problem + " and is left out");
    }
    if (made == 0)
        return console.report({kFailed, "nothing of what was drawn can be placed; " +
                                            unharmed_clause(*options.art) +
                                            "; the notes above say why; draw it again"});
    return tell_done(console, *options.art + ": " + std::to_string(made) +
                                  (made == 1 ? " new path\n" : " new paths\n"));
}

ExitStatus write_results(const Options& options, const SvgDocument& document, const DocumentMark& mark,
                         const std::vector<PathArt>& paths, const Console& console)
{
    const std::optional<Problem> art_problem = write_art(options, document, mark, paths);
    ExitStatus status = program::kDone;
    if (has_document(options))
        status = write_drawing(document, paths, options,
                               "nothing was drawn; an unchanged copy of " + options.artwork, console);
    else if (!art_problem)
        status = tell_of_art(options, paths, console);
    if (!art_problem)
        return status;
    const bool is_drawn = has_document(options) && status == program::kDone;
    return console.report(in_words(*art_problem, is_drawn ? options.out + " has what was drawn"
                                                          : unharmed_clause(*options.art)));
}

} // namespace

ExitStatus run_command(const Options& options, Time start, const Console& console)
{
    const std::string unharmed = unharmed_clause(has_document(options) ? options.out : *options.art);
    const std::optional<Time> deadline = deadline_of(options, start);
    const Deadline limit(options.timeout, unharmed);
    const auto document = read_document(options.artwork, unharmed, console);
    if (const auto* problem = std::get_if<program::Problem>(&document))
        return console.report(*problem);
    const auto file = find_plugin(options, unharmed);
    if (const auto* problem = std::get_if<program::Problem>(&file))
        return console.report(*problem);
    if (const auto obstacle = find_obstacles(options, std::get<0>(file), unharmed))
        return console.report(*obstacle);
    const Result<PluginBundle> bundle = PluginBundle::load(std::get<0>(file));
    if (const auto* problem = std::get_if<Problem>(&bundle))
        return console.report(in_words(*problem, unharmed));
    const DocumentMark mark = mark_at_start(options, std::get<0>(document));
    const auto trace = open_trace(options, own_files(options, std::get<0>(file)), unharmed);
    if (const auto* problem = std::get_if<program::Problem>(&trace))
        return console.report(*problem);
    if (const auto problem = launch(launch_command(options, std::get<0>(document)), deadline, unharmed))
        return console.report(*problem);
    const auto paths = run_plugin(options, std::get<0>(document), std::get<0>(bundle).entry(),
                                  std::get<0>(trace).get(), deadline, unharmed, console);
    if (const auto* problem = std::get_if<program::Problem>(&paths))
        return console.report(*problem);
    return write_results(options, std::get<0>(document), mark, std::get<0>(paths), console);
}

} // namespace vnt::host
