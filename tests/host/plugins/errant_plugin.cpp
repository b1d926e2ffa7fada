// A plug-in that does something wrong when its menu item is chosen: what the variable ERRANT_DEED names.
#include "host/api/alerts.h"
#include "host/api/art_suite.h"
#include "host/api/document_view_suite.h"
#include "host/api/grid_suite.h"
#include "host/api/layer_suite.h"
#include "host/api/menu_suite.h"
#include "host/api/path_suite.h"
#include "host/api/plugin_entry.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>

AIUnicodeStringSuite* sAIUnicodeString = nullptr;

namespace {

template <class Suite>
const Suite& acquire(HostMessage& message, const char* name, std::int32_t version)
{
    const void* suite = nullptr;
    if (message.basic->AcquireSuite(name, version, &suite) != kHostNoError)
        throw std::runtime_error(std::string("no ") + name);
    return *static_cast<const Suite*>(suite);
}

HostError add_menu_item(HostMessage& message)
{
    sAIUnicodeString = const_cast<AIUnicodeStringSuite*>(
        &acquire<AIUnicodeStringSuite>(message, kAIUnicodeStringSuiteName, kAIUnicodeStringSuiteVersion));
    const AIPlatformAddMenuItemDataUS data{"View Utilities", ai::UnicodeString("Start VANT", 10)};
    AIMenuItemHandle item = nullptr;
    return acquire<AIMenuSuite>(message, kAIMenuSuiteName, kAIMenuSuiteVersion)
        .AddMenuItem(message.plugin, "VANT", &data, 0, &item);
}

HostError new_path(HostMessage& message, AIArtHandle& path)
{
    const auto& art = acquire<AIArtSuite>(message, kAIArtSuiteName, kAIArtSuiteVersion);
    AILayerHandle layer = nullptr;
    acquire<AILayerSuite>(message, kAILayerSuiteName, kAILayerSuiteVersion).GetCurrentLayer(&layer);
    AIArtHandle group = nullptr;
    art.GetFirstArtOfLayer(layer, &group);
    return art.NewArt(kPathArt, kPlaceInsideOnTop, group, &path);
}

HostError set_segment(HostMessage& message, AIArtHandle path, std::int16_t number, float h)
{
    const AIPathSegment segment{
        {h, 0},
        {h, 0},
        {h, 0},
        1
    };
    return acquire<AIPathSuite>(message, kAIPathSuiteName, kAIPathSuiteVersion)
        .SetPathSegments(path, number, 1, &segment);
}

const AIGridSuite& grid_suite(HostMessage& message)
{
    return acquire<AIGridSuite>(message, kAIGridSuiteName, kAIGridSuiteVersion);
}

void call_on_another_thread(HostMessage& message)
{
    const AIGridSuite& grid = grid_suite(message);
    std::thread([&] { grid.IsShown(nullptr); }).join();
}

HostError skip_a_segment(HostMessage& message)
{
    AIArtHandle path = nullptr;
    new_path(message, path);
    set_segment(message, path, 0, 0);
    set_segment(message, path, 1, 75);
    set_segment(message, path, 3, 99);
    return kHostNoError;
}

HostError run_an_alert_twice()
{
    DialogRef alert = nullptr;
    CreateStandardAlert(kAlertStopAlert, CFSTR("Ink"), CFSTR("None left"), nullptr, &alert);
    RunStandardAlert(alert, nullptr, nullptr);
    RunStandardAlert(alert, nullptr, nullptr);
    return kHostNoError;
}

HostError make_endless_art(HostMessage& message)
{
    for (;;) {
        AIArtHandle path = nullptr;
        HostError error = new_path(message, path);
        for (int i = 0; i < 10000 && error == kHostNoError; ++i)
            error = set_segment(message, path, static_cast<std::int16_t>(i), 0);
        if (error != kHostNoError)
            return error;
    }
}

HostError crash()
{
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
    return kHostNoError;
}

int fall_endlessly(int depth)
{
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : fall_endlessly(depth + 1) + room[0];
}

HostError do_deed(const std::string& deed, HostMessage& message)
{
    if (deed == "ask about a null view")
        grid_suite(message).IsShown(nullptr);
    else if (deed == "ask for an unknown suite")
        acquire<AIGridSuite>(message, "AI Mood Suite", 1);
    else if (deed == "add a menu item late")
        add_menu_item(message);
    else if (deed == "skip a segment")
        skip_a_segment(message);
    else if (deed == "run an alert twice")
        run_an_alert_twice();
    else if (deed == "call on another thread")
        call_on_another_thread(message);
    else if (deed == "make endless art")
        return make_endless_art(message);
    else if (deed == "throw an exception")
        throw std::runtime_error("no ink");
    else if (deed == "throw a number")
        throw 7;
    else if (deed == "crash")
        return crash();
    else if (deed == "abort")
        std::abort();
    else if (deed == "fall endlessly")
        return fall_endlessly(0);
    return kHostNoError;
}

bool is(const char* one, const char* other) { return std::strcmp(one, other) == 0; }

} // namespace

extern "C" HostError PluginMain(const char* caller, const char* selector, HostMessage* message)
{
    const char* const deed = std::getenv("ERRANT_DEED");
    if (is(caller, kInterfaceCaller) && is(selector, kStartupSelector))
        return is(deed, "add no menu item") ? kHostNoError : add_menu_item(*message);
    if (is(caller, kMenuCaller) && is(selector, kGoSelector))
        return do_deed(deed, *message);
    return kHostNoError;
}
