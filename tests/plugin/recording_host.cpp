#include "tests/plugin/recording_host.h"

#include "host/api/alerts.h"
#include "host/api/art_suite.h"
#include "host/api/blocks_suite.h"
#include "host/api/document_suite.h"
#include "host/api/grid_suite.h"
#include "host/api/layer_suite.h"
#include "host/api/processes.h"
#include "tests/support/descriptors.h"

#include <cstring>
#include <new>
#include <sstream>
#include <stdexcept>

struct HostView {};
struct HostLayer {};
struct HostMenuItem {};
struct HostPlugin {};
struct HostAlert {
    RecordedAlert content;
};
struct HostTextBody {
    std::string bytes;
};

namespace plugin_tests {
namespace {

RecordingHost* current = nullptr;

RecordingHost& host()
{
    if (current == nullptr)
        throw std::logic_error("a service was called without a host");
    return *current;
}

HostView the_view;
HostLayer the_layer;
HostArt the_group{"group", {}};
HostMenuItem the_item;
HostPlugin the_plugin;
constexpr ProcessSerialNumber kFrontProcess{7, 9};

template <class... Parts>
std::string line_of(const Parts&... parts)
{
    std::ostringstream line;
    (line << ... << parts);
    return line.str();
}

std::string name_of(const HostWindow* window) { return window == nullptr ? "null" : window->name; }
std::string name_of(const HostString* string)
{
    return string == nullptr ? "null" : "'" + string->utf8 + "'";
}
std::string name_of(const HostArt* art) { return art == nullptr ? "null" : art->name; }

template <class Handle>
std::string name_of(Handle handle, const void* the_one, const char* name)
{
    return handle == nullptr ? "null" : handle == the_one ? name : "unknown";
}

// --------------------------------------------------------------------------------------------- the suites

HostError get_page_tiling(HostBoolean* shown)
{
    host().write("GetShowPageTiling");
    if (const HostError error = host().outcome("GetShowPageTiling"))
        return error;
    *shown = host().page_tiling ? 1 : 0;
    return host().page_tiling_code;
}

HostError get_view(std::int32_t number, AIDocumentViewHandle* view)
{
    host().write(line_of("GetNthDocumentView ", number));
    if (const HostError error = host().outcome("GetNthDocumentView"))
        return error;
    *view = &the_view;
    return kHostNoError;
}

HostError view_to_artwork(AIDocumentViewHandle view, const AIPoint* from, AIRealPoint* to)
{
    host().write(
        line_of("ViewPointToArtworkPoint ", name_of(view, &the_view, "view"), ' ', from->h, ',', from->v));
    if (const HostError error = host().outcome("ViewPointToArtworkPoint"))
        return error;
    const float scale = host().points_per_pixel;
    const AIRealPoint right = host().pixel_right.value_or(AIRealPoint{scale, 0});
    const AIRealPoint down = host().pixel_down.value_or(AIRealPoint{0, -scale});
    to->h = host().origin_h + right.h * from->h + down.h * from->v;
    to->v = host().origin_v + right.v * from->h + down.v * from->v;
    return kHostNoError;
}

AIDocumentViewSuite the_document_view_suite{{}, get_page_tiling, get_view, view_to_artwork};

HostError get_grid(HostGridSettings* settings)
{
    host().write("GridSettings");
    if (const HostError error = host().outcome("GridSettings"))
        return error;
    settings->spacing = host().grid_spacing;
    settings->subdivisions = host().grid_subdivisions;
    return kHostNoError;
}

HostBoolean is_grid_shown(AIDocumentViewHandle view)
{
    host().write("IsGridShown " + name_of(view, &the_view, "view"));
    return host().outcome("IsGridShown") == 0 && host().grid_shown ? 1 : 0;
}

HostBoolean is_snapped_to_grid(AIDocumentViewHandle view)
{
    host().write("IsSnappedToGrid " + name_of(view, &the_view, "view"));
    return host().outcome("IsSnappedToGrid") == 0 && host().grid_snaps ? 1 : 0;
}

AIGridSuite the_grid_suite{get_grid, {}, is_grid_shown, is_snapped_to_grid};

HostError get_layer(AILayerHandle* layer)
{
    host().write("GetCurrentLayer");
    if (const HostError error = host().outcome("GetCurrentLayer"))
        return error;
    *layer = &the_layer;
    return kHostNoError;
}

AILayerSuite the_layer_suite{get_layer};

HostError get_first_art(AILayerHandle layer, AIArtHandle* group)
{
    host().write("GetFirstArtOfLayer " + name_of(layer, &the_layer, "layer"));
    if (const HostError error = host().outcome("GetFirstArtOfLayer"))
        return error;
    *group = &the_group;
    return kHostNoError;
}

HostError new_art(std::int16_t kind, std::int16_t place, AIArtHandle relative_to, AIArtHandle* art)
{
    host().write(line_of("NewArt ", kind, ' ', place, ' ', name_of(relative_to)));
    if (const HostError error = host().outcome("NewArt"))
        return error;
    *art = &host().paths.emplace_back(HostArt{line_of("path", host().paths.size()), {}});
    return kHostNoError;
}

AIArtSuite the_art_suite{get_first_art, new_art};

HostError set_segments(AIArtHandle path, std::int16_t number, std::int16_t count,
                       const AIPathSegment* segments)
{
    host().write(
        line_of("SetPathSegments ", name_of(path), ' ', number, ' ', count, ' ', text_of(*segments)));
    if (const HostError error = host().outcome("SetPathSegments"))
        return error;
    if (path == nullptr || count != 1)
        return kHostBadParameter;
    if (number < 0 || static_cast<std::size_t>(number) > path->segments.size())
        return kHostOutOfRange;
    if (static_cast<std::size_t>(number) == path->segments.size())
        path->segments.emplace_back();
    path->segments[static_cast<std::size_t>(number)] = *segments;
    return kHostNoError;
}

AIPathSuite the_path_suite{set_segments};
AIDocumentSuite the_document_suite{};
SPBlocksSuite the_blocks_suite{};

HostError add_menu_item(HostPluginReference plugin, const char* key, const AIPlatformAddMenuItemDataUS* data,
                        std::int32_t options, AIMenuItemHandle* item)
{
    const std::string text = data->text.get() == nullptr ? "null" : data->text.get()->bytes;
    host().write(line_of("AddMenuItem ", name_of(plugin, &the_plugin, "plugin"), ' ', key, " '", data->group,
                         "' '", text, "' ", options));
    if (const HostError error = host().outcome("AddMenuItem"))
        return error;
    host().menu_items.push_back(text);
    *item = &the_item;
    return kHostNoError;
}

AIMenuSuite the_menu_suite{add_menu_item};

HostError make_text(const char* bytes, std::int32_t size, std::int32_t encoding, HostText* text)
{
    const std::string content(bytes, static_cast<std::size_t>(size));
    host().write(line_of("MakeText '", content, "' ", encoding));
    if (const HostError error = host().outcome("MakeText"))
        return error;
    *text = new HostTextBody{content};
    ++host().texts_alive;
    return kHostNoError;
}

HostError release_text(HostText text)
{
    host().write("ReleaseText '" + text->bytes + "'");
    --host().texts_alive;
    delete text;
    return kHostNoError;
}

AIUnicodeStringSuite the_unicode_string_suite{make_text, release_text};

struct Offered {
    const char* name;
    std::int32_t version;
    const void* table;
};

const Offered kSuites[] = {
    {kAIDocumentViewSuiteName,  kAIDocumentViewSuiteVersion,  &the_document_view_suite },
    {kAIGridSuiteName,          kAIGridSuiteVersion,          &the_grid_suite          },
    {kAIArtSuiteName,           kAIArtSuiteVersion,           &the_art_suite           },
    {kAIPathSuiteName,          kAIPathSuiteVersion,          &the_path_suite          },
    {kAILayerSuiteName,         kAILayerSuiteVersion,         &the_layer_suite         },
    {kAIDocumentSuiteName,      kAIDocumentSuiteVersion,      &the_document_suite      },
    {kAIMenuSuiteName,          kAIMenuSuiteVersion,          &the_menu_suite          },
    {kAIUnicodeStringSuiteName, kAIUnicodeStringSuiteVersion, &the_unicode_string_suite},
    {kSPBlocksSuiteName,        kSPBlocksSuiteVersion,        &the_blocks_suite        },
};

HostError acquire_suite(const char* name, std::int32_t version, const void** suite)
{
    host().write(line_of("AcquireSuite ", name, ' ', version));
    if (const HostError error = host().outcome(line_of("AcquireSuite ", name)))
        return error;
    if (host().null_suites.count(name) > 0) {
        *suite = nullptr;
        return kHostNoError;
    }
    for (const Offered& offered : kSuites) {
        if (host().missing_suites.count(name) == 0 && std::strcmp(offered.name, name) == 0 &&
            offered.version == version) {
            *suite = offered.table;
            return kHostNoError;
        }
    }
    return kHostNoSuite;
}

HostBoolean is_equal(const char* one, const char* other)
{
    host().comparisons.push_back(line_of(one, " = ", other));
    return std::strcmp(one, other) == 0 ? 1 : 0;
}

SPBasicSuite the_basic_suite{acquire_suite, is_equal};

// UTF-16 units of a UTF-8 string: one for each character, two for those of four bytes.
CFIndex utf16_units(const std::string& utf8)
{
    CFIndex units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0xF0)
            units += 2;
        else if (byte < 0x80 || byte >= 0xC0)
            units += 1;
    }
    return units;
}

} // namespace

