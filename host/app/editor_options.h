// The command lines of what works inside the editor: extension, place, agent, install and uninstall.
//
// Errors: what cannot be meant is a Problem of wrong usage; nothing is printed here.
#pragma once

#include "tools/program/problem.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

enum class EditorCommand { help, extension, place, list, agent, install, uninstall };

// Fields of another command than the chosen one are as they are here.
struct EditorOptions {
    EditorCommand command = EditorCommand::help;
    std::string subject; // of help

    std::string document;                            // extension, place: the document as the editor gives it
    bool wait = false;                               // extension: the editor is to wait for the figure
    std::optional<std::chrono::nanoseconds> timeout; // extension: of the wait
    std::optional<std::string> launch;
    std::optional<std::string> plugin;

    std::optional<std::string> out; // place: without it the editor is asking, and reads standard output
    std::optional<std::string> art;

    std::string spool;  // agent: the folder of its work
    int lock = -1;      // the descriptor that holds the lock
    std::string editor; // its name, as of editor_name

    bool user = false; // install, uninstall
};

// command: "extension", "place", "agent", "install" or "uninstall"; arguments: those behind it.
//
// Of the editor's own options (--id=OBJECT and --selected-nodes=ID:SUBPATH:NODE, one for each object or node that is
// selected) nothing is used.
program::Result<EditorOptions> read_editor_options(const std::string& command,
                                                   const std::vector<std::string>& arguments);

} // namespace vnt::host
