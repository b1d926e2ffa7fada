#include "host/editor/front_window.h"

#include "host/editor/x_connection.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <vector>

namespace vnt::host {
namespace {

// Many times what window managers take; a user who waits for a window does not see longer as one movement.
constexpr auto kManagerLimit = std::chrono::seconds(1);

bool is_on_wayland()
{
    const char* const display = std::getenv("WAYLAND_DISPLAY");
    return display != nullptr && *display != '\0';
}

std::string host_name()
{
    char name[HOST_NAME_MAX + 1] = {};
    return gethostname(name, HOST_NAME_MAX) == 0 ? name : "";
}

using Numbers = std::vector<std::uint32_t>;

bool has_number(const std::optional<Numbers>& numbers, std::uint32_t number)
{
    return numbers && std::find(numbers->begin(), numbers->end(), number) != numbers->end();
}

bool has_manager(const XConnection& server)
{
    return server.numbers(server.root(), "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW).has_value();
}

// A process's number means something on its own machine only.
bool is_of_process(const XConnection& server, xcb_window_t window, pid_t pid)
{
    if (server.numbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL) != Numbers{static_cast<std::uint32_t>(pid)})
        return false;
    const std::optional<std::string> machine = server.text(window, "WM_CLIENT_MACHINE", "STRING");
    return !machine || *machine == host_name();
}

bool is_plain(const XConnection& server, xcb_window_t window)
{
    const auto types = server.numbers(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM);
    return (!types || has_number(types, server.atom("_NET_WM_WINDOW_TYPE_NORMAL"))) &&
           !server.numbers(window, "WM_TRANSIENT_FOR", XCB_ATOM_WINDOW);
}

bool is_minimised(const XConnection& server, xcb_window_t window)
{
    return has_number(server.numbers(window, "_NET_WM_STATE", XCB_ATOM_ATOM),
                      server.atom("_NET_WM_STATE_HIDDEN"));
}

xcb_window_t active_window(const XConnection& server)
{
    const auto active = server.numbers(server.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW);
    return active && active->size() == 1 ? active->front() : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
}

// The process's document windows, from the bottom to the top.
std::vector<EditorWindow> document_windows(const XConnection& server, pid_t pid)
{
    std::vector<EditorWindow> named, plain;
    const auto all = server.numbers(server.root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW);
    for (const xcb_window_t window : all.value_or(Numbers())) {
        if (!is_of_process(server, window, pid))
            continue;
        EditorWindow found{window, server.text(window, "_GTK_WINDOW_OBJECT_PATH", "UTF8_STRING").value_or(""),
                           server.text(window, "_NET_WM_NAME", "UTF8_STRING").value_or("")};
        if (!found.object_path.empty())
            named.push_back(std::move(found));
        else if (is_plain(server, window))
            plain.push_back(std::move(found));
    }
    return named.empty() ? plain : named;
}

std::optional<EditorWindow> front_of(const XConnection& server, const std::vector<EditorWindow>& windows)
{
    const EditorWindow* front = nullptr;
    const xcb_window_t active = active_window(server);
    for (const EditorWindow& window : windows) {
        if (window.id == active)
            return window;
        if (front == nullptr || !is_minimised(server, window.id))
            front = &window;
    }
    return front == nullptr ? std::nullopt : std::optional(*front);
}

// Whether a window has the keyboard, or a dialog of its process that is not in front of another window.
bool is_in_front(const XConnection& server, xcb_window_t window, pid_t pid)
{
    const xcb_window_t active = active_window(server);
    if (active == window)
        return true;
    if (active == XCB_WINDOW_NONE || !is_of_process(server, active, pid) || is_plain(server, active))
        return false;
    const auto behind = server.numbers(active, "WM_TRANSIENT_FOR", XCB_ATOM_WINDOW);
    return !behind || *behind == Numbers{window} || *behind == Numbers{server.root()};
}

// Asks the window manager, and waits until it has done it, which it tells at a property of the root window.
bool activate(const XConnection& server, xcb_window_t window, pid_t pid)
{
    // On behalf of the user, as a pager does: what an application wishes for itself may be refused.
    constexpr std::uint32_t kUsersWish = 2;
    const auto deadline = std::chrono::steady_clock::now() + kManagerLimit;
    server.watch_root();
    server.tell_manager(window, "_NET_ACTIVE_WINDOW", {kUsersWish, XCB_CURRENT_TIME});
    do {
        if (is_in_front(server, window, pid))
            return true;
    } while (server.wait_for_change(deadline));
    return false;
}

Raised raise(pid_t pid, const std::uint32_t* id)
{
    const XConnection server;
    if (!has_manager(server))
        return Raised::not_possible;
    const std::vector<EditorWindow> windows = document_windows(server, pid);
    std::optional<EditorWindow> chosen;
    if (id == nullptr)
        chosen = front_of(server, windows);
    else if (const auto found = std::find_if(windows.begin(), windows.end(),
                                             [&](const EditorWindow& window) { return window.id == *id; });
             found != windows.end())
        chosen = *found;
    if (!chosen)
        return is_on_wayland() || !server.is_open() ? Raised::not_possible : Raised::no_window;
    return activate(server, chosen->id, pid) ? Raised::done : Raised::not_possible;
}

} // namespace

std::optional<EditorWindow> front_window_of(pid_t pid)
{
    const XConnection server;
    return front_of(server, document_windows(server, pid));
}

Raised raise_window_of(pid_t pid) { return raise(pid, nullptr); }

Raised raise_window_of(pid_t pid, std::uint32_t id) { return raise(pid, &id); }

} // namespace vnt::host
