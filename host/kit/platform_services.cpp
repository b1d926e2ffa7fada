// Windows, strings, alerts and processes over a session: what a plug-in finds by name in the program.
#include "host/api/alerts.h"
#include "host/api/processes.h"
#include "host/kit/session_state.h"
#include "host/kit/utf8.h"

#include <algorithm>
#include <cstring>
#include <map>

using vnt::host::JsonLine;
using vnt::host::ServiceCall;

namespace {

// The one process that there is in front: the host.
constexpr ProcessSerialNumber kOwnProcess{0, 1};

bool is_own(const ProcessSerialNumber& process)
{
    return process.high == kOwnProcess.high && process.low == kOwnProcess.low;
}

void write_window(JsonLine& line, WindowRef window, WindowRef known)
{
    if (window == known)
        line.text("window", known->title.utf8);
    else
        line.null("window");
}

void write_string(JsonLine& line, std::string_view name, CFStringRef string)
{
    if (string == nullptr)
        line.null(name);
    else
        line.text(name, string->utf8);
}

} // namespace

// ------------------------------------------------------------------------------------------------ windows

WindowRef ActiveNonFloatingWindow()
{
    ServiceCall call("ActiveNonFloatingWindow");
    if (!call.is_in_message()) {
        call.wrong_time();
        return nullptr;
    }
    call.done();
    return &call.state().window;
}

WindowRef GetPreviousWindow(WindowRef window)
{
    ServiceCall call("GetPreviousWindow");
    if (!call.is_in_message()) {
        call.wrong_time();
        return nullptr;
    }
    call.given([&](JsonLine& line) { write_window(line, window, &call.state().window); });
    if (window != &call.state().window)
        call.wrong(kHostBadParameter, "is about a window that there is not");
    else
        call.done();
    return nullptr; // nothing is behind the one window
}

