// One run of the plug-in for the editor, in a process of its own.
#pragma once

#include "host/app/editor_context.h"
#include "host/app/editor_options.h"
#include "host/editor/sketch_lock.h"
#include "host/kit/result.h"

#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

struct EditorRun {
    int status = 0;   // vant-host run's
    std::string said; // on standard error; of a run that failed, what is for the user
    std::optional<KeptArt>
        art; // none: nothing was drawn. There may be some even when the run failed behind it
};

// The command that starts the sketch application when none listens: the one that was asked for, else vant-sketch when it
// is installed. Empty when there is none.
std::string launch_command(const EditorOptions& options);

// The words for a user who has no sketch application.
std::string no_sketch_application();

enum class Wanted { art, art_and_document };

// Runs the plug-in on the spool's document.svg, with art.svg as its result, and result.svg where a document is wanted.
// The art gets its mark: that of the document as it was at the start, and of the editor that it was drawn for. The
// plug-in's process has the lock as well: when this one is ended, the sketch goes on until it is sent, and the next
// start finds it.
Result<EditorRun> run_for_editor(const EditorContext& context, const EditorOptions& options,
                                 const SketchLock& lock, const Spool& spool, Wanted wanted,
                                 const std::vector<std::string>& more_arguments);

} // namespace vnt::host