RecordingHost::RecordingHost() { current = this; }
RecordingHost::~RecordingHost() { current = nullptr; }

HostMessage RecordingHost::message() { return {&the_plugin, &the_basic_suite}; }

HostWindow& RecordingHost::open_artwork(Rect bounds)
{
    return windows.emplace_front(HostWindow{"artwork", {"Artwork"}, true, false, bounds});
}

void RecordingHost::write(const std::string& line) { calls.push_back(line); }

HostError RecordingHost::outcome(const std::string& name)
{
    const int call = ++counts[name];
    const auto found = faults.find(name);
    if (found == faults.end() || (found->second.at_call != 0 && found->second.at_call != call))
        return kHostNoError;
    if (found->second.throws)
        throw std::bad_alloc();
    return found->second.code;
}

const AIDocumentViewSuite& document_view_table() { return the_document_view_suite; }
AIMenuItemHandle menu_item_handle() { return &the_item; }

std::string text_of(float number)
{
    std::ostringstream text;
    text.precision(9);
    text << number;
    return text.str();
}

std::string text_of(const AIRealPoint& point) { return text_of(point.h) + "," + text_of(point.v); }

std::string text_of(const AIPathSegment& segment)
{
    return "p=" + text_of(segment.p) + " in=" + text_of(segment.in) + " out=" + text_of(segment.out) +
           (segment.corner != 0 ? " corner" : " smooth");
}

} // namespace plugin_tests

