// What a session holds, for the services that act on it.
#pragma once

#include "host/api/strings.h"
#include "host/api/windows.h"
#include "host/kit/json_line.h"
#include "host/kit/session.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

// The structures behind the handles.

struct HostView {};
struct HostLayer {};
struct HostPlugin {};

struct HostString {
    std::string utf8;
};

struct HostWindow {
    HostString title;
    Rect bounds;
};

struct HostArt {
    std::size_t number; // of a path, from 0
    vnt::host::PathArt segments;
    bool is_cut_short = false; // a segment was refused
};

struct HostAlert {
    vnt::host::ShownAlert content;
};

struct HostMenuItem {
    std::string key;
    std::string group;
    std::string text;
};

struct HostTextBody {
    std::string bytes;
};

namespace vnt::host {

struct Session::State {
    explicit State(SessionSetup given);

    // Null for art that is no path, or that there is not.
    HostArt* find_path(AIArtHandle art);

    SessionSetup setup;
    HostWindow window;
    HostView view;
    HostLayer layer;
    HostArt group{};
    HostPlugin plugin;
    std::deque<HostArt> paths;
    std::unordered_set<const HostArt*> known_paths;
    std::atomic<std::size_t> path_count{0};
    std::deque<HostMenuItem> menu_items;
    std::vector<std::unique_ptr<HostAlert>> alerts; // made and not yet run
    std::unordered_set<const HostTextBody*> texts;  // made and not yet given back
    std::vector<ShownAlert> shown_alerts;
    std::vector<std::string> notes;
    std::string failure;

    // The message that is being answered; null between messages.
    const char* caller = nullptr;
    const char* selector = nullptr;
    std::thread::id thread;
};

// The session that there is, or null.
Session::State* session_state();

SPBasicSuite& basic_suite();

// The services that a plug-in finds by their names: the program that loads it has to export them.
struct NamedService {
    const char* name;
    void* address;
};
const std::vector<NamedService>& named_services();

// One call of a service: from here to its done() or wrong() it is one line of the trace.
class ServiceCall {
public:
    explicit ServiceCall(const char* name) : name_(name), state_(session_state())
    {
        if (is_traced())
            line_.text("call", name);
    }

    // Whether there is a session that answers a message, on this thread. Else end with wrong_time().
    bool is_in_message() const;
    Session::State& state() { return *state_; }

    // Writes what the call was given: write gets a JsonLine, and is not called without a trace.
    template <class Write>
    ServiceCall& given(Write write)
    {
        if (is_traced())
            write(line_);
        return *this;
    }

    HostError done(HostError error = kHostNoError);

    // The plug-in erred. why goes on behind the call's name: "has a null view".
    HostError wrong(HostError error, const char* why);
    HostError wrong_time() { return wrong(kHostWrongTime, "came outside of a message to the plug-in"); }

    // Does what needs memory; without it the host has erred.
    template <class Work>
    HostError done_with_memory(Work work)
    {
        try {
            work();
        } catch (const std::bad_alloc&) {
            return out_of_memory();
        }
        return done();
    }

private:
    bool is_traced() const { return is_in_message() && state_->setup.trace != nullptr; }
    HostError out_of_memory();
    void report(Side side, const char* why);
    void write_line(HostError error);

    const char* name_;
    Session::State* state_;
    JsonLine line_;
};

} // namespace vnt::host
