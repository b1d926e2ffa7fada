// Services that are called outside of a message, on another thread, or when there is no session any more.
#include "tests/host/service_calls.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

using namespace host_test;

// A service as it is called with good arguments; answers its code or result.
struct Timely {
    const char* name;
    std::string (*call)(PlugIn& plug_in);
    const char* refusal; // outside of a message
};

std::string view_point_to_artwork_point(PlugIn& p) { return artwork_point(p, p.view, {0, 0}); }

std::string get_current_layer(PlugIn& p)
{
    AILayerHandle layer = nullptr;
    const HostError error = p.layers.GetCurrentLayer(&layer);
    return answer(error, layer == nullptr);
}

std::string get_first_art_of_layer(PlugIn& p)
{
    AIArtHandle group = nullptr;
    const HostError error = p.arts.GetFirstArtOfLayer(p.layer, &group);
    return answer(error, group == nullptr);
}

std::string add_menu_item(PlugIn& p)
{
    AIMenuItemHandle item = nullptr;
    return answer(p.menus.AddMenuItem(p.message.plugin, "VANT", nullptr, 1, &item), item == nullptr);
}

std::string get_front_process(PlugIn&)
{
    ProcessSerialNumber front{9, 9};
    const HostError error = GetFrontProcess(&front);
    return answer(error, front.high, front.low);
}

std::string set_front_process(PlugIn&)
{
    const ProcessSerialNumber host{0, 1};
    return answer(SetFrontProcess(&host));
}

const Timely kTimely[] = {
    {"AcquireSuite",              [](PlugIn& p) { return acquire(p, "AI Grid Suite", 1003); },                 "6 untouched"  },
    {"IsEqual",                   [](PlugIn& p) { return answer(+p.message.basic->IsEqual("a", "a")); },       "0"            },
    {"GetShowPageTiling",         show_page_tiling,                                                            "6 9"          },
    {"GetNthDocumentView",        [](PlugIn& p) { return nth_view(p, 0); },                                    "6 null"       },
    {"ViewPointToArtworkPoint",   view_point_to_artwork_point,                                                 "6 -1 -1"      },
    {"GetSettings",               grid_settings,                                                               "6 -1 -1"      },
    {"IsShown",                   [](PlugIn& p) { return answer(+p.grids.IsShown(p.view)); },                  "0"            },
    {"IsSnappedTo",               [](PlugIn& p) { return answer(+p.grids.IsSnappedTo(p.view)); },              "0"            },
    {"GetCurrentLayer",           get_current_layer,                                                           "6 1"          },
    {"GetFirstArtOfLayer",        get_first_art_of_layer,                                                      "6 1"          },
    {"NewArt",                    [](PlugIn& p) { return new_art(p, kPathArt, kPlaceInsideOnTop, p.group); },  "6 null"       },
    {"SetPathSegments",           [](PlugIn& p) { return set_segments(p, p.group, 0, 1); },                    "6"            },
    {"AddMenuItem",               add_menu_item,                                                               "6 1"          },
    {"MakeFromBytes",             [](PlugIn& p) { return make_text(p, "Start", 5, 0); },                       "6 null"       },
    {"Release",                   [](PlugIn& p) { return answer(p.texts.Release(nullptr)); },                  "6"            },
    {"ActiveNonFloatingWindow",   [](PlugIn&) { return answer(ActiveNonFloatingWindow() == nullptr); },        "1"            },
    {"GetPreviousWindow",         [](PlugIn& p) { return answer(GetPreviousWindow(p.window) == nullptr); },    "1"            },
    {"CopyWindowTitleAsCFString", [](PlugIn& p) { return title_of(p.window); },                                "6 null"       },
    {"IsWindowCollapsed",         [](PlugIn& p) { return answer(+IsWindowCollapsed(p.window)); },              "0"            },
    {"GetWindowBounds",           [](PlugIn& p) { return bounds_of(p.window, 40); },                           "6 -1 -1 -1 -1"},
    {"CreateStandardAlert",       [](PlugIn&) { return make_alert(0, "Ink", "None left", nullptr); },          "6 null"       },
    {"Alert",                     [](PlugIn&) { return answer(RunStandardAlert(nullptr, nullptr, nullptr)); }, "6"            },
    {"GetFrontProcess",           get_front_process,                                                           "6 9 9"        },
    {"SetFrontProcess",           set_front_process,                                                           "6"            },
};

class Timing : public testing::TestWithParam<Timely> {
protected:
    // What must be seen of a call at the wrong time: its refusal, no line, and that the plug-in erred.
    void expect_refusal(const OpenSession& host, const std::string& answered) const
    {
        EXPECT_EQ(answered, GetParam().refusal);
        EXPECT_EQ(host.traced(), "");
        EXPECT_EQ(host.wrong_calls, (std::vector<std::string>{std::string("plug-in: ") + GetParam().name +
                                                              " came outside of a message to the plug-in"}));
        EXPECT_EQ(host.session.path_count(), 0U);
        EXPECT_EQ(host.fronts, 0);
    }
};

TEST_P(Timing, IsWrongBetweenMessages)
{
    OpenSession host;
    std::unique_ptr<PlugIn> kept;
    SPBasicSuite* basic = nullptr;
    host.during([&](PlugIn& plug_in) {
        kept = std::make_unique<PlugIn>(plug_in);
        basic = plug_in.message.basic;
        return std::string();
    });
    HostMessage message{nullptr, basic}; // the one that kept refers to has ended
    PlugIn late(*kept, message);
    host.wrong_calls.clear();
    expect_refusal(host, GetParam().call(late));
}

TEST_P(Timing, IsWrongOnAnotherThread)
{
    OpenSession host;
    const std::string answered = host.during([&](PlugIn& plug_in) {
        std::string from_there;
        std::thread([&] { from_there = GetParam().call(plug_in); }).join();
        return from_there;
    });
    expect_refusal(host, answered);
}

TEST_P(Timing, IsNotCheckedWithoutASession)
{
    SPBasicSuite& basic = vnt::host::basic_suite();
    HostMessage message{nullptr, &basic};
    std::unique_ptr<PlugIn> kept;
    {
        OpenSession host;
        host.during([&](PlugIn& plug_in) {
            kept = std::make_unique<PlugIn>(plug_in);
            return std::string();
        });
    }
    PlugIn late(*kept, message);
    EXPECT_EQ(GetParam().call(late), GetParam().refusal);
}

INSTANTIATE_TEST_SUITE_P(, Timing, testing::ValuesIn(kTimely),
                         [](const auto& row) { return row.param.name; });

} // namespace
