// The suites over a session: tables of functions that a plug-in finds through the basic suite.
#include "host/api/art_suite.h"
#include "host/api/blocks_suite.h"
#include "host/api/document_suite.h"
#include "host/api/document_view_suite.h"
#include "host/api/grid_suite.h"
#include "host/api/layer_suite.h"
#include "host/api/menu_suite.h"
#include "host/api/path_suite.h"
#include "host/kit/session_state.h"
#include "host/kit/utf8.h"

#include <cstring>

namespace vnt::host {
namespace {

void write_name(JsonLine& line, std::string_view field, const char* name)
{
    if (name == nullptr)
        line.null(field);
    else
        line.text(field, name);
}

// ------------------------------------------------------------------------------------ document view suite

HostError get_show_page_tiling(HostBoolean* shown)
{
    ServiceCall call("GetShowPageTiling");
    if (!call.is_in_message())
        return call.wrong_time();
    if (shown == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    *shown = 0; // an SVG document has no page tiling
    return call.done();
}

HostError get_nth_document_view(std::int32_t number, AIDocumentViewHandle* view)
{
    ServiceCall call("GetNthDocumentView");
    if (!call.is_in_message())
        return call.wrong_time();
    call.given([&](JsonLine& line) { line.integer("number", number); });
    if (view == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    if (number != 0)
        return call.wrong(kHostOutOfRange, "asks for another view than number 0, the only one");
    *view = &call.state().view;
    return call.done();
}

HostError view_point_to_artwork_point(AIDocumentViewHandle view, const AIPoint* view_point,
                                      AIRealPoint* artwork_point)
{
    ServiceCall call("ViewPointToArtworkPoint");
    if (!call.is_in_message())
        return call.wrong_time();
    if (view != &call.state().view)
        return call.wrong(kHostBadParameter, "is about a view that there is not");
    if (view_point == nullptr || artwork_point == nullptr)
        return call.wrong(kHostBadParameter, "has a null point");
    const Vec at = call.state().setup.view.view_to_artwork(
        {static_cast<double>(view_point->h), static_cast<double>(view_point->v)});
    *artwork_point = {static_cast<float>(at.x), static_cast<float>(at.y)};
    call.given([&](JsonLine& line) {
        line.pair("view_point", static_cast<int>(view_point->h), static_cast<int>(view_point->v))
            .pair("artwork_point", artwork_point->h, artwork_point->v);
    });
    return call.done();
}

const AIDocumentViewSuite kDocumentViewSuite{
    {}, get_show_page_tiling, get_nth_document_view, view_point_to_artwork_point};

// --------------------------------------------------------------------------------------------- grid suite

HostError get_settings(HostGridSettings* settings)
{
    ServiceCall call("GetSettings");
    if (!call.is_in_message())
        return call.wrong_time();
    if (settings == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    const GridSettings& grid = call.state().setup.grid;
    *settings = {
        {0, 0},
        grid.spacing, grid.subdivisions
    };
    call.given([&](JsonLine& line) {
        line.real("spacing", grid.spacing).integer("subdivisions", grid.subdivisions);
    });
    return call.done();
}

HostBoolean answer_about_grid(const char* name, AIDocumentViewHandle view, bool GridSettings::*flag)
{
    ServiceCall call(name);
    if (!call.is_in_message()) {
        call.wrong_time();
        return 0;
    }
    if (view != &call.state().view) {
        call.wrong(kHostBadParameter, "is about a view that there is not");
        return 0;
    }
    const bool answer = call.state().setup.grid.*flag;
    call.given([&](JsonLine& line) { line.flag("result", answer); });
    call.done();
    return answer ? 1 : 0;
}

HostBoolean is_shown(AIDocumentViewHandle view)
{
    return answer_about_grid("IsShown", view, &GridSettings::is_shown);
}

HostBoolean is_snapped_to(AIDocumentViewHandle view)
{
    return answer_about_grid("IsSnappedTo", view, &GridSettings::is_snapped_to);
}

const AIGridSuite kGridSuite{get_settings, {}, is_shown, is_snapped_to};

// ------------------------------------------------------------------------------------ layer and art suites

HostError get_current_layer(AILayerHandle* layer)
{
    ServiceCall call("GetCurrentLayer");
    if (!call.is_in_message())
        return call.wrong_time();
    if (layer == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    *layer = &call.state().layer;
    return call.done();
}

const AILayerSuite kLayerSuite{get_current_layer};

HostError get_first_art_of_layer(AILayerHandle layer, AIArtHandle* group)
{
    ServiceCall call("GetFirstArtOfLayer");
    if (!call.is_in_message())
        return call.wrong_time();
    if (layer != &call.state().layer)
        return call.wrong(kHostBadParameter, "is about a layer that there is not");
    if (group == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    *group = &call.state().group;
    return call.done();
}

HostError new_art(std::int16_t kind, std::int16_t place, AIArtHandle relative_to, AIArtHandle* art)
{
    ServiceCall call("NewArt");
    if (!call.is_in_message())
        return call.wrong_time();
    Session::State& state = call.state();
    if (kind != kPathArt || place != kPlaceInsideOnTop) {
        call.given([&](JsonLine& line) { line.integer("kind", kind).integer("place", place); });
        return call.wrong(kHostBadParameter, kind != kPathArt
                                                 ? "asks for another kind of art than a path"
                                                 : "asks for another place than on top of a group");
    }
    if (relative_to != &state.group)
        return call.wrong(kHostBadParameter, "puts art into what is not the layer's group");
    if (art == nullptr)
        return call.wrong(kHostBadParameter, "has nowhere to write its answer");
    call.given([&](JsonLine& line) { line.integer("path", static_cast<std::int64_t>(state.paths.size())); });
    return call.done_with_memory([&] {
        HostArt& path = state.paths.emplace_back(HostArt{state.paths.size(), {}, false});
        try {
            state.known_paths.insert(&path);
        } catch (...) {
            state.paths.pop_back();
            throw;
        }
        *art = &path;
        state.path_count.store(state.paths.size(), std::memory_order_relaxed);
    });
}

const AIArtSuite kArtSuite{get_first_art_of_layer, new_art};

// --------------------------------------------------------------------------------------------- path suite

void write_segment(JsonLine& line, const AIPathSegment& segment)
{
    line.pair("p", segment.p.h, segment.p.v)
        .pair("in", segment.in.h, segment.in.v)
        .pair("out", segment.out.h, segment.out.v)
        .flag("corner", segment.corner != 0);
}

void write_segments(JsonLine& line, std::int16_t count, const AIPathSegment* segments)
{
    if (segments == nullptr || count == 1) {
        if (segments != nullptr)
            write_segment(line, *segments);
        return;
    }
    line.integer("count", count).begin_list("segments");
    for (std::int16_t i = 0; i < count; ++i) {
        line.begin_object();
        write_segment(line, segments[i]);
        line.end_object();
    }
    line.end_list();
}

ArtPoint art_point(const AIRealPoint& point) { return {point.h, point.v}; }

void set_segments(PathArt& path, std::size_t number, std::size_t count, const AIPathSegment* segments)
{
    if (number + count > path.capacity())
        path.reserve(std::max(number + count, 2 * path.capacity()));
    if (number + count > path.size())
        path.resize(number + count);
    for (std::size_t i = 0; i < count; ++i)
        path[number + i] = {art_point(segments[i].p), art_point(segments[i].in), art_point(segments[i].out)};
}

HostError set_path_segments(AIArtHandle path, std::int16_t number, std::int16_t count,
                            const AIPathSegment* segments)
{
    ServiceCall call("SetPathSegments");
    if (!call.is_in_message())
        return call.wrong_time();
    HostArt* const art = call.state().find_path(path);
    call.given([&](JsonLine& line) {
        if (art != nullptr)
            line.integer("path", static_cast<std::int64_t>(art->number));
        else
            line.null("path");
        write_segments(line.integer("index", number), count, segments);
    });
    if (art == nullptr)
        return call.wrong(kHostBadParameter, "is about art that is no path");
    if (count < 1 || segments == nullptr)
        return call.wrong(kHostBadParameter, "has no segments");
    // Cut short stays cut short: a 16-bit number that goes on counting comes back to 0, and would overwrite.
    if (art->is_cut_short || number < 0 || static_cast<std::size_t>(number) > art->segments.size()) {
        art->is_cut_short = true;
        return call.wrong(kHostOutOfRange,
                          "has a segment number that is not on the path, nor one past its end");
    }
    return call.done_with_memory([&] {
        set_segments(art->segments, static_cast<std::size_t>(number), static_cast<std::size_t>(count),
                     segments);
    });
}

const AIPathSuite kPathSuite{set_path_segments};
const AIDocumentSuite kDocumentSuite{};
const SPBlocksSuite kBlocksSuite{};

// ----------------------------------------------------------------------------- menu and Unicode string suites

bool is_alive(Session::State& state, HostText text) { return state.texts.count(text) > 0; }

HostError add_menu_item(HostPluginReference plugin, const char* key, const AIPlatformAddMenuItemDataUS* data,
                        std::int32_t options, AIMenuItemHandle* item)
{
    ServiceCall call("AddMenuItem");
    if (!call.is_in_message())
        return call.wrong_time();
    Session::State& state = call.state();
    call.given([&](JsonLine& line) { write_name(line, "key", key); });
    if (plugin != &state.plugin)
        return call.wrong(kHostBadParameter, "is for another plug-in than the message's");
    if (key == nullptr || data == nullptr || data->group == nullptr || item == nullptr)
        return call.wrong(kHostBadParameter, "has a null argument");
    if (!is_alive(state, data->text.get()))
        return call.wrong(kHostBadParameter, "has a text that there is not");
    const std::string& text = data->text.get()->bytes;
    call.given([&](JsonLine& line) {
        line.text("group", data->group).text("text", text).integer("options", options);
    });
    if (std::strcmp(state.caller, kInterfaceCaller) != 0 ||
        std::strcmp(state.selector, kStartupSelector) != 0)
        return call.wrong(kHostWrongTime, "came in another message than SP Interface / Startup");
    return call.done_with_memory([&] {
        *item = &state.menu_items.emplace_back(HostMenuItem{key, data->group, text});
    });
}

const AIMenuSuite kMenuSuite{add_menu_item};

HostError make_from_bytes(const char* bytes, std::int32_t size, std::int32_t encoding, HostText* text)
{
    ServiceCall call("MakeFromBytes");
    if (!call.is_in_message())
        return call.wrong_time();
    if (text == nullptr || size < 0 || (bytes == nullptr && size > 0))
        return call.wrong(kHostBadParameter, "has no bytes, or nowhere to write its answer");
    const std::string_view content =
        size == 0 ? std::string_view() : std::string_view(bytes, static_cast<std::size_t>(size));
    call.given([&](JsonLine& line) { line.text("text", content).integer("encoding", encoding); });
    if (encoding != kHostPlatformEncoding)
        return call.wrong(kHostBadParameter, "has an encoding that this host does not know");
    if (size_of_utf8(content) != content.size())
        return call.wrong(kHostBadParameter, "has bytes that are no UTF-8, the platform's encoding here");
    return call.done_with_memory([&] {
        auto made = std::make_unique<HostTextBody>(HostTextBody{std::string(content)});
        call.state().texts.insert(made.get());
        *text = made.release();
    });
}

HostError release(HostText text)
{
    ServiceCall call("Release");
    if (!call.is_in_message())
        return call.wrong_time();
    if (!is_alive(call.state(), text))
        return call.wrong(kHostBadParameter, "gives back a text that there is not");
    call.given([&](JsonLine& line) { line.text("text", text->bytes); });
    call.state().texts.erase(text);
    delete text;
    return call.done();
}

const AIUnicodeStringSuite kUnicodeStringSuite{make_from_bytes, release};

// -------------------------------------------------------------------------------------------- basic suite

struct Offered {
    const char* name;
    std::int32_t version;
    const void* table;
};

const Offered kSuites[] = {
    {kAIDocumentViewSuiteName,  kAIDocumentViewSuiteVersion,  &kDocumentViewSuite },
    {kAIGridSuiteName,          kAIGridSuiteVersion,          &kGridSuite         },
    {kAIArtSuiteName,           kAIArtSuiteVersion,           &kArtSuite          },
    {kAIPathSuiteName,          kAIPathSuiteVersion,          &kPathSuite         },
    {kAILayerSuiteName,         kAILayerSuiteVersion,         &kLayerSuite        },
    {kAIDocumentSuiteName,      kAIDocumentSuiteVersion,      &kDocumentSuite     },
    {kAIMenuSuiteName,          kAIMenuSuiteVersion,          &kMenuSuite         },
    {kAIUnicodeStringSuiteName, kAIUnicodeStringSuiteVersion, &kUnicodeStringSuite},
    {kSPBlocksSuiteName,        kSPBlocksSuiteVersion,        &kBlocksSuite       },
};

HostError acquire_suite(const char* name, std::int32_t version, const void** suite)
{
    ServiceCall call("AcquireSuite");
    if (!call.is_in_message())
        return call.wrong_time();
    call.given([&](JsonLine& line) {
        write_name(line, "name", name);
        line.integer("version", version);
    });
    if (name == nullptr || suite == nullptr)
        return call.wrong(kHostBadParameter, "has a null argument");
    for (const Offered& offered : kSuites) {
        if (std::strcmp(offered.name, name) == 0 && offered.version == version) {
            *suite = offered.table;
            return call.done();
        }
    }
    return call.wrong(kHostNoSuite, "asks for a suite, or a version of one, that this host does not have");
}

HostBoolean is_equal(const char* one, const char* other)
{
    ServiceCall call("IsEqual");
    if (!call.is_in_message()) {
        call.wrong_time();
        return 0;
    }
    const bool equal = one != nullptr && other != nullptr && std::strcmp(one, other) == 0;
    call.given([&](JsonLine& line) {
        write_name(line, "one", one);
        write_name(line, "other", other);
        line.flag("result", equal);
    });
    call.done();
    return equal ? 1 : 0;
}

SPBasicSuite the_basic_suite{acquire_suite, is_equal};

} // namespace

SPBasicSuite& basic_suite() { return the_basic_suite; }

} // namespace vnt::host
