// The editor that started this program, found as the process that reads what it writes.
//
// Shapes: the editor starts an extension through a process that ends at once, so the parent says nothing of it. Its
//         end of the pipe does, also when several editors run.
// Errors: what cannot be seen is not there: other users' processes, and all of them where there is no /proc.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vnt::host {

struct EditorProcess {
    pid_t pid = 0;
    bool is_batch = false; // it works through its command line and ends: nobody reads a dialog
    std::string command;   // its command line, with blanks between the words
    // In ticks since the machine started; tells a process from a later one of its number.
    std::uint64_t start_time = 0;
};

// The process of this user that can read from the pipe on descriptor; this one is passed over. Of several (a child
// has a copy of all that its parent had open) the one that started first.
std::optional<EditorProcess> find_editor(int descriptor);

// A process by its number; none when there is none, or it has ended and waits to be taken note of.
std::optional<EditorProcess> look_at_process(pid_t pid);

// What no other process is called while the machine runs: "4711-123456", the number and the start.
std::string editor_name(const EditorProcess& process);

// Whether a process may be called so.
bool is_editor_name(std::string_view name);

// The process that has this name; none when it has ended, or nothing is called so.
std::optional<EditorProcess> find_named_editor(const std::string& name);

// Whether this very process still runs.
bool is_running(const EditorProcess& process);

// Whether a command line, each word with a 0 behind it, is that of a batch run: has the option --batch-process. The
// editor takes no shorter form of it.
bool is_batch_command(std::string_view words);

} // namespace vnt::host