// ------------------------------------------------------------- windows, strings, alerts and processes

using plugin_tests::host;
using plugin_tests::line_of;
using plugin_tests::name_of;

WindowRef ActiveNonFloatingWindow()
{
    host().write("ActiveNonFloatingWindow");
    host().outcome("ActiveNonFloatingWindow");
    return host().windows.empty() ? nullptr : &host().windows.front();
}

WindowRef GetPreviousWindow(WindowRef window)
{
    host().write("GetPreviousWindow " + name_of(window));
    host().outcome("GetPreviousWindow");
    bool found = false;
    for (HostWindow& candidate : host().windows) {
        if (found)
            return &candidate;
        found = &candidate == window;
    }
    return nullptr;
}

HostError CopyWindowTitleAsCFString(WindowRef window, CFStringRef* title)
{
    host().write("CopyWindowTitleAsCFString " + name_of(window));
    if (const HostError error = host().outcome("CopyWindowTitleAsCFString"))
        return error;
    if (window == nullptr)
        return kHostBadParameter;
    *title = window->has_title ? &window->title : nullptr;
    return kHostNoError;
}

HostBoolean IsWindowCollapsed(WindowRef window)
{
    host().write("IsWindowCollapsed " + name_of(window));
    host().outcome("IsWindowCollapsed");
    return window->collapsed ? 2 : 0; // not 0 is all that is promised
}

