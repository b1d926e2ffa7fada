#include "host/app/editor_run.h"

#include "host/app/options.h"
#include "host/app/own_program.h"
#include "host/app/sketch_application.h"
#include "host/kit/link_watch.h"
#include "host/kit/listening_port.h"
#include "tools/program/whole_file.h"

#include <filesystem>
#include <sstream>
#include <utility>

namespace vnt::host {
namespace {

constexpr const char* kNoSketchApplication =
    "There is no sketch application: none listens on 127.0.0.1:4910, and vant-sketch is not installed. "
    "Install the package vant-sketch, or start your sketch application, and choose Start VANT again.";

// Empty when nothing was drawn.
Result<std::optional<KeptArt>> read_art(const std::string& file)
{
    std::error_code missing;
    if (!std::filesystem::exists(file, missing))
        return std::optional<KeptArt>();
    std::string bytes;
    if (const std::error_code error = program::read_whole_file(file, bytes))
        return Problem{"cannot read " + file + ": " + error.message() + "; try again"};
    Result<KeptArt> art = read_kept_art(file, std::move(bytes));
    if (const auto* problem = std::get_if<Problem>(&art))
        return *problem;
    return std::optional<KeptArt>(std::get<KeptArt>(std::move(art)));
}

void replace_all(std::string& text, const std::string& what, const std::string& by)
{
    for (std::size_t at = text.find(what); at != text.npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

// Of what a run says when it fails its own last line is for the user, without the names of our own files; the rest is for
// the log. Behind it may stand what a sketch application says that it has started.
std::string reason_for_user(const EditorContext& context, const Spool& spool, const std::string& said,
                            int status)
{
    std::string reason;
    std::string rest;
    std::istringstream lines(said);
    for (std::string line; std::getline(lines, line);) {
        if (is_own_line(line))
            line.swap(reason);
        if (!line.empty())
            rest += line + "\n";
    }
    if (!rest.empty())
        context.log().add(without_program_name(rest));
    reason = without_program_name(reason);
    if (reason.empty())
        return "Start VANT failed: the process of the plug-in ended with status " + std::to_string(status) +
               "; the drawing is as it was; try again";
    for (const char* const made : {"result.svg", "art.svg"})
        replace_all(reason, spool.file(made) + " was not made", "the drawing is as it was");
    replace_all(reason, spool.file("document.svg"), "the drawing");
    if (context.is_batch())
        replace_all(reason, "--timeout", "VANT_TIMEOUT");
    return reason;
}

} // namespace

Result<EditorRun> run_for_editor(const EditorContext& context, const EditorOptions& options,
                                 const SketchLock& lock, const Spool& spool, Wanted wanted,
                                 const std::vector<std::string>& more_arguments)
{
    EditorRun run;
    if (!options.launch && !sketch_application_command() && listening_on(kSketchPort) == Listening::no) {
        run.status = program::kAlert;
        run.said = kNoSketchApplication;
        return run;
    }
    const std::string editor = context.editor() ? editor_name(*context.editor()) : kNoEditor;
    std::vector<std::string> arguments = {"run", spool.file("document.svg"), "--art", spool.art(), "--editor",
                                          editor};
    if (wanted == Wanted::art_and_document)
        arguments.insert(arguments.end(), {"-o", spool.file("result.svg")});
    if (options.launch)
        arguments.insert(arguments.end(), {"--launch", *options.launch});
    if (options.plugin)
        arguments.insert(arguments.end(), {"--plugin", *options.plugin});
    arguments.insert(arguments.end(), more_arguments.begin(), more_arguments.end());
    Result<Finished> finished = run_own_program(arguments, spool.file("messages"), lock.descriptor());
    if (const auto* problem = std::get_if<Problem>(&finished))
        return *problem;
    run.status = std::get<Finished>(finished).status;
    const std::string& said = std::get<Finished>(finished).said;
    run.said = run.status == program::kDone ? without_program_name(said)
                                            : reason_for_user(context, spool, said, run.status);
    Result<std::optional<KeptArt>> art = read_art(spool.art());
    if (const auto* problem = std::get_if<Problem>(&art))
        return *problem;
    run.art = std::get<0>(std::move(art));
    return run;
}

} // namespace vnt::host
