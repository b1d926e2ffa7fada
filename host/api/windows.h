// The windows of the host, front to back.
//
// Space:  global screen coordinates, y down, origin at the main screen's top left corner.
// Units:  pixels.
#pragma once

#include "host/api/strings.h"
#include "host/api/types.h"

using WindowRef = struct HostWindow*;

struct Rect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};

// A window's port: its content without its frame.
constexpr std::uint16_t kWindowGlobalPortRgn = 40;

extern "C" {

// The frontmost window that is no palette, or null.
//
// When:   in any message.
// Owner:  the host; valid until the window is closed, which no message of a plug-in does.
// Errors: none.
WindowRef ActiveNonFloatingWindow();

// The window behind a window, or null. When, Owner, Errors: as ActiveNonFloatingWindow; null for null.
WindowRef GetPreviousWindow(WindowRef window);

// A window's title.
//
// When:   in any message.
// Owner:  the host, which keeps the title as long as the window; nobody gives it back.
// Errors: kHostBadParameter.
HostError CopyWindowTitleAsCFString(WindowRef window, CFStringRef* title);

// Not 0 when the window is collapsed.
//
// When:   in any message.
// Errors: none; 0 for null.
HostBoolean IsWindowCollapsed(WindowRef window);

// The rectangle of a part of a window.
//
// When:   in any message.
// Errors: kHostBadParameter (also for a part that the host does not know).
HostError GetWindowBounds(WindowRef window, std::uint16_t part, Rect* bounds);
}
