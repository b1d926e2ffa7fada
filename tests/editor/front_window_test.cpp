#include "host/editor/front_window.h"
#include "host/editor/x_connection.h"
#include "tests/editor/own_desktop.h"

#include <gtest/gtest.h>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

#include <unistd.h>

namespace {

using namespace vnt::host;
using namespace editor_test;

std::string told(Raised raised)
{
    constexpr const char* kWords[] = {"done", "no window", "not possible"};
    return kWords[static_cast<int>(raised)];
}

// ---- which window

struct FrontCase {
    const char* name;
    std::vector<std::string> windows; // of the editor; another program's comes before and after them
    int expected;                     // counted from 0; -1: none
};
// clang-format off
const FrontCase kFronts[] = {
    {"IsTheOnlyOne", {"--document", "a", "/w/1"}, 0},
    {"IsTheOneOnTop", {"--document", "a", "/w/1", "--document", "b", "/w/2"}, 1},
    {"IsNotADialog", {"--document", "a", "/w/1", "--document", "b", "/w/2", "--dialog", "c"}, 1},
    {"IsNotAWindowWithoutAnObject", {"--document", "a", "/w/1", "--window", "c"}, 0},
    {"IsAnyPlainOneWhenNoneHasAnObject", {"--window", "a", "--window", "b", "--dialog", "c"}, 1},
    {"IsNotAPanelInFrontOfIt", {"--window", "a", "--panel", "c"}, 0},
    {"IsNotMinimised", {"--document", "a", "/w/1", "--document", "b", "/w/2", "--minimised"}, 0},
    {"IsMinimisedWhenAllAre", {"--document", "a", "/w/1", "--minimised"}, 0},
    {"IsNotOnAnotherMachine", {"--host", "elsewhere.example", "--document", "a", "/w/1"}, -1},
};
// clang-format on
class TheFrontWindow : public OnADesktop, public testing::WithParamInterface<FrontCase> {};
TEST_P(TheFrontWindow, OfAnEditor)
{
    const WindowedProgram before(*desktop_, {"--document", "other", "/w/1"});
    const WindowedProgram editor(*desktop_, GetParam().windows);
    const auto expect_front = [&] {
        const std::optional<EditorWindow> front = front_window_of(editor.pid());
        ASSERT_EQ(front.has_value(), GetParam().expected >= 0);
        if (front) {
            EXPECT_EQ(front->id, editor.window(static_cast<std::size_t>(GetParam().expected)));
        }
    };
    expect_front();
    const WindowedProgram after(*desktop_, {"--document", "another", "/w/1"});
    expect_front();
}
INSTANTIATE_TEST_SUITE_P(, TheFrontWindow, testing::ValuesIn(kFronts),
                         [](const auto& row) { return row.param.name; });

using AWindowOfAnEditor = OnADesktop;

TEST_F(AWindowOfAnEditor, TellsItsTitleAndItsObject)
{
    const WindowedProgram editor(
        *desktop_, {"--document", "d\xC3\xA9j\xC3\xA0.svg - Inkscape", "/org/inkscape/Inkscape/window/7"});
    const std::optional<EditorWindow> front = front_window_of(editor.pid());
    ASSERT_TRUE(front.has_value());
    EXPECT_EQ(front->title, "d\xC3\xA9j\xC3\xA0.svg - Inkscape");
    EXPECT_EQ(front->object_path, "/org/inkscape/Inkscape/window/7");
    EXPECT_EQ(front->id, editor.window(0));
}

TEST_F(AWindowOfAnEditor, TellsNoObjectWhenItHasNone)
{
    const WindowedProgram editor(*desktop_, {"--window", ""});
    const std::optional<EditorWindow> front = front_window_of(editor.pid());
    ASSERT_TRUE(front.has_value());
    EXPECT_EQ(front->title, "");
    EXPECT_EQ(front->object_path, "");
}

TEST_F(AWindowOfAnEditor, IsInFrontWhenTheUserWasInItLast)
{
    WindowedProgram editor(*desktop_, {"--document", "a", "/w/1", "--document", "b", "/w/2"});
    ASSERT_EQ(told(raise_window_of(editor.pid(), editor.window(0))), "done");
    EXPECT_EQ(front_window_of(editor.pid())->id, editor.window(0));
}

TEST_F(AWindowOfAnEditor, IsInFrontWhenItHasTheKeyboardBehindAnother)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1", "--document", "b", "/w/2"});
    const XConnection server;
    server.watch_root();
    server.tell_manager(editor.window(1), "_NET_RESTACK_WINDOW", {2, 0, XCB_STACK_MODE_BELOW});
    const auto deadline = std::chrono::steady_clock::now() + kLimit;
    while (server.numbers(server.root(), "_NET_CLIENT_LIST_STACKING", XCB_ATOM_WINDOW) !=
           std::vector<std::uint32_t>{editor.window(1), editor.window(0)})
        ASSERT_TRUE(server.wait_for_change(deadline));
    EXPECT_EQ(front_window_of(editor.pid())->id, editor.window(1));
}

// ---- raising

using Raising = OnADesktop;

TEST_F(Raising, BringsTheProcesssWindowToTheFront)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    WindowedProgram other(*desktop_, {"--document", "b", "/w/1"});
    other.wait_until_active(other.window(0));
    EXPECT_EQ(told(raise_window_of(editor.pid())), "done");
    other.wait_until_active(editor.window(0));
    EXPECT_EQ(told(raise_window_of(other.pid())), "done");
    other.wait_until_active(other.window(0));
}

