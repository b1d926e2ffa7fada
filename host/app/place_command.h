// vant-host place: art that is kept goes into a document.
#pragma once

#include "host/app/editor_options.h"
#include "tools/program/console.h"
#include "tools/program/problem.h"

namespace vnt::host {

// As the editor runs it, without -o: prints the document with the art in it. After a sketch, the art that has just come,
// when this is the document that it began in; chosen by the user, the newest art of this document, else the newest of
// all. On the command line, with -o: the same into a file; --art names another.
program::ExitStatus place_command(const EditorOptions& options, const program::Console& console);

// What is kept, a line each.
program::ExitStatus list_command(const program::Console& console);

} // namespace vnt::host
