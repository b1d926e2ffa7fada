#include "host/app/extension_command.h"

#include "host/app/editor_context.h"
#include "host/app/editor_run.h"
#include "host/app/own_program.h"
#include "host/app/sketch_application.h"
#include "host/app/standard_output.h"
#include "host/editor/bus_address.h"
#include "host/editor/sketch_lock.h"
#include "tools/program/whole_file.h"

#include <array>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace vnt::host {
namespace {

using program::ExitStatus;
using program::kFailed;

// Far more than a program needs that answers by itself, for which batch runs are. VANT_TIMEOUT is another time.
constexpr const char* kBatchSeconds = "600";

bool has_session_bus()
{
    return session_bus_address(std::getenv("DBUS_SESSION_BUS_ADDRESS"), std::getenv("XDG_RUNTIME_DIR"))
        .has_value();
}

ExitStatus fail(const EditorContext& context, const std::string& text)
{
    context.tell(text);
    return kFailed;
}

// A sketch that goes on already: brings it to the front, where it can be, and says so.
ExitStatus point_to_the_running_one(const EditorContext& context, const EditorOptions& options)
{
    const std::optional<LockHolder> holder = SketchLock::holder(context.lock_path());
    const std::string document =
        holder && !holder->document.empty() ? " for " + holder->document : std::string();
    // It leads its own session, so that the plug-in's process ends with it.
    const std::string way_out =
        holder && holder->pid > 0
            ? " If it does not answer any more, this ends it: kill -- -" + std::to_string(holder->pid)
            : std::string();
    // A second start of the sketch application brings its window up.
    const std::optional<std::string> launch = options.launch ? options.launch : sketch_application_command();
    if (launch && !context.is_batch()) [[maybe_unused]]
        const int status = std::system(("(" + *launch + ") </dev/null >/dev/null 2>&1 &").c_str());
    return fail(context, "A sketch is going on in VANT already" + document +
                             ". Finish it there with Send, or cancel it, and choose Start VANT again." +
                             way_out);
}

// Tells once of each art that waits to be placed.
void offer_kept_art(const EditorContext& context)
{
    const std::vector<std::string> kept = context.art().ids();
    const std::string note = context.folders().data + "/offered";
    std::string offered;
    if (kept.empty() || (!program::read_whole_file(note, offered) && kept.back() <= offered))
        return;
    if (program::write_whole_file(note, kept.back()))
        context.log().add("cannot write " + note);
    context.tell("A sketch that could not be placed is kept (" + context.art().path_of(kept.back()) +
                 "). Extensions > View Utilities > Place VANT sketch puts it into the current layer.");
}

ExitStatus start_agent(const EditorContext& context, const EditorOptions& options, SketchLock& lock)
{
    const Result<std::string> folder = context.make_spool();
    if (const auto* problem = std::get_if<Problem>(&folder))
        return fail(context, "Start VANT failed: " + problem->sentence);
    const std::string& spool = std::get<std::string>(folder);
    std::error_code error;
    std::filesystem::copy_file(options.document, spool + "/document.svg", error);
    if (error) {
        const Spool unused(spool);
        return fail(context, "Start VANT failed: cannot copy " + options.document + ": " + error.message());
    }
    std::vector<std::string> arguments = {"agent", spool, "--lock", std::to_string(lock.descriptor())};
    if (context.editor())
        arguments.insert(arguments.end(), {"--editor", editor_name(*context.editor())});
    if (options.launch)
        arguments.insert(arguments.end(), {"--launch", *options.launch});
    if (options.plugin)
        arguments.insert(arguments.end(), {"--plugin", *options.plugin});
    const Result<pid_t> agent = start_own_program(arguments, lock.descriptor());
    if (const auto* problem = std::get_if<Problem>(&agent)) {
        const Spool unused(spool);
        return fail(context, "Start VANT failed: " + problem->sentence);
    }
    return program::kDone;
}

// Where it cannot be kept, it stays where it is, and the user is told where that is.
bool try_keep(const EditorContext& context, const Spool& spool, const KeptArt& art)
{
    const Result<std::string> kept = context.art().keep(art);
    if (const auto* problem = std::get_if<Problem>(&kept)) {
        context.tell("The sketch could not be placed: " + problem->sentence + ". It is in " + spool.art() +
                     ".");
        return false;
    }
    spool.art_is_safe();
    return true;
}

// Keeps the art first: whatever becomes of the output, nothing is lost.
ExitStatus print_result(const EditorContext& context, const Spool& spool, const KeptArt& art)
{
    if (!try_keep(context, spool, art))
        return kFailed;
    std::string document;
    if (const std::error_code error = program::read_whole_file(spool.file("result.svg"), document))
        return fail(context, "Start VANT failed: cannot read its result: " + error.message());
    if (!try_print_document(document))
        return fail(context,
                    "Start VANT failed: the editor did not take the document. The sketch is kept: choose "
                    "Extensions > View Utilities > Place VANT sketch.");
    if (const auto problem = context.art().mark_placed(art.id))
        context.log().add(problem->sentence);
    return program::kDone;
}

std::string text_of(double number)
{
    std::array<char, 32> digits;
    char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed, 9).ptr;
    return {digits.data(), end};
}