TEST_F(Raising, IsDoneWhenTheWindowIsThereAlready)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    EXPECT_EQ(told(raise_window_of(editor.pid())), "done");
}

TEST_F(Raising, TakesTheWindowThatIsNamed)
{
    WindowedProgram editor(*desktop_, {"--document", "a", "/w/1", "--document", "b", "/w/2"});
    editor.wait_until_active(editor.window(1));
    EXPECT_EQ(told(raise_window_of(editor.pid(), editor.window(0))), "done");
    editor.wait_until_active(editor.window(0));
    EXPECT_EQ(told(raise_window_of(editor.pid(), editor.window(1))), "done");
    editor.wait_until_active(editor.window(1));
}

TEST_F(Raising, ShowsAMinimisedWindow)
{
    WindowedProgram editor(*desktop_, {"--document", "a", "/w/1", "--minimised"});
    EXPECT_EQ(told(raise_window_of(editor.pid())), "done");
    editor.wait_until_active(editor.window(0));
}

TEST_F(Raising, LeavesTheKeyboardToAnOpenDialogOfTheWindow)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1", "--dialog", "save?"});
    WindowedProgram other(*desktop_, {"--document", "b", "/w/1"});
    other.wait_until_active(other.window(0));
    EXPECT_EQ(told(raise_window_of(editor.pid())), "done");
    other.wait_until_active(editor.window(1));
}

TEST_F(Raising, IsNotDoneByADialogOfAnotherWindow)
{
    const WindowedProgram editor(*desktop_,
                                 {"--document", "a", "/w/1", "--document", "b", "/w/2", "--dialog", "save?"});
    desktop_->manager().stop();
    EXPECT_EQ(told(raise_window_of(editor.pid(), editor.window(0))), "not possible");
    EXPECT_EQ(told(raise_window_of(editor.pid(), editor.window(1))), "done");
}

TEST_F(Raising, IsAskedForAsTheUsersWish)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> listener(xcb_connect(nullptr, nullptr),
                                                                                xcb_disconnect);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(listener.get())).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    const auto listening =
        xcb_change_window_attributes_checked(listener.get(), root, XCB_CW_EVENT_MASK, &events);
    ASSERT_EQ(xcb_request_check(listener.get(), listening), nullptr);
    ASSERT_EQ(told(raise_window_of(editor.pid())), "done");
    for (;;) {
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(
            xcb_wait_for_event(listener.get()), std::free);
        ASSERT_NE(event, nullptr);
        if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
            continue;
        const void* const bytes = event.get();
        const auto* const message = static_cast<const xcb_client_message_event_t*>(bytes);
        EXPECT_EQ(message->window, editor.window(0));
        EXPECT_EQ(message->format, 32);
        EXPECT_EQ(message->data.data32[0], 2U); // 1 is an application's own wish
        break;
    }
}

TEST_F(Raising, FindsNoWindowOfAnotherProcess)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    EXPECT_EQ(told(raise_window_of(getpid())), "no window");
    EXPECT_EQ(told(raise_window_of(getpid(), editor.window(0))), "no window");
    EXPECT_EQ(told(raise_window_of(editor.pid(), editor.window(0) + 1000)), "no window");
}

TEST_F(Raising, FindsNoWindowThatIsClosed)
{
    WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    WindowedProgram other(*desktop_, {"--document", "b", "/w/1"});
    const pid_t pid = editor.pid();
    ASSERT_EQ(told(raise_window_of(pid)), "done");
    other.wait_until_active(editor.window(0));
    editor.end();
    other.wait_until_active(other.window(0));
    EXPECT_EQ(told(raise_window_of(pid)), "no window");
}

TEST_F(Raising, IsNotPossibleWhereTheWindowMayBeWaylands)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    const Surroundings here{
        {"WAYLAND_DISPLAY", "wayland-0"}
    };
    EXPECT_EQ(told(raise_window_of(getpid())), "not possible");
    EXPECT_EQ(told(raise_window_of(editor.pid())), "done");
}

TEST_F(Raising, IsNotPossibleWithoutADisplay)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    for (const std::optional<std::string>& display :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const Surroundings here{
            {"DISPLAY", display}
        };
        EXPECT_EQ(told(raise_window_of(editor.pid())), "not possible");
        EXPECT_FALSE(front_window_of(editor.pid()).has_value());
    }
}

TEST_F(Raising, IsNotPossibleWhenTheServerHasEnded)
{
    desktop_->manager().end();
    desktop_->server().end();
    EXPECT_EQ(told(raise_window_of(getpid())), "not possible");
    EXPECT_FALSE(front_window_of(getpid()).has_value());
}

TEST_F(Raising, IsNotPossibleWhenTheWindowManagerDoesNothing)
{
    const WindowedProgram editor(*desktop_, {"--document", "a", "/w/1"});
    const WindowedProgram other(*desktop_, {"--document", "b", "/w/1"});
    desktop_->manager().stop();
    EXPECT_EQ(told(raise_window_of(editor.pid())), "not possible");
}

TEST(ADesktop, WithoutAWindowManagerRaisesNothing)
{
    if (!OwnDesktop::is_possible())
        GTEST_SKIP() << "Xvfb is missing (Debian: xvfb)";
    const OwnDesktop desktop;
    const Surroundings here{
        {"DISPLAY",         desktop.display()},
        {"WAYLAND_DISPLAY", std::nullopt     }
    };
    EXPECT_EQ(told(raise_window_of(getpid())), "not possible");
}

} // namespace
