#include "host/app/agent_command.h"

#include "host/app/editor_context.h"
#include "host/app/editor_run.h"
#include "host/editor/front_window.h"
#include "host/editor/session_bus.h"
#include "host/editor/sketch_lock.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vnt::host {
namespace {

using program::ExitStatus;
using program::kFailed;

constexpr const char* kPlaceAction = "org.vant.place.noprefs";
constexpr const char* kHowToPlace =
    "Extensions > View Utilities > Place VANT sketch puts it into a document.";
// The editor saves the document, runs the extension and merges the result: minutes for a very large one.
constexpr std::chrono::minutes kPlaceLimit{10};

class Agent {
public:
    Agent(const EditorContext& context, const EditorOptions& options, const SketchLock& lock,
          const Spool& spool)
        : context_(context), options_(options), lock_(lock), spool_(spool), bus_(SessionBus::connect())
    {
    }

    ExitStatus work()
    {
        const Result<EditorRun> ran =
            run_for_editor(context_, options_, lock_, spool_, Wanted::art, live_arguments());
        if (const auto* problem = std::get_if<Problem>(&ran))
            return give_up("Start VANT failed: " + problem->sentence, kFailed);
        const auto& run = std::get<EditorRun>(ran);
        if (run.status != program::kDone && !run.art)
            return give_up(run.said, static_cast<ExitStatus>(run.status));
        if (!run.said.empty())
            context_.log().add(run.said);
        if (!run.art) {
            context_.log().add("nothing was drawn");
            bring_editor_to_front();
            return program::kDone;
        }
        return deliver(*run.art);
    }

private:
    // The editor's name on the bus; empty when it is not there.
    std::string editor_on_bus() const
    {
        if (!bus_ || !context_.editor() || !is_running(*context_.editor()))
            return {};
        const std::vector<std::string> names = bus_->names_of_process(context_.editor()->pid);
        return names.empty() ? std::string() : names.front();
    }

    // What the document does not say: whether the window of the sketch snaps to its grid.
    std::vector<std::string> live_arguments() const
    {
        const std::string name = editor_on_bus();
        if (name.empty())
            return {};
        const std::optional<EditorWindow> window = front_window_of(context_.editor()->pid);
        const auto is_off = [&](const char* action) {
            const std::optional<bool> state = window && !window->object_path.empty()
                                                  ? bus_->window_state_of(name, window->object_path, action)
                                                  : bus_->window_state(name, action);
            return state && !*state;
        };
        if (is_off("snap-global-toggle") || is_off("snap-grid"))
            return {"--no-grid"};
        return {};
    }

    ExitStatus deliver(const KeptArt& art)
    {
        const Result<std::string> kept = context_.art().keep(art);
        if (const auto* problem = std::get_if<Problem>(&kept))
            return give_up("The sketch could not be kept: " + problem->sentence + ". It is in " +
                               spool_.art() + ".",
                           kFailed);
        spool_.art_is_safe();
        context_.log().add("kept " + std::get<std::string>(kept));
        if (!try_run_place({art.id, 0, "", false})) {
            notify("The sketch is kept",
                   std::string("The editor of the sketch could not be reached. ") + kHowToPlace);
            return kFailed;
        }
        bring_editor_to_front();
        const std::vector<std::string> waiting = context_.art().ids();
        const bool is_placed = std::find(waiting.begin(), waiting.end(), art.id) == waiting.end();
        return is_placed ? program::kDone : kFailed; // the extension has told the user why
    }

    // Whether the editor has run the extension to its end.
    bool try_run_place(Pending pending)
    {
        const std::string name = editor_on_bus();
        if (name.empty()) {
            context_.log().add("the editor is not on the session bus any more");
            return false;
        }
        pending.editor_pid = context_.editor()->pid;
        pending.only_window = bus_->window_count(name) == 1U;
        if (const auto problem = context_.art().write_pending(pending)) {
            context_.log().add(problem->sentence);
            return false;
        }
        const Result<Activated> activated = activate_when_free(name);
        if (std::holds_alternative<Activated>(activated) && std::get<Activated>(activated) == Activated::done)
            return !context_.art().remove_pending(); // the extension takes the note, if it runs at all
        if (const auto* problem = std::get_if<Problem>(&activated))
            context_.log().add(problem->sentence);
        else if (std::get<Activated>(activated) == Activated::unfinished)
            return true; // it runs on; what it says, it says itself
        context_.art().remove_pending();
        return false;
    }

    // An editor that runs another extension does not answer until that has ended; nothing is asked of it before.
    Result<Activated> activate_when_free(const std::string& name) const
    {
        const auto give_up = std::chrono::steady_clock::now() + kPlaceLimit;
        for (;;) {
            Result<Activated> activated = bus_->activate(name, kPlaceAction, kPlaceLimit);
            const auto* const answer = std::get_if<Activated>(&activated);
            if (answer == nullptr || *answer != Activated::busy || std::chrono::steady_clock::now() > give_up)
                return activated;
        }
    }

    // Says what went wrong in the editor's own dialog, else as a notification.
    ExitStatus give_up(const std::string& text, ExitStatus status)
    {
        context_.log().add(text);
        if (!try_run_place({"", 0, text, false}))
            notify("VANT", text);
        return status;
    }

    void bring_editor_to_front() const
    {
        if (!context_.editor() || !is_running(*context_.editor()))
            return;
        if (raise_window_of(context_.editor()->pid) == Raised::not_possible)
            notify("VANT", "The sketch is in the editor.");
    }

    void notify(const std::string& summary, const std::string& body) const
    {
        context_.log().add(summary + ": " + body);
        if (bus_ && !bus_->notify(summary, body))
            context_.log().add("nothing on this desktop shows notifications");
    }

    const EditorContext& context_;
    const EditorOptions& options_;
    const SketchLock& lock_;
    const Spool& spool_;
    std::optional<SessionBus> bus_;
};

} // namespace

ExitStatus agent_command(const EditorOptions& options)
{
    const auto entered = EditorContext::enter_detached(options.editor);
    if (std::holds_alternative<Problem>(entered))
        return kFailed;
    const EditorContext& context = *std::get<0>(entered);
    const std::optional<SketchLock> lock = SketchLock::adopt(options.lock, context.lock_path());
    if (!lock) {
        context.log().add("the agent was started without the lock of a sketch");
        return kFailed;
    }
    lock->set_inherited(false);
    if (!context.is_spool(options.spool)) {
        context.log().add("the agent was started without a folder of a sketch");
        return kFailed;
    }
    const Spool spool(options.spool);
    lock->sign(EditorContext::document_path());
    return Agent(context, options, *lock, spool).work();
}

} // namespace vnt::host
