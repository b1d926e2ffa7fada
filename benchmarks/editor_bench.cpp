// How long the editor is busy with our commands, beside extensions that do nothing.
#include "benchmarks/support.h"
#include "host/editor/front_window.h"
#include "host/editor/session_bus.h"
#include "tests/editor/real/editor.h"
#include "tests/editor/real/sketch_application.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace real_editor_test;
using vnt::host::Activated;
using vnt::host::SessionBus;

constexpr const char* kName = "org.inkscape.Inkscape";
constexpr const char* kNothing = "<vant></vant>"; // was drawn
constexpr const char* kLine =
    "<vant><shape><line><start x=\"30.0\" y=\"-30.0\" z=\"0.0\"/><end x=\"90.0\" y=\"-60.0\" "
    "z=\"0.0\"/></line></shape></vant>";

// An extension of the test's own: its action is org.vant.NAME.noprefs.
void add_extension(const Desktop& desktop, const std::string& name, const std::string& script)
{
    const std::string folder = "profile/extensions/vant/";
    desktop.file(folder + name + ".inx",
                 R"(<?xml version="1.0" encoding="UTF-8"?>
<inkscape-extension xmlns="http://www.inkscape.org/namespace/inkscape/extension">
  <name>)" + name + R"(</name>
  <id>org.vant.)" + name +
                     R"(</id>
  <effect needs-live-preview="false" implements-custom-gui="true">
    <object-type>all</object-type>
    <effects-menu><submenu name="View Utilities"/></effects-menu>
  </effect>
  <script><command location="inx">)" +
                     name + R"(</command></script>
</inkscape-extension>
)");
    desktop.add_program(folder + name, script);
}

std::string drawing_of(int paths)
{
    std::string text =
        R"(<svg id="root" xmlns="http://www.w3.org/2000/svg" width="600" height="400">)"
        R"(<sodipodi:namedview xmlns:sodipodi="http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd" id="view"/>)";
    for (int i = 0; i < paths; ++i)
        text += "<path id=\"p" + std::to_string(i) + "\" style=\"fill:none;stroke:#808080\" d=\"M " +
                std::to_string(i % 60 * 10) + "," + std::to_string(i / 60 * 4) + " h 8 v 2\"/>\n";
    return text + "</svg>\n";
}

// One editor with one document, as a person has it.
class Stage {
public:
    explicit Stage(int paths)
    {
        add_extension(desktop_, "empty", "exit 0");
        add_extension(desktop_, "same", "for file; do :; done\nexec /bin/cat \"$file\"");
        editor_.emplace(desktop_, std::vector<std::string>{desktop_.file("one.svg", drawing_of(paths))});
        window_ = editor_->window_of("one.svg");
        // This program's own connections to the same bus and server.
        for (const std::string& entry : desktop_.environment()) {
            const std::string name = entry.substr(0, entry.find('='));
            if (name == "DBUS_SESSION_BUS_ADDRESS" || name == "DISPLAY")
                setenv(name.c_str(), entry.substr(name.size() + 1).c_str(), 1);
        }
        bus_ = SessionBus::connect();
        if (!bus_)
            throw std::runtime_error("the build has no GIO");
    }

    // From the action's begin until the editor can be used again.
    double seconds_of(const std::string& extension)
    {
        const auto begin = std::chrono::steady_clock::now();
        const auto activated = bus_->activate(kName, "org.vant." + extension + ".noprefs", kLimit);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        if (!std::holds_alternative<Activated>(activated) ||
            std::get<Activated>(activated) != Activated::done)
            throw std::runtime_error("the editor did not run " + extension);
        return taken.count();
    }

    double seconds_of_start()
    {
        const double seconds = seconds_of("start");
        application_.take_request();
        application_.send(kNothing);
        desktop_.wait_for_the_sketch_to_end();
        return seconds;
    }

    // From the action's begin until the editor shows what it has got, and can be used again.
    double seconds_of_same()
    {
        return seconds_until_changed([this] { seconds_of("same"); });
    }

