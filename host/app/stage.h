// What the commands of vant-host have in common: a session with its trace and guard, and the document that is
// written at the end.
#pragma once

#include "host/app/options.h"
#include "host/kit/session.h"
#include "host/kit/svg_document.h"
#include "tools/program/console.h"
#include "tools/program/problem.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace vnt::host {

// Reads an SVG document; tells on the console how it was understood.
program::Result<SvgDocument> read_document(const std::string& file, const std::string& unharmed,
                                           const program::Console& console);

// A problem of the host kit, with what is unharmed in front of its last clause, which says what to do.
program::Problem in_words(const Problem& problem, const std::string& unharmed);

// Looks whether the file of an option can be written, before somebody draws for it.
std::optional<program::Problem> find_obstacle(const std::string& out, const char* option,
                                              const std::string& unharmed);

// What to do about a file that could not be written.
std::string remedy_for(const std::error_code& error, const char* option);

// The clause that says that nothing has happened to a file of -o yet.
std::string unharmed_clause(const std::string& out);

// Says on standard output what was done. That nobody takes it there changes nothing about that.
program::ExitStatus tell_done(const program::Console& console, const std::string& text);

// A file's name from / on, as the editor names its documents.
std::string absolute_path(const std::string& file);

// Whether two names lead to one file, which need not be there yet.
bool is_same_file(const std::string& one, const std::string& other);

// The trace that was asked for, or null. A trace must not be a file that the command reads or writes.
program::Result<std::unique_ptr<Trace>>
open_trace(const Options& options, const std::vector<std::string>& other_files, const std::string& unharmed);

// A session's setup that tells of alerts on the console, and ends the process at a wrong call when --strict says so.
SessionSetup make_setup(const Options& options, DocumentView view, const GridSettings& grid, Trace* trace,
                        const std::string& unharmed, const program::Console& console);

// What must not have happened while the plug-in ran: a host that could not do what it was asked, or a trace with
// an end missing.
std::optional<program::Problem> find_failure(const Session& session, const Trace* trace,
                                             const std::string& unharmed);

// Writes the document with the paths in it, and tells what became of them.
//
// nothing_drawn: the sentence for a figure that has no paths, behind the file's name.
program::ExitStatus write_drawing(const SvgDocument& document, const std::vector<PathArt>& paths,
                                  const Options& options, const std::string& nothing_drawn,
                                  const program::Console& console);

std::optional<std::chrono::steady_clock::time_point> deadline_of(const Options& options,
                                                                 std::chrono::steady_clock::time_point start);

} // namespace vnt::host
