#include "tests/editor/real/editor.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace real_editor_test {
namespace {

constexpr const char* kNormal = "_NET_WM_WINDOW_TYPE_NORMAL";
constexpr const char* kDialog = "_NET_WM_WINDOW_TYPE_DIALOG";
constexpr const char* kMenu = "_MENU"; // of the menu bar, or within a menu

std::vector<std::string> lines_of(const std::string& text)
{
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// What stands between the quotation marks of a line NAME(TYPE) = "value"; empty when it has none.
std::string quoted_value(const std::string& line)
{
    const std::size_t begin = line.find('"');
    const std::size_t end = line.rfind('"');
    return begin == line.npos || end == begin ? std::string() : line.substr(begin + 1, end - begin - 1);
}

} // namespace

Editor::Editor(const Desktop& desktop, const std::vector<std::string>& documents, const std::string& tag)
    : desktop_(desktop), name_("org.inkscape.Inkscape" + (tag.empty() ? tag : "." + tag)),
      object_("/org/inkscape/Inkscape" + (tag.empty() ? tag : "/" + tag))
{
    std::vector<std::string> words{"inkscape"};
    if (!tag.empty())
        words.push_back("--app-id-tag=" + tag);
    words.insert(words.end(), documents.begin(), documents.end());
    process_ = desktop_.start(words, "editor" + tag);
    wait_until("the editor's windows", [&] { return windows(kNormal).size() == documents.size(); });
    wait_until("the editor on the bus", [&] { return answers(); });
    for (const std::string& document : documents)
        bring_to_front(window_of(document));
}

void Editor::quit()
{
    run_application_action("quit");
    // Now and then it crashes while it ends, and shows a dialog that says so: it has ended then for all that matters here.
    try {
        process_->end(std::chrono::seconds(20));
    } catch (const std::runtime_error&) {
        process_->send_signal(SIGKILL);
        process_->end();
    }
}

std::string Editor::call(const std::string& object, const std::string& method,
                         const std::vector<std::string>& arguments) const
{
    std::vector<std::string> words{"gdbus",
                                   "call",
                                   "--session",
                                   "--timeout",
                                   "40",
                                   "--dest",
                                   name_,
                                   "--object-path",
                                   object,
                                   "--method",
                                   "org.gtk.Actions." + method};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const Ended ended = desktop_.run(words);
    if (ended.status != 0)
        throw std::runtime_error("the editor did not do " + arguments.front());
    return ended.output;
}

void Editor::run_application_action(const std::string& action, const std::string& parameter) const
{
    call(object_, "Activate", {action, parameter.empty() ? "[]" : "[<" + parameter + ">]", "{}"});
}

void Editor::run_window_action(const EditorWindow& window, const std::string& action) const
{
    call(window.object_path, "Activate", {action, "[]", "{}"});
}

void Editor::run_document_action(int number, const std::string& action) const
{
    call(object_ + "/document/" + std::to_string(number), "Activate", {action, "[]", "{}"});
}

bool Editor::window_state(const EditorWindow& window, const std::string& action) const
{
    return call(window.object_path, "Describe", {action}).find("<true>") != std::string::npos;
}

bool Editor::answers() const
{
    return desktop_
               .run({"gdbus", "call", "--session", "--timeout", "2", "--dest", name_, "--object-path",
                     object_, "--method", "org.gtk.Actions.Describe", "org.vant.start"})
               .status == 0;
}

std::vector<EditorWindow> Editor::windows(const std::string& type) const
{
    const Ended found =
        desktop_.run({"xdotool", "search", "--onlyvisible", "--pid", std::to_string(pid()), "--name", ""});
    std::vector<EditorWindow> windows;
    for (const std::string& id : lines_of(found.output)) {
        const Ended described = desktop_.run(
            {"xprop", "-id", id, "_NET_WM_WINDOW_TYPE", "_NET_WM_NAME", "_GTK_WINDOW_OBJECT_PATH"});
        const std::vector<std::string> lines = lines_of(described.output);
        if (described.status == 0 && lines.size() == 3 && lines[0].find(type) != std::string::npos)
            windows.push_back({id, quoted_value(lines[1]), quoted_value(lines[2])});
    }
    return windows;
}

EditorWindow Editor::window_of(const std::string& document) const
{
    const std::string name = std::filesystem::path(document).filename().string();
    std::optional<EditorWindow> found;
    wait_until("the window of " + name, [&] {
        for (const EditorWindow& window : windows(kNormal)) {
            if (window.title.find(name + " - ") != std::string::npos)
                found = window;
        }
        return found.has_value();
    });
    return *found;
}

void Editor::bring_to_front(const EditorWindow& window) const
{
    desktop_.run({"xdotool", "windowactivate", window.id});
    wait_until("the keyboard in " + window.title, [&] {
        return desktop_.run({"xdotool", "getactivewindow"}).output == window.id + "\n" &&
               desktop_.run({"xdotool", "getwindowfocus"}).output == window.id + "\n";
    });
}

bool Editor::is_in_front() const
{
    return desktop_.run({"xdotool", "getactivewindow", "getwindowpid"}).output ==
           std::to_string(pid()) + "\n";
}

void Editor::press(const std::vector<std::string>& keys) const
{
    std::vector<std::string> words{"xdotool", "key"};
    words.insert(words.end(), keys.begin(), keys.end());
    desktop_.run(words);
}

void Editor::choose(const std::vector<std::string>& last_keys) const
{
    const auto wait_for_menus = [this](std::size_t count) {
        wait_until("menu " + std::to_string(count), [&] { return windows(kMenu).size() == count; });
    };
    press({"alt+n"});
    wait_for_menus(1);
    // From the top item round to the bottom, and up to the submenu.
    press({"Up", "Up", "Up", "Up", "Right"});
    wait_for_menus(2);
    press(last_keys);
}

void Editor::draw_rectangle(const EditorWindow& window) const
{
    constexpr const char* kFrom[] = {"600", "400"};
    constexpr const char* kTo[] = {"700", "470"};
    bring_to_front(window);
    press({"r"});
    desktop_.run({"xdotool",  "mousemove", "--window", window.id, kFrom[0],  kFrom[1], "mousedown",
                  "1",        "mousemove", "--window", window.id, "650",     "440",    "mousemove",
                  "--window", window.id,   kTo[0],     kTo[1],    "mouseup", "1"});
}

std::vector<EditorWindow> Editor::dialogs() const { return windows(kDialog); }

std::string Editor::read_dialog() const
{
    wait_until("a dialog", [this] { return dialogs().size() == 1; });
    const EditorWindow dialog = dialogs().front();
    bring_to_front(dialog);
    std::string text;
    wait_until("the dialog's text", [&] {
        press({"ctrl+a"});
        const Ended selection =
            desktop_.run({"xclip", "-o", "-selection", "primary"}, std::chrono::seconds(10));
        text = selection.output;
        return selection.status == 0 && !text.empty();
    });
    press({"Tab", "Return"});
    wait_until("the dialog's end", [this] { return dialogs().empty(); });
    return text;
}

std::string Editor::drawing() const
{
    const std::string file = desktop_.path("drawing" + name_ + ".svg");
    run_application_action("export-filename", "'" + file + "'");
    run_application_action("export-do");
    return support::content_of(file);
}

std::string Editor::save(const EditorWindow& window, const std::string& file) const
{
    run_window_action(window, "document-save");
    return support::content_of(file);
}

} // namespace real_editor_test