HostError CopyWindowTitleAsCFString(WindowRef window, CFStringRef* title)
{
    ServiceCall call("CopyWindowTitleAsCFString");
    if (!call.is_in_message())
        return call.wrong_time();
    call.given([&](JsonLine& line) { write_window(line, window, &call.state().window); });
    if (window != &call.state().window)
        return call.wrong(kHostBadParameter, "is about a window that there is not");
    if (title == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    *title = &call.state().window.title;
    return call.done();
}

HostBoolean IsWindowCollapsed(WindowRef window)
{
    ServiceCall call("IsWindowCollapsed");
    if (!call.is_in_message()) {
        call.wrong_time();
        return 0;
    }
    call.given([&](JsonLine& line) { write_window(line, window, &call.state().window); });
    if (window != &call.state().window)
        call.wrong(kHostBadParameter, "is about a window that there is not");
    else
        call.done();
    return 0;
}

HostError GetWindowBounds(WindowRef window, std::uint16_t part, Rect* bounds)
{
    ServiceCall call("GetWindowBounds");
    if (!call.is_in_message())
        return call.wrong_time();
    call.given([&](JsonLine& line) {
        write_window(line, window, &call.state().window);
        line.integer("part", part);
    });
    if (window != &call.state().window)
        return call.wrong(kHostBadParameter, "is about a window that there is not");
    if (part != kWindowGlobalPortRgn)
        return call.wrong(kHostBadParameter, "asks for another part of a window than its port");
    if (bounds == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    *bounds = call.state().window.bounds;
    call.given([&](JsonLine& line) {
        line.integer("top", bounds->top)
            .integer("left", bounds->left)
            .integer("bottom", bounds->bottom)
            .integer("right", bounds->right);
    });
    return call.done();
}

// ------------------------------------------------------------------------------------------------ strings

CFIndex CFStringGetLength(CFStringRef string)
{
    ServiceCall call("CFStringGetLength");
    call.given([&](JsonLine& line) { write_string(line, "string", string); });
    if (string == nullptr) {
        call.wrong(kHostBadParameter, "has a null string");
        return 0;
    }
    const auto length = static_cast<CFIndex>(vnt::host::utf16_units(string->utf8));
    call.given([&](JsonLine& line) { line.integer("result", length); });
    call.done();
    return length;
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding)
{
    constexpr CFIndex kMostBytes = 3; // of UTF-8 for a UTF-16 unit
    ServiceCall call("CFStringGetMaximumSizeForEncoding");
    call.given([&](JsonLine& line) { line.integer("length", length); });
    if (encoding != kCFStringEncodingUTF8 || length < 0 || length > PTRDIFF_MAX / kMostBytes) {
        call.wrong(kHostBadParameter, "has an encoding or a length that this host does not know");
        return -1;
    }
    call.given([&](JsonLine& line) { line.integer("result", kMostBytes * length); });
    call.done();
    return kMostBytes * length;
}

HostBoolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding)
{
    ServiceCall call("CFStringGetCString");
    call.given([&](JsonLine& line) {
        write_string(line, "string", string);
        line.integer("size", size);
    });
    if (string == nullptr || buffer == nullptr || encoding != kCFStringEncodingUTF8) {
        call.wrong(kHostBadParameter, "has a null argument, or an encoding that this host does not know");
        return 0;
    }
    const std::string& utf8 = string->utf8;
    const bool fits = size > 0 && static_cast<std::size_t>(size) > utf8.size();
    if (fits)
        std::memcpy(buffer, utf8.c_str(), utf8.size() + 1);
    call.given([&](JsonLine& line) { line.flag("result", fits); });
    call.done();
    return fits ? 1 : 0;
}

CFStringRef HostConstantString(const char* utf8_literal)
{
    static std::map<std::string, HostString, std::less<>> strings;
    ServiceCall call("HostConstantString");
    if (utf8_literal == nullptr) {
        call.wrong(kHostBadParameter, "has a null literal");
        return nullptr;
    }
    call.given([&](JsonLine& line) { line.text("string", utf8_literal); });
    auto found = strings.find(std::string_view(utf8_literal));
    if (found == strings.end())
        found = strings.emplace(utf8_literal, HostString{utf8_literal}).first;
    call.done();
    return &found->second;
}

// ------------------------------------------------------------------------------------------------- alerts

HostError CreateStandardAlert(std::int16_t kind, CFStringRef text, CFStringRef explanation,
                              const void* parameters, DialogRef* alert)
{
    ServiceCall call("CreateStandardAlert");
    if (!call.is_in_message())
        return call.wrong_time();
    call.given([&](JsonLine& line) {
        line.integer("kind", kind);
        write_string(line, "text", text);
        write_string(line, "explanation", explanation);
    });
    if (kind != kAlertStopAlert || parameters != nullptr)
        return call.wrong(kHostBadParameter, "asks for another kind of alert than a plain stop alert");
    if (text == nullptr || alert == nullptr)
        return call.wrong(kHostBadParameter, "has no text, or nowhere to write its answer");
    return call.done_with_memory([&] {
        auto made = std::make_unique<HostAlert>(HostAlert{
            {text->utf8, explanation == nullptr ? std::string() : explanation->utf8}
        });
        *alert = call.state().alerts.emplace_back(std::move(made)).get();
    });
}

HostError RunStandardAlert(DialogRef alert, const void* filter, std::int16_t* item_hit)
{
    constexpr std::int16_t kOnlyButton = 1;
    ServiceCall call("Alert");
    if (!call.is_in_message())
        return call.wrong_time();
    auto& made = call.state().alerts;
    const auto found = std::find_if(made.begin(), made.end(),
                                    [&](const auto& candidate) { return candidate.get() == alert; });
    if (found == made.end())
        return call.wrong(kHostBadParameter, "is about an alert that there is not, or that was run already");
    if (filter != nullptr)
        return call.wrong(kHostBadParameter, "has a filter of events, of which this host has none");
    const vnt::host::ShownAlert content = std::move((*found)->content);
    made.erase(found);
    call.given(
        [&](JsonLine& line) { line.text("text", content.text).text("explanation", content.explanation); });
    if (call.state().setup.on_alert)
        call.state().setup.on_alert(content);
    if (item_hit != nullptr)
        *item_hit = kOnlyButton;
    return call.done_with_memory([&] { call.state().shown_alerts.push_back(content); });
}

// ---------------------------------------------------------------------------------------------- processes

HostError GetFrontProcess(ProcessSerialNumber* process)
{
    ServiceCall call("GetFrontProcess");
    if (!call.is_in_message())
        return call.wrong_time();
    if (process == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    *process = kOwnProcess;
    call.given([&](JsonLine& line) { line.integer("high", process->high).integer("low", process->low); });
    return call.done();
}

HostError SetFrontProcess(const ProcessSerialNumber* process)
{
    ServiceCall call("SetFrontProcess");
    if (!call.is_in_message())
        return call.wrong_time();
    if (process == nullptr)
        return call.wrong(kHostBadParameter, "has a null process");
    call.given([&](JsonLine& line) { line.integer("high", process->high).integer("low", process->low); });
    if (!is_own(*process))
        return call.wrong(kHostBadParameter, "is about a process that there is not");
    if (call.state().setup.on_front)
        call.state().setup.on_front();
    return call.done();
}

namespace vnt::host {
namespace {

template <class Function>
NamedService service(const char* name, Function* function)
{
    return {name, reinterpret_cast<void*>(function)};
}

} // namespace

const std::vector<NamedService>& named_services()
{
    static const std::vector<NamedService> services = {
        service("ActiveNonFloatingWindow", ActiveNonFloatingWindow),
        service("CFStringGetCString", CFStringGetCString),
        service("CFStringGetLength", CFStringGetLength),
        service("CFStringGetMaximumSizeForEncoding", CFStringGetMaximumSizeForEncoding),
        service("CopyWindowTitleAsCFString", CopyWindowTitleAsCFString),
        service("CreateStandardAlert", CreateStandardAlert),
        service("GetFrontProcess", GetFrontProcess),
        service("GetPreviousWindow", GetPreviousWindow),
        service("GetWindowBounds", GetWindowBounds),
        service("HostConstantString", HostConstantString),
        service("IsWindowCollapsed", IsWindowCollapsed),
        service("RunStandardAlert", RunStandardAlert),
        service("SetFrontProcess", SetFrontProcess),
    };
    return services;
}

} // namespace vnt::host
