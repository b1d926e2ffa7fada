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

enum class Wanted { art, art_and_document };

// Runs the plug-in on the spool's document.svg, with art.svg as its result, and result.svg where a document is wanted.
// The plug-in's process has the lock as well: when this one is ended, the sketch goes on until it is sent, and the next
// start finds it, with all that is to be known of its document.
Result<EditorRun> run_for_editor(const EditorContext& context, const EditorOptions& options,
                                 const SketchLock& lock, const Spool& spool, Wanted wanted,
                                 const std::vector<std::string>& more_arguments);

} // namespace vnt::host