HostError GetWindowBounds(WindowRef window, std::uint16_t part, Rect* bounds)
{
    host().write(line_of("GetWindowBounds ", name_of(window), ' ', part));
    if (const HostError error = host().outcome("GetWindowBounds"))
        return error;
    if (window == nullptr)
        return kHostBadParameter;
    *bounds = window->bounds;
    return kHostNoError;
}

CFIndex CFStringGetLength(CFStringRef string)
{
    host().write("CFStringGetLength " + name_of(string));
    host().outcome("CFStringGetLength");
    return plugin_tests::utf16_units(string->utf8);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding)
{
    host().write(line_of("CFStringGetMaximumSizeForEncoding ", length,
                         encoding == kCFStringEncodingUTF8 ? " UTF-8" : " another"));
    if (host().outcome("CFStringGetMaximumSizeForEncoding") != 0)
        return -1;
    return 3 * length;
}

HostBoolean CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding)
{
    host().write(line_of("CFStringGetCString ", name_of(string), ' ', size,
                         encoding == kCFStringEncodingUTF8 ? " UTF-8" : " another"));
    if (host().outcome("CFStringGetCString") != 0 || !string->converts ||
        size <= static_cast<CFIndex>(string->utf8.size()))
        return 0;
    std::memcpy(buffer, string->utf8.c_str(), string->utf8.size() + 1);
    return 1;
}

CFStringRef HostConstantString(const char* utf8_literal)
{
    static std::map<std::string, HostString> strings;
    return &strings.emplace(utf8_literal, HostString{utf8_literal}).first->second;
}

HostError CreateStandardAlert(std::int16_t kind, CFStringRef text, CFStringRef explanation,
                              const void* parameters, DialogRef* alert)
{
    host().write(line_of("CreateStandardAlert ", kind, ' ', name_of(text), ' ', name_of(explanation),
                         parameters == nullptr ? "" : " with parameters"));
    if (const HostError error = host().outcome("CreateStandardAlert"))
        return error;
    *alert = new HostAlert{
        {text->utf8, explanation->utf8, false}
    };
    return kHostNoError;
}

HostError RunStandardAlert(DialogRef alert, const void* filter, std::int16_t* item_hit)
{
    host().write(line_of("RunStandardAlert", alert == nullptr ? " null" : "",
                         filter == nullptr ? "" : " with a filter",
                         item_hit == nullptr ? "" : " with an item"));
    if (const HostError error = host().outcome("RunStandardAlert")) {
        delete alert;
        return error;
    }
    if (alert == nullptr)
        return kHostBadParameter;
    alert->content.link_open = support::is_open(0);
    host().alerts.push_back(alert->content);
    delete alert;
    return kHostNoError;
}

HostError GetFrontProcess(ProcessSerialNumber* process)
{
    host().write(line_of("GetFrontProcess ", process->high, ',', process->low));
    if (const HostError error = host().outcome("GetFrontProcess"))
        return error;
    *process = plugin_tests::kFrontProcess;
    return kHostNoError;
}

HostError SetFrontProcess(const ProcessSerialNumber* process)
{
    host().write(line_of("SetFrontProcess ", process->high, ',', process->low,
                         support::is_open(0) ? " while the link is open" : ""));
    return host().outcome("SetFrontProcess");
}
