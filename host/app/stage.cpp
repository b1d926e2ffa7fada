#include "host/app/stage.h"

#include "host/app/guard.h"
#include "tools/program/whole_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <system_error>
#include <utility>

namespace vnt::host {
namespace {

using program::Console;
using program::kFailed;
namespace fs = std::filesystem;

// The first few and how many more there are: a drawing may have thousands of the same.
void tell(const std::vector<std::string>& notes, const Console& console)
{
    constexpr std::size_t kMost = 5;
    for (std::size_t i = 0; i < notes.size() && i < kMost; ++i)
        console.note(notes[i]);
    if (notes.size() > kMost)
        console.note("and " + std::to_string(notes.size() - kMost) + " more like these");
}

// Ends at the first wrong call: what the plug-in does behind it would be the consequence of it.
[[noreturn]] void end_strictly(const WrongCall& call, const std::string& unharmed, const Console& console)
{
    const bool plugin_erred = call.side == Side::plugin;
    clear_progress();
    console.report({kFailed, std::string(plugin_erred ? "the plug-in" : "the host") + " erred: " + call.call +
                                 " " + call.why + "; " + unharmed + "; report it to the makers of " +
                                 (plugin_erred ? "the plug-in" : "vant-host") +
                                 ", or go on without --strict"});
    _exit(kFailed);
}

} // namespace

std::string absolute_path(const std::string& file)
{
    return std::filesystem::absolute(file).lexically_normal().string();
}

bool is_same_file(const std::string& one, const std::string& other)
{
    std::error_code error;
    return std::filesystem::equivalent(one, other, error) || absolute_path(one) == absolute_path(other);
}

program::ExitStatus tell_done(const Console& console, const std::string& text)
{
    if (!(std::cout << text << std::flush))
        console.note("standard output takes no message, but the work is done: " +
                     text.substr(0, text.find('\n')));
    return program::kDone;
}

program::Problem in_words(const Problem& problem, const std::string& unharmed)
{
    std::string sentence = problem.sentence;
    const std::size_t last_clause = sentence.rfind("; ");
    sentence.insert(std::min(last_clause, sentence.size()), "; " + unharmed);
    return {kFailed, sentence};
}

std::string remedy_for(const std::error_code& error, const char* option)
{
    const bool is_full = error == std::errc::no_space_on_device || error.value() == EDQUOT;
    return std::string(is_full ? "free space, or choose" : "choose") + " another file with " + option;
}

std::optional<program::Problem> find_obstacle(const std::string& out, const char* option,
                                              const std::string& unharmed)
{
    std::error_code error;
    const fs::path file = fs::exists(out, error) ? fs::canonical(out, error) : fs::path(out);
    const bool is_device =
        fs::exists(file, error) && !fs::is_regular_file(file, error) && !fs::is_directory(file, error);
    // A file is made beside it and takes its name, so its folder is what matters.
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    int reason = 0;
    if (fs::is_directory(file, error))
        reason = EISDIR;
    else if (is_device ? access(file.c_str(), W_OK) != 0 : access(folder.c_str(), W_OK | X_OK) != 0)
        reason = errno;
    if (reason == 0)
        return std::nullopt;
    const std::error_code why(reason, std::generic_category());
    return program::Problem{kFailed, "cannot write " + out + ": " + why.message() + "; " + unharmed + "; " +
                                         remedy_for(why, option)};
}

program::Result<SvgDocument> read_document(const std::string& file, const std::string& unharmed,
                                           const Console& console)
{
    std::string bytes;
    if (const std::error_code error = program::read_whole_file(file, bytes))
        return program::Problem{kFailed, "cannot read the artwork " + file + ": " + error.message() + "; " +
                                             unharmed + "; name an SVG file that can be read"};
    Result<SvgDocument> document = SvgDocument::read(file, std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&document))
        return in_words(*problem, unharmed);
    for (const std::string& note : std::get<0>(document).notes())
        console.note(note);
    return std::move(std::get<0>(document));
}

std::string unharmed_clause(const std::string& out)
{
    return out + (std::filesystem::exists(std::filesystem::path(out)) ? " is as it was" : " was not made");
}

program::Result<std::unique_ptr<Trace>>
open_trace(const Options& options, const std::vector<std::string>& other_files, const std::string& unharmed)
{
    if (!options.trace)
        return std::unique_ptr<Trace>();
    for (const std::string& file : other_files) {
        if (is_same_file(*options.trace, file))
            return program::Problem{program::kWrongUsage, "cannot write the trace to " + *options.trace +
                                                              ", which the command needs itself; " +
                                                              unharmed + "; name another file with --trace"};
    }
    Result<std::unique_ptr<Trace>> trace = Trace::open(*options.trace);
    if (const auto* problem = std::get_if<Problem>(&trace))
        return in_words(*problem, unharmed);
    return std::move(std::get<0>(trace));
}

SessionSetup make_setup(const Options& options, DocumentView view, const GridSettings& grid, Trace* trace,
                        const std::string& unharmed, const Console& console)
{
    SessionSetup setup;
    setup.view = std::move(view);
    setup.grid = grid;
    setup.trace = trace;
    setup.on_alert = [console](const ShownAlert& alert) {
        clear_progress();
        console.note("the plug-in shows an alert: " + alert.text + ": " + alert.explanation);
    };
    if (options.strict)
        setup.on_wrong_call = [unharmed, console](const WrongCall& call) {
            end_strictly(call, unharmed, console);
        };
    return setup;
}

std::optional<program::Problem> find_failure(const Session& session, const Trace* trace,
                                             const std::string& unharmed)
{
    if (!session.failure().empty())
        return in_words({session.failure()}, unharmed);
    if (trace != nullptr && !trace->problem().empty())
        return program::Problem{kFailed,
                                trace->problem() + "; " + unharmed + "; free space, or leave --trace out"};
    return std::nullopt;
}

program::ExitStatus write_drawing(const SvgDocument& document, const std::vector<PathArt>& paths,
                                  const Options& options, const std::string& nothing_drawn,
                                  const Console& console)
{
    const std::string unharmed = unharmed_clause(options.out);
    const Result<DrawnText> drawn = document.with_paths(paths);
    if (const auto* problem = std::get_if<Problem>(&drawn))
        return console.report(in_words(*problem, unharmed));
    const auto& text = std::get<0>(drawn);
    tell(text.notes, console);
    disarm_deadline();
    if (const std::error_code error = program::write_whole_file(options.out, text.text))
        return console.report({kFailed, "cannot write " + options.out + ": " + error.message() + "; " +
                                            unharmed + "; " + remedy_for(error, "-o")});
    if (paths.empty())
        return tell_done(console, options.out + ": " + nothing_drawn + "\n");
    const std::size_t made = paths.size() - text.notes.size();
    return tell_done(console, options.out + ": " + std::to_string(made) +
                                  (made == 1 ? " new path\n" : " new paths\n"));
}

std::optional<std::chrono::steady_clock::time_point> deadline_of(const Options& options,
                                                                 std::chrono::steady_clock::time_point start)
{
    if (!options.timeout)
        return std::nullopt;
    return start + *options.timeout;
}

} // namespace vnt::host