// Nobody is there to end a batch run, so it ends by itself.
std::vector<std::string> limit_of(const EditorContext& context, const EditorOptions& options)
{
    if (options.timeout) {
        const std::chrono::duration<double> seconds = *options.timeout;
        return {"--timeout", text_of(seconds.count())};
    }
    if (!context.is_batch())
        return {};
    const char* const set = std::getenv("VANT_TIMEOUT");
    if (set == nullptr || *set == '\0')
        return {"--timeout", kBatchSeconds};
    const auto read = read_editor_options("extension", {"-", std::string("--timeout=") + set});
    if (std::holds_alternative<EditorOptions>(read))
        return {"--timeout", set};
    context.log().add(std::string("VANT_TIMEOUT is no number of seconds: ") + set + "; waiting " +
                      kBatchSeconds);
    return {"--timeout", kBatchSeconds};
}

ExitStatus run_and_wait(const EditorContext& context, const EditorOptions& options, const SketchLock& lock)
{
    const Result<std::string> folder = context.make_spool();
    if (const auto* problem = std::get_if<Problem>(&folder))
        return fail(context, "Start VANT failed: " + problem->sentence);
    const Spool spool(std::get<std::string>(folder));
    std::error_code error;
    std::filesystem::copy_file(options.document, spool.file("document.svg"), error);
    if (error)
        return fail(context, "Start VANT failed: cannot copy " + options.document + ": " + error.message());
    const Result<EditorRun> ran =
        run_for_editor(context, options, lock, spool, Wanted::art_and_document, limit_of(context, options));
    if (const auto* problem = std::get_if<Problem>(&ran))
        return fail(context, "Start VANT failed: " + problem->sentence);
    const auto& run = std::get<EditorRun>(ran);
    if (run.status != program::kDone) {
        context.tell(run.said);
        if (run.art && try_keep(context, spool, *run.art))
            context.tell("The sketch is kept: Extensions > View Utilities > Place VANT sketch places it.");
        return static_cast<ExitStatus>(run.status);
    }
    if (!run.said.empty())
        context.log().add(run.said);
    if (!run.art) {
        context.log().add("nothing was drawn");
        return program::kDone;
    }
    return print_result(context, spool, *run.art);
}

} // namespace

ExitStatus extension_command(const EditorOptions& options)
{
    const auto entered = EditorContext::enter();
    if (std::holds_alternative<Problem>(entered))
        return kFailed;
    const EditorContext& context = *std::get<0>(entered);
    Result<std::optional<SketchLock>> lock = SketchLock::try_lock(context.lock_path());
    if (const auto* problem = std::get_if<Problem>(&lock))
        return fail(context, "Start VANT failed: " + problem->sentence);
    auto& held = std::get<std::optional<SketchLock>>(lock);
    if (!held)
        return point_to_the_running_one(context, options);
    held->sign(EditorContext::document_path());
    context.take_in_strays();
    if (options.wait || context.is_batch() || !context.editor() || !has_session_bus())
        return run_and_wait(context, options, *held);
    offer_kept_art(context);
    return start_agent(context, options, *held);
}

} // namespace vnt::host
