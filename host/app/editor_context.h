// What the commands that work inside the editor have in common: who started them, where they keep things, and how
// they speak to the user.
//
// Everything on standard error makes the editor open a dialog, and hangs a batch run of it, which nobody dismisses. So
// standard error leads to the log, and what the user is to read goes through tell().
#pragma once

#include "host/editor/art_store.h"
#include "host/editor/descriptor.h"
#include "host/editor/editor_process.h"
#include "host/editor/kept_art.h"
#include "host/editor/log_file.h"
#include "host/editor/user_folders.h"
#include "host/kit/result.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vnt::host {

class EditorContext {
public:
    // Finds the editor that reads our standard output, makes this user's folders, and leads standard error to the log.
    //
    // Errors: no folder to keep things in. As there is no log then, the user has been told; in a batch run nobody has.
    static Result<std::unique_ptr<EditorContext>> enter();

    // For a process that the editor does not read any more: what it says goes to the log alone. Without an editor when
    // there is none of that name (editor_name) any more.
    static Result<std::unique_ptr<EditorContext>> enter_detached(const std::string& editor);

    const UserFolders& folders() const { return folders_; }
    const LogFile& log() const { return log_; }
    const ArtStore& art() const { return art_; }
    const std::optional<EditorProcess>& editor() const { return editor_; }

    // Nobody reads a dialog.
    bool is_batch() const { return editor_ && editor_->is_batch; }

    // The user reads this in the editor's dialog, or on the terminal; in a batch run it is in the log alone.
    void tell(const std::string& text) const;

    // The document's file as the editor names it; empty when it was never saved.
    static std::string document_path();

    std::string lock_path() const { return folders_.runtime + "/sketch.lock"; }

    // A new folder for the work of one sketch, and whether a folder is such a one.
    Result<std::string> make_spool() const;
    bool is_spool(const std::string& folder) const;

    // Keeps the art of processes that were ended before they could, and takes their folders away.
    //
    // When: with the lock of a sketch, which all of them have held to their end.
    void take_in_strays() const;

private:
    EditorContext(UserFolders folders, std::optional<EditorProcess> editor);

    UserFolders folders_;
    LogFile log_;
    ArtStore art_;
    std::optional<EditorProcess> editor_;
    Descriptor voice_; // standard error as it was
};

// The folder and all that is in it, taken away at the end; but not while it holds the only copy of a sketch.
class Spool {
public:
    explicit Spool(std::string folder) : folder_(std::move(folder)) {}
    Spool(const Spool&) = delete;
    Spool& operator=(const Spool&) = delete;
    ~Spool();

    std::string file(const char* name) const { return folder_ + "/" + name; }
    std::string art() const { return file("art.svg"); }

    // The sketch, if there is one, is somewhere else as well, and not here any more.
    void art_is_safe() const;

private:
    std::string folder_;
};

// The texts of a run of this program, for people: without the program's name in front of each line.
std::string without_program_name(const std::string& said);
// Whether this program says so of what it does, and not in a note, nor another program on the same standard error.
bool is_own_line(std::string_view line);

} // namespace vnt::host
