// The running editor as the session bus shows it, its windows and actions; and the desktop's notifications.
//
// When:   never in a process that runs the plug-in's link: GIO keeps a thread of its own, which opens and
//         closes descriptors, also after this object has ended.
// Shapes: a name is one of the bus, well-known (org.inkscape.Inkscape) or unique (:1.7). The editor's object
//         has the path that its well-known name spells; below it stand the windows, window/1, window/2, ...
// Units:  every call ends within kBusLimit, however long the other side takes, but for activate().
// Errors: what nobody tells is none. The editor tells nothing while it waits for an extension. While one of
//         its dialogs is open, or a menu, or the mouse drags something, it answers, and runs actions too.
// Without GIO at build time there is no bus to connect to.
#pragma once

#include "host/kit/result.h"

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

// Far above what a busy desktop takes to answer (some milliseconds), and short enough for one who waits.
constexpr std::chrono::milliseconds kBusLimit = std::chrono::seconds(2);

enum class Activated {
    done,       // the action has ended, with all that it did
    busy,       // the editor did not answer within kBusLimit; nothing was asked of it
    unfinished, // asked, and not ended within the limit: the editor runs it to the end, or begins it yet
};

class SessionBus {
public:
    // The bus of DBUS_SESSION_BUS_ADDRESS, or without it of $XDG_RUNTIME_DIR/bus. None is started.
    static std::optional<SessionBus> connect();

    SessionBus(SessionBus&&) noexcept;
    SessionBus& operator=(SessionBus&&) noexcept;
    ~SessionBus();

    // The names whose owner is that process: the editor's well-known ones first, then other well-known ones,
    // then unique ones, of which some may answer nothing: a program may have several connections. Asks the
    // bus alone, so a busy editor is found too. Empty when there is none, or no answer.
    std::vector<std::string> names_of_process(pid_t pid) const;

    // Runs an action of the application that has name, and waits until it has ended.
    //
    // limit: how long it may take; it is not stopped then. An extension that writes to standard error takes
    // until the user has closed the dialog with its text; the document is changed after that only.
    // A problem: nobody has the name any more, there is no such action, or it is switched off.
    // The editor runs an extension on the document of the window that was active last: see front_window.h.
    Result<Activated> activate(const std::string& name, const std::string& action,
                               std::chrono::milliseconds limit) const;

    // How many document windows are open.
    std::optional<std::size_t> window_count(const std::string& name) const;

    // Whether a switch of the editor's windows (snap-global-toggle, snap-grid) is on. Each window has its
    // own. None when the windows disagree, when one does not tell, and when no window is open.
    std::optional<bool> window_state(const std::string& name, const std::string& action) const;
    // The same of one window: the object_path of front_window.h.
    std::optional<bool> window_state_of(const std::string& name, const std::string& window_path,
                                        const std::string& action) const;

    // Shows a notification of the desktop. False when nothing on it shows any.
    bool notify(const std::string& summary, const std::string& body) const;

private:
    struct Link;
    explicit SessionBus(std::unique_ptr<Link> link) noexcept;

    std::unique_ptr<Link> link_;
};

} // namespace vnt::host
