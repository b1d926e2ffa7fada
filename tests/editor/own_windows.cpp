// A program with windows, for the tests: own_windows [--host NAME] [--document TITLE PATH | --window TITLE |
// --dialog TITLE | --panel TITLE | --minimised]...
//
// --host:      the machine that the windows after it are said to be on
// --document:  a window that names an object path; --window: one that names none
// --dialog:    a dialog of the window before it, which keeps it from the keyboard
// --panel:     a window that stays in front of the window before it
// --minimised: makes the window before it small
// It writes the numbers of its windows in a line, once the window manager has taken them and each has had the
// keyboard in turn; then a line with each window that gets it, its own or another's.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace {

Display* display = nullptr;

Atom atom(const char* name) { return XInternAtom(display, name, False); }

std::vector<unsigned long> numbers(Window window, const char* name)
{
    Atom type = None;
    int format = 0;
    unsigned long size = 0, left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, window, atom(name), 0, 1000, False, AnyPropertyType, &type, &format, &size,
                       &left, &data);
    const void* const bytes = data;
    const auto* const first = static_cast<const unsigned long*>(bytes);
    std::vector<unsigned long> found(first, first + (data == nullptr ? 0 : size));
    if (data != nullptr)
        XFree(data);
    return found;
}

void set_bytes(Window window, const char* name, const char* type, std::string text)
{
    void* const bytes = text.data();
    XChangeProperty(display, window, atom(name), atom(type), 8, PropModeReplace,
                    static_cast<unsigned char*>(bytes), static_cast<int>(text.size()));
}

void set_number(Window window, const char* name, Atom type, unsigned long number)
{
    void* const bytes = &number;
    XChangeProperty(display, window, atom(name), type, 32, PropModeReplace,
                    static_cast<unsigned char*>(bytes), 1);
}

Window make_window(const std::string& title, const std::string& host)
{
    const Window window =
        XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 200, 100, 0, 0, 0xffffff);
    XSelectInput(display, window, PropertyChangeMask);
    XWMHints hints{};
    hints.flags = InputHint;
    hints.input = True; // it takes the keyboard
    XSetWMHints(display, window, &hints);
    set_bytes(window, "_NET_WM_NAME", "UTF8_STRING", title);
    set_bytes(window, "WM_CLIENT_MACHINE", "STRING", host);
    set_number(window, "_NET_WM_PID", XA_CARDINAL, static_cast<unsigned long>(getpid()));
    return window;
}

template <class Condition>
void wait_until(Condition condition)
{
    while (!condition()) {
        XEvent event;
        XNextEvent(display, &event);
    }
}

bool is_managed(Window window)
{
    const std::vector<unsigned long> all = numbers(DefaultRootWindow(display), "_NET_CLIENT_LIST_STACKING");
    return std::find(all.begin(), all.end(), window) != all.end();
}

Window active()
{
    const std::vector<unsigned long> found = numbers(DefaultRootWindow(display), "_NET_ACTIVE_WINDOW");
    return found.empty() ? None : found.front();
}

void activate(Window window)
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = atom("_NET_ACTIVE_WINDOW");
    event.xclient.format = 32;
    event.xclient.data.l[0] = 2;
    XSendEvent(display, DefaultRootWindow(display), False, SubstructureNotifyMask | SubstructureRedirectMask,
               &event);
}

bool is_minimised(Window window)
{
    const std::vector<unsigned long> states = numbers(window, "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), atom("_NET_WM_STATE_HIDDEN")) != states.end();
}

} // namespace

int main(int count, char** arguments)
{
    display = XOpenDisplay(nullptr);
    if (display == nullptr)
        return 1;
    XSelectInput(display, DefaultRootWindow(display), PropertyChangeMask);
    char machine[256] = {};
    gethostname(machine, sizeof machine - 1);
    std::string host = machine;
    std::vector<Window> windows;
    for (int i = 1; i < count; ++i) {
        const std::string_view option = arguments[i];
        if (option == "--host") {
            host = arguments[++i];
            continue;
        }
        if (option == "--minimised") {
            XIconifyWindow(display, windows.back(), DefaultScreen(display));
            wait_until([&] { return is_minimised(windows.back()) && active() != windows.back(); });
            continue;
        }
        const Window window = make_window(arguments[++i], host);
        if (option == "--document")
            set_bytes(window, "_GTK_WINDOW_OBJECT_PATH", "UTF8_STRING", arguments[++i]);
        if (option == "--dialog" || option == "--panel")
            XSetTransientForHint(display, window, windows.back());
        if (option == "--dialog") {
            set_number(window, "_NET_WM_WINDOW_TYPE", XA_ATOM, atom("_NET_WM_WINDOW_TYPE_DIALOG"));
            set_number(window, "_NET_WM_STATE", XA_ATOM, atom("_NET_WM_STATE_MODAL"));
        }
        XMapWindow(display, window);
        wait_until([&] { return is_managed(window); });
        activate(window);
        wait_until([&] { return active() == window; });
        windows.push_back(window);
    }
    for (const Window window : windows)
        std::printf("%lu ", window);
    std::printf("\n");
    for (Window last = None;;) {
        if (const Window now = active(); now != last && now != None) {
            std::printf("%lu\n", now);
            last = now;
        }
        std::fflush(stdout);
        XEvent event;
        XNextEvent(display, &event);
    }
}
