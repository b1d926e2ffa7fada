// A connection to the X server, for looking at the windows of other programs.
//
// Errors: what is asked of a window that is closed, or of a server that has gone away, has no answer. A
//         server that stops answering holds the caller up.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vnt::host {

class XConnection {
public:
    XConnection(); // to the server of DISPLAY

    // Whether there is a server, and it has not gone away yet.
    bool is_open() const;

    xcb_window_t root() const { return root_; }

    // 0 when there is no answer; no property and no type has that number.
    xcb_atom_t atom(const std::string& name) const;

    // A property of a window; none when it has none of that type.
    std::optional<std::vector<std::uint32_t>> numbers(xcb_window_t window, const std::string& name,
                                                      xcb_atom_t type) const;
    std::optional<std::string> text(xcb_window_t window, const std::string& name,
                                    const std::string& type) const;

    // Sends the root window a message about a window, for the window manager.
    void tell_manager(xcb_window_t window, const std::string& message,
                      const std::vector<std::uint32_t>& data) const;

    // From now on the root window's changes are watched.
    void watch_root() const;
    // Waits until one has come since the last call. False when none comes in time, or the server goes.
    bool wait_for_change(std::chrono::steady_clock::time_point deadline) const;

private:
    struct Close {
        void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
    };
    std::optional<std::string> property(xcb_window_t window, const std::string& name, xcb_atom_t type,
                                        int format) const;

    std::unique_ptr<xcb_connection_t, Close> connection_; // null without a DISPLAY
    xcb_window_t root_ = XCB_WINDOW_NONE;
};

} // namespace vnt::host
