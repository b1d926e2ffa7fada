#include "host/app/draw_command.h"

#include "Source/plugin/vantPlugin.h"
#include "Source/vntClientCom/vntClientCom.h"
#include "host/app/guard.h"
#include "host/app/stage.h"
#include "host/kit/svg_new_document.h"
#include "tools/program/answer_text.h"

#include <new>
#include <optional>
#include <utility>
#include <variant>

namespace vnt::host {
namespace {

using program::Console;
using program::ExitStatus;
using program::kFailed;

constexpr double kMargin = 10; // points around the figure in a new document

// The link's reading of an answer that did not come over a connection.
class RecordedAnswer : public ClientCom {
public:
    using ClientCom::figure;
};

program::Problem too_large(const Options& options, const std::string& unharmed)
{
    return {kFailed, "not enough memory to draw " + options.answer + "; " + unharmed +
                         "; allow more with --memory, or draw a smaller figure"};
}

// Draws with the plug-in's own functions, as within the message that its menu item was chosen.
//
// line: the answer; taken, so that its memory is free when the drawing begins.
program::Result<std::vector<PathArt>> draw(const Options& options, std::string line, Session& session,
                                           const std::string& unharmed)
{
    bool is_refused = false;
    bool is_too_large = false;
    const Result<HostError> drawn = session.during(kMenuCaller, kGoSelector, [&](HostMessage& message) {
        try {
            RecordedAnswer answer;
            is_refused = !answer.read_answer(std::exchange(line, std::string()));
            if (is_refused)
                return kHostNoError;
            vantPlugin* const plugin = vantPlugin::get();
            const HostError error = plugin->AcquireSuites(&message);
            plugin->CreateStroke(answer.figure, options.tolerance);
            return error;
        } catch (const std::bad_alloc&) {
            is_too_large = true;
            return kHostOutOfMemory;
        }
    });
    if (const auto* problem = std::get_if<Problem>(&drawn))
        return in_words(*problem, unharmed);
    if (is_too_large)
        return too_large(options, unharmed);
    if (is_refused)
        return program::Problem{kFailed, "the link refuses the answer " + options.answer +
                                             " (its reason stands above); " + unharmed +
                                             "; docs/protocol.md says what an answer is"};
    return session.take_paths();
}

program::Result<std::vector<PathArt>> draw_guarded(const Options& options, std::string line, Trace* trace,
                                                   std::chrono::steady_clock::time_point start,
                                                   const std::string& unharmed, const Console& console)
{
    Session session(make_setup(options, DocumentView{}, GridSettings{}, trace, unharmed, console));
    GuardSetup setup{deadline_of(options, start), false, options.memory, unharmed,
                     [&session] { return session.path_count(); }};
    auto guard = Guard::stand(std::move(setup));
    if (const auto* problem = std::get_if<program::Problem>(&guard))
        return *problem;
    auto paths = draw(options, std::move(line), session, unharmed);
    std::get<0>(guard).reset();
    if (auto failure = find_failure(session, trace, unharmed))
        return *failure;
    for (const std::string& note : session.notes())
        console.note(note);
    return paths;
}

program::Result<SvgDocument> new_document(const std::vector<PathArt>& paths, const std::string& unharmed)
{
    const ArtBox box = bounds_of(paths).value_or(ArtBox{0, 0, 0, 0});
    Result<SvgDocument> document = SvgDocument::read("the new document", make_svg_document(box, kMargin));
    if (const auto* problem = std::get_if<Problem>(&document))
        return in_words(*problem, unharmed);
    return std::move(std::get<0>(document));
}

} // namespace

ExitStatus draw_command(const Options& options, std::chrono::steady_clock::time_point start,
                        const Console& console)
{
    const std::string unharmed = unharmed_clause(options.out);
    const Deadline limit(options.timeout, unharmed);
    auto line = program::read_answer(options.answer, options.join, {"draw", unharmed, ""});
    if (const auto* problem = std::get_if<program::Problem>(&line))
        return console.report(*problem);
    std::optional<SvgDocument> into;
    if (options.into) {
        auto document = read_document(*options.into, unharmed, console);
        if (const auto* problem = std::get_if<program::Problem>(&document))
            return console.report(*problem);
        into = std::move(std::get<0>(document));
    }
    const auto trace =
        open_trace(options, {options.answer, options.out, options.into.value_or(options.out)}, unharmed);
    if (const auto* problem = std::get_if<program::Problem>(&trace))
        return console.report(*problem);
    const auto paths = draw_guarded(options, std::move(std::get<0>(line)), std::get<0>(trace).get(), start,
                                    unharmed, console);
    if (const auto* problem = std::get_if<program::Problem>(&paths))
        return console.report(*problem);
    std::string nothing_drawn = "the figure has no strokes; ";
    if (into)
        nothing_drawn += "an unchanged copy of " + *options.into;
    else
        nothing_drawn += "an empty document";
    if (!into) {
        auto document = new_document(std::get<0>(paths), unharmed);
        if (const auto* problem = std::get_if<program::Problem>(&document))
            return console.report(*problem);
        into = std::move(std::get<0>(document));
    }
    return write_drawing(*into, std::get<0>(paths), options, nothing_drawn, console);
}

} // namespace vnt::host
