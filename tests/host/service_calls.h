// Calls of services with whatever arguments, and rows of tables of such calls.
//
// Shapes: a call's answer is a line: the service's code or result, and then what it has written.
#pragma once

#include "tests/host/open_session.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace host_test {

struct ServiceCase {
    const char* name;
    std::string (*call)(PlugIn& plug_in);
    std::string answer;
    std::string traced;
    std::string wrong = {}; // what the plug-in did wrong; empty when all is well
    const char* caller = kMenuCaller;
    const char* selector = kGoSelector;
};

inline void expect_as_declared(const ServiceCase& row)
{
    using Lines = std::vector<std::string>;
    OpenSession host;
    EXPECT_EQ(host.during(row.call, row.caller, row.selector), row.answer);
    EXPECT_EQ(host.traced(), row.traced);
    EXPECT_EQ(host.wrong_calls, row.wrong.empty() ? Lines{} : Lines{"plug-in: " + row.wrong});
    EXPECT_EQ(host.session.failure(), "");
}

inline std::string acquire(PlugIn& p, const char* name, std::int32_t version)
{
    const void* suite = &p;
    const HostError error = p.message.basic->AcquireSuite(name, version, &suite);
    return answer(error, suite == nullptr ? "null" : suite == &p ? "untouched" : "a table");
}

inline std::string show_page_tiling(PlugIn& p)
{
    HostBoolean shown = 9;
    const HostError error = p.views.GetShowPageTiling(&shown);
    return answer(error, +shown);
}

inline std::string nth_view(PlugIn& p, std::int32_t number)
{
    AIDocumentViewHandle view = nullptr;
    const HostError error = p.views.GetNthDocumentView(number, &view);
    return answer(error, view == nullptr ? "null" : view == p.view ? "the view" : "another");
}

inline std::string artwork_point(PlugIn& p, AIDocumentViewHandle view, const AIPoint& at)
{
    AIRealPoint point{-1, -1};
    const HostError error = p.views.ViewPointToArtworkPoint(view, &at, &point);
    return answer(error, point.h, point.v);
}

inline std::string grid_settings(PlugIn& p)
{
    HostGridSettings settings{
        {7, 7},
        -1, -1
    };
    const HostError error = p.grids.GetSettings(&settings);
    return answer(error, settings.spacing, settings.subdivisions);
}

inline std::string new_art(PlugIn& p, std::int16_t kind, std::int16_t place, AIArtHandle group)
{
    AIArtHandle art = nullptr;
    const HostError error = p.arts.NewArt(kind, place, group, &art);
    return answer(error, art == nullptr ? "null" : art == p.group ? "the group" : "a path");
}

inline std::string make_text(PlugIn& p, const char* bytes, std::int32_t size, std::int32_t encoding)
{
    HostText text = nullptr;
    const HostError error = p.texts.MakeFromBytes(bytes, size, encoding, &text);
    const std::string result = answer(error, text == nullptr ? "null" : "'" + text->bytes + "'");
    return result;
}

inline const AIPathSegment kSegments[] = {
    {{1.5F, 2},  {3, 4},   {5, -6},  1},
    {{10, 0.1F}, {10, 10}, {20, 20}, 0},
};

inline std::string set_segments(PlugIn& p, AIArtHandle path, std::int16_t number, std::int16_t count,
                                const AIPathSegment* segments = kSegments)
{
    return answer(p.paths.SetPathSegments(path, number, count, segments));
}

inline std::string bounds_of(WindowRef window, std::uint16_t part)
{
    Rect bounds{-1, -1, -1, -1};
    const HostError error = GetWindowBounds(window, part, &bounds);
    return answer(error, bounds.top, bounds.left, bounds.bottom, bounds.right);
}

inline std::string title_of(WindowRef window)
{
    CFStringRef title = nullptr;
    const HostError error = CopyWindowTitleAsCFString(window, &title);
    return answer(error, title == nullptr ? "null" : title->utf8);
}

inline std::string make_alert(std::int16_t kind, const char* text, const char* explanation,
                              const void* parameters)
{
    const HostString first{text == nullptr ? "" : text};
    const HostString second{explanation == nullptr ? "" : explanation};
    DialogRef alert = nullptr;
    const HostError error =
        CreateStandardAlert(kind, text == nullptr ? nullptr : &first,
                            explanation == nullptr ? nullptr : &second, parameters, &alert);
    return answer(error, alert == nullptr ? "null" : "an alert");
}

} // namespace host_test
