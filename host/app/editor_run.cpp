#include "host/app/editor_run.h"

#include "host/app/own_program.h"
#include "host/kit/link_watch.h"
#include "host/kit/listening_port.h"
#include "host/kit/svg_document.h"
#include "tools/program/whole_file.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <utility>

namespace vnt::host {
namespace {

constexpr const char* kSketchApplication = "vant-sketch";

bool is_program(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) && access(file.c_str(), X_OK) == 0;
}

// Beside this program, else on the search path. Empty when it is nowhere.
std::string find_sketch_application()
{
    const std::filesystem::path beside =
        std::filesystem::path(own_program()).replace_filename(kSketchApplication);
    if (is_program(beside))
        return beside.string();
    const char* const path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        const std::filesystem::path file = std::filesystem::path(folder) / kSketchApplication;
        if (is_program(file))
            return file.string();
    }
    return {};
}

// For a shell.
std::string quoted(const std::string& word)
{
    std::string text = "'";
    for (const char c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

// What is to be known of the document as it is at the start.
struct Start {
    double sheet_rotation = 0;
    DocumentMark mark;
};

// Nothing of a document that cannot be read: vant-host run says what is wrong with it.
Start look_at_start(const EditorContext& context, const Spool& spool)
{
    std::string bytes;
    if (program::read_whole_file(spool.file("document.svg"), bytes))
        return {};
    const Result<SvgDocument> read = SvgDocument::read("the document", std::move(bytes));
    if (std::holds_alternative<Problem>(read))
        return {};
    const auto& document = std::get<SvgDocument>(read);
    Start start{document.view().sheet_rotation,
                mark_of(document, EditorContext::document_path(),
                        context.editor() ? editor_name(*context.editor()) : std::string())};
    keep_some_ids(start.mark);
    return start;
}

// What tells the sketch application how the editor's sheet is turned: the view that the plug-in tells never is.
std::string rotation_option(double rotation)
{
    if (rotation == 0)
        return {};
    std::array<char, 32> digits;
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), rotation).ptr;
    return " --sheet-rotation " + std::string(static_cast<const char*>(digits.data()), end);
}

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

std::string launch_command(const EditorOptions& options)
{
    if (options.launch)
        return *options.launch;
    const std::string found = find_sketch_application();
    return found.empty() ? found : quoted(found);
}

std::string no_sketch_application()
{
    return "There is no sketch application: none listens on 127.0.0.1:4910, and vant-sketch is not "
           "installed. "
           "Install the package vant-sketch, or start your sketch application, and choose Start VANT again.";
}

Result<EditorRun> run_for_editor(const EditorContext& context, const EditorOptions& options,
                                 const SketchLock& lock, const Spool& spool, Wanted wanted,
                                 const std::vector<std::string>& more_arguments)
{
    EditorRun run;
    const std::string launch = launch_command(options);
    if (launch.empty() && listening_on(kSketchPort) == Listening::no) {
        run.status = program::kAlert;
        run.said = no_sketch_application();
        return run;
    }
    const Start start = look_at_start(context, spool);
    spool.write_start(start.mark);
    std::vector<std::string> arguments = {"run", spool.file("document.svg"), "--art", spool.art()};
    if (wanted == Wanted::art_and_document)
        arguments.insert(arguments.end(), {"-o", spool.file("result.svg")});
    // A command of the user's own is left as it is: what options it knows is not known here.
    if (!launch.empty())
        arguments.insert(
            arguments.end(),
            {"--launch", options.launch ? launch : launch + rotation_option(start.sheet_rotation)});
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
    if (run.art)
        run.art->document = start.mark;
    return run;
}

} // namespace vnt::host
