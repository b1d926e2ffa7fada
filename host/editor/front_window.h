// The editor's document windows on an X11 desktop: which one the user was in last, and bringing one forward.
//
// When:   not in a process that runs the plug-in's link: a connection to the X server is a descriptor.
// Shapes: a document window is a top-level window of the process on this machine that names an object path
//         of the editor, or, where none does, any that is neither a dialog nor transient for another.
// Errors: an X server that goes away in between is as one that was not there. One that stops answering holds
//         the caller up.
// Without libxcb at build time no window is found and nothing is possible.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vnt::host {

struct EditorWindow {
    std::uint32_t id = 0; // the X server's
    // On the session bus, as /org/inkscape/Inkscape/window/1; empty when it tells none.
    std::string object_path;
    std::string title;
};

// The document window that has the keyboard; else, of those that are not minimised, the topmost one, which
// the user was in last on most desktops; else a minimised one. An extension runs on that window's document.
std::optional<EditorWindow> front_window_of(pid_t pid);

enum class Raised {
    done, // the window, or a dialog of its process in front of it, has the keyboard
    no_window,
    // No X11 desktop, or a window manager that did not do it within a second; also no such window where
    // WAYLAND_DISPLAY is set: what is no X11 window cannot be seen from outside there.
    not_possible,
};

// Brings the window that front_window_of() tells to the front, also a minimised one, and waits until it is
// there. What the editor is asked to do then, it does in that window.
Raised raise_window_of(pid_t pid);
// The same for a document window of that process with an id, as remembered from front_window_of(); no_window
// when it is closed.
Raised raise_window_of(pid_t pid, std::uint32_t id);

} // namespace vnt::host
