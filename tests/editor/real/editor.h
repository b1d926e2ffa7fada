// The real editor on a desktop, as a person uses it: by its windows, its menu and its dialogs. What a person would see
// at a glance is asked over the session bus, and read in what the editor saves.
//
// Errors: as process.h.
#pragma once

#include "tests/editor/real/desktop.h"

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

namespace real_editor_test {

struct EditorWindow {
    std::string id; // the X server's
    std::string title;
    std::string object_path; // on the bus; empty for what is no document window
};

class Editor {
public:
    // Opens documents, a window for each, and waits until they can be worked on.
    //
    // tag: what is behind its name on the bus, with which several editors run at once.
    Editor(const Desktop& desktop, const std::vector<std::string>& documents, const std::string& tag = "");

    pid_t pid() const { return process_->pid(); }
    // As a person does who has saved everything.
    void quit();

    // Of the application, as "undo" in a document or "document-save" in a window: in the active one.
    // parameter: in GVariant's text form; empty for none.
    void run_application_action(const std::string& action, const std::string& parameter = "") const;
    void run_window_action(const EditorWindow& window, const std::string& action) const;
    void run_document_action(int number, const std::string& action) const;
    bool window_state(const EditorWindow& window, const std::string& action) const;
    // Whether it answers on the bus, within two seconds.
    bool answers() const;

    // The window of a document, by its file's name.
    EditorWindow window_of(const std::string& document) const;
    void bring_to_front(const EditorWindow& window) const;
    // Whether the window that has the keyboard is one of this editor's.
    bool is_in_front() const;

    // In the menu Extensions > View Utilities, with the keyboard, in the window that has it.
    void choose_start() const { choose({"Down", "Return"}); }
    void choose_place() const { choose({"Return"}); }
    void choose_last() const { choose({"Up", "Return"}); }
    // Draws a rectangle with the mouse, in the middle of the window.
    void draw_rectangle(const EditorWindow& window) const;

    std::vector<EditorWindow> dialogs() const;
    // Waits for a dialog, takes the text in it, and closes it with its button.
    std::string read_dialog() const;

    // The document of the window that was active last, as the editor writes it: unlike saving it, this leaves the steps
    // that can be undone alone.
    std::string drawing() const;
    // Saves the document of a window, if it has changed, and what is in its file then.
    std::string save(const EditorWindow& window, const std::string& file) const;

private:
    void choose(const std::vector<std::string>& last_keys) const;
    std::string call(const std::string& object, const std::string& method,
                     const std::vector<std::string>& arguments) const;
    std::vector<EditorWindow> windows(const std::string& type) const;
    void press(const std::vector<std::string>& keys) const;

    const Desktop& desktop_;
    std::string name_; // on the bus
    std::string object_;
    std::unique_ptr<Process> process_;
};

} // namespace real_editor_test
