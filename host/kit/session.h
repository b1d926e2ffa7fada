// One document open in a host: what a plug-in sees of it, and what it makes in it.
//
// The services of host/api act on the one session that there is; they are suites.cpp and platform_services.cpp.
//
// Space:  artwork, y up, in points; view space in pixels, y down.
// When:   one session at a time. A service that is called outside of a message, or on another thread than the
//         message's, answers kHostWrongTime.
// Owner:  every handle is the session's, and ends with it.
#pragma once

#include "host/api/plugin_entry.h"
#include "host/kit/path_art.h"
#include "host/kit/result.h"
#include "host/kit/svg_grid.h"
#include "host/kit/svg_view.h"
#include "host/kit/trace.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vnt::host {

struct ShownAlert {
    std::string text;        // in bold
    std::string explanation; // below it
};

enum class Side { plugin, host };

// A call of a service that went wrong, and by whose fault.
struct WrongCall {
    Side side;
    std::string call;
    std::string why; // "has ..." or "is ...": the sentence goes on behind the call's name
};

// The callbacks run on the plug-in's thread, within its calls; an empty one is not called. They open no
// descriptor.
struct SessionSetup {
    DocumentView view;
    GridSettings grid;
    Trace* trace = nullptr; // stays the caller's; null for none
    std::function<void(const ShownAlert&)> on_alert;
    std::function<void()> on_front; // the plug-in brings the host to the front again
    std::function<void(const WrongCall&)> on_wrong_call;
};

class Session {
public:
    explicit Session(SessionSetup setup);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    // Sends a plug-in a message, and returns its answer.
    //
    // Errors: a plug-in that lets an exception out.
    Result<HostError> send(PluginEntry& entry, const char* caller, const char* selector);

    // As send, for who calls a plug-in's functions and not its entry.
    Result<HostError> during(const char* caller, const char* selector,
                             const std::function<HostError(HostMessage&)>& work);

    bool has_menu_item(std::string_view text) const;
    const std::vector<ShownAlert>& alerts() const;

    // How many paths there are; may be asked on any thread.
    std::size_t path_count() const;

    // The paths in the order in which they were made; the session has none afterwards.
    std::vector<PathArt> take_paths();

    // What people should know of the paths: strokes that were cut short. A sentence each, without an end stop.
    const std::vector<std::string>& notes() const;

    // Why the paths are not what the plug-in asked for, by this side's fault; empty when they are.
    const std::string& failure() const;

    struct State;

private:
    std::unique_ptr<State> state_;
};

} // namespace vnt::host