    // From the last byte of the figure until the editor shows what it has got, and can be used again.
    double seconds_of_arrival()
    {
        seconds_of("start");
        application_.take_request();
        const double seconds = seconds_until_changed([this] { application_.send(kLine); });
        desktop_.wait_for_the_sketch_to_end();
        return seconds;
    }

    // The document as it was, and saved.
    void undo() { editor_->run_document_action(1, "undo"); }
    void save()
    {
        editor_->run_window_action(window_, "document-save");
        wait_for_title(false);
    }

private:
    template <class Cause>
    double seconds_until_changed(Cause cause) const
    {
        const auto begin = std::chrono::steady_clock::now();
        cause();
        wait_for_title(true);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        return taken.count();
    }

    // A changed document has an asterisk in its window's title, once the editor has time to say so.
    void wait_for_title(bool is_changed) const
    {
        const auto end = std::chrono::steady_clock::now() + kLimit;
        for (;;) {
            const auto window = vnt::host::front_window_of(editor_->pid());
            if (window && window->title.starts_with("*") == is_changed)
                return;
            if (std::chrono::steady_clock::now() > end)
                throw std::runtime_error("the editor's window does not tell of a change");
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    Desktop desktop_;
    SketchApplication application_;
    std::optional<Editor> editor_;
    EditorWindow window_;
    std::optional<SessionBus> bus_;
};

struct Plan {
    std::vector<int> sizes; // paths in the document
    int samples;
};

Plan plan_of(bench::Effort effort)
{
    switch (effort) {
    case bench::Effort::smoke: return {{10}, 1};
    case bench::Effort::quick: return {{100}, 5};
    case bench::Effort::full: break;
    }
    return {
        {10, 1000, 5000},
        11
    };
}

void measure(int paths, int samples, bench::Table& table)
{
    constexpr double kMostOfArrival = 1.5;
    constexpr double kMostOfStart = 1.3;
    Stage stage(paths);
    std::vector<double> empty, start, same, arrival;
    for (int i = -1; i < samples; ++i) { // in turn, so that all see the same machine; once for nothing
        const double of_empty = stage.seconds_of("empty");
        const double of_start = stage.seconds_of_start();
        const double of_same = stage.seconds_of_same();
        stage.save();
        const double of_arrival = stage.seconds_of_arrival();
        stage.undo();
        if (i < 0)
            continue;
        empty.push_back(of_empty);
        start.push_back(of_start);
        same.push_back(of_same);
        arrival.push_back(of_arrival);
    }
    const auto ms = [](const std::vector<double>& seconds) {
        return bench::fixed(bench::median(seconds) * 1e3, 1);
    };
    table.add({std::to_string(paths) + " paths", ms(empty), ms(start),
               bench::at_most(bench::median(start) / bench::median(empty), kMostOfStart), ms(same),
               ms(arrival), bench::at_most(bench::median(arrival) / bench::median(same), kMostOfArrival)});
}

void run(int argc, char** argv)
{
    const bench::Effort effort =
        bench::start(argc, argv, "Runs our commands in a real editor, on a desktop of its own.");
    std::cout << "## In the editor\n\n";
    if (const std::string missing = Desktop::missing(); !missing.empty()) {
        std::cout << "Not measured: " << missing << ".\n";
        return;
    }
    const Plan plan = plan_of(effort);
    bench::Table table({"document", "an empty extension, ms", "Start VANT, ms", "times that",
                        "an extension that returns the document, ms", "the figure's arrival, ms",
                        "times that"});
    for (const int paths : plan.sizes) {
        std::cerr << paths << " paths: " << plan.samples << " samples\n";
        measure(paths, plan.samples, table);
    }
    std::cout
        << "Start VANT beside an extension that does nothing (a script of one line): from the action's begin "
           "until the editor\ncan be used again. The figure's arrival, from the sketch application's last "
           "byte "
           "until the editor shows that its\ndocument has changed, beside an extension that returns the "
           "document as it is (`cat`), from the action's begin until the\nsame. In turn in one running "
           "editor, "
           "medians of "
        << plan.samples << ".\n\n"
        << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
