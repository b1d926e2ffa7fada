#include "host/editor/x_connection.h"
#include "tests/editor/own_desktop.h"

namespace {

using editor_test::WindowedProgram;
using vnt::host::XConnection;

using AnXServer = editor_test::OnADesktop;

using Numbers = std::vector<std::uint32_t>;

TEST_F(AnXServer, TellsPropertiesOfTheTypeThatIsAskedFor)
{
    const WindowedProgram program(*desktop_, {"--document", "a title", "/w/1"});
    const XConnection server;
    ASSERT_TRUE(server.is_open());
    const std::uint32_t window = program.window(0);
    EXPECT_EQ(server.text(window, "_NET_WM_NAME", "UTF8_STRING"), "a title");
    EXPECT_EQ(server.text(window, "_NET_WM_NAME", "STRING"), std::nullopt);
    EXPECT_EQ(server.text(window, "_VANT_NOTHING", "UTF8_STRING"), std::nullopt);
    EXPECT_EQ(server.numbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL),
              Numbers{static_cast<std::uint32_t>(program.pid())});
    EXPECT_EQ(server.numbers(window, "_NET_WM_PID", XCB_ATOM_WINDOW), std::nullopt);
    EXPECT_EQ(server.text(window, "_NET_WM_PID", "CARDINAL"), std::nullopt);
}

TEST_F(AnXServer, TellsALongTextWhole)
{
    const std::string title(100000, 'a');
    const WindowedProgram program(*desktop_, {"--window", title});
    EXPECT_EQ(XConnection().text(program.window(0), "_NET_WM_NAME", "UTF8_STRING"), title);
}

TEST_F(AnXServer, TellsNothingOfAWindowThatIsClosed)
{
    WindowedProgram program(*desktop_, {"--document", "a title", "/w/1"});
    const WindowedProgram other(*desktop_, {"--document", "b", "/w/1"});
    const XConnection server;
    server.watch_root();
    const std::uint32_t window = program.window(0);
    program.end();
    const auto deadline = std::chrono::steady_clock::now() + editor_test::kLimit;
    while (server.numbers(server.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW) != Numbers{other.window(0)})
        ASSERT_TRUE(server.wait_for_change(deadline));
    EXPECT_EQ(server.numbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL), std::nullopt);
    EXPECT_EQ(server.text(window, "_NET_WM_NAME", "UTF8_STRING"), std::nullopt);
    EXPECT_TRUE(server.is_open());
    EXPECT_EQ(server.text(other.window(0), "_NET_WM_NAME", "UTF8_STRING"), "b");
}

TEST_F(AnXServer, ThatGoesAwayTellsNothingMore)
{
    const WindowedProgram program(*desktop_, {"--document", "a title", "/w/1"});
    const XConnection server;
    ASSERT_TRUE(server.is_open());
    EXPECT_EQ(server.numbers(server.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW),
              Numbers{program.window(0)});
    server.watch_root();
    desktop_->server().end();
    EXPECT_EQ(server.numbers(server.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW), std::nullopt);
    EXPECT_FALSE(server.is_open());
    EXPECT_EQ(server.text(program.window(0), "_NET_WM_NAME", "UTF8_STRING"), std::nullopt);
    server.tell_manager(program.window(0), "_NET_ACTIVE_WINDOW", {2, 0});
    EXPECT_FALSE(server.wait_for_change(std::chrono::steady_clock::now() + editor_test::kLimit));
}

TEST_F(AnXServer, TellsOfAChange)
{
    const XConnection server;
    server.watch_root();
    const auto deadline = std::chrono::steady_clock::now() + editor_test::kLimit;
    const WindowedProgram program(*desktop_, {"--window", "a"});
    EXPECT_TRUE(server.wait_for_change(deadline));
}

TEST_F(AnXServer, WithoutAChangeIsWaitedForUntilTheDeadline)
{
    const XConnection server;
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
    EXPECT_FALSE(server.wait_for_change(deadline));
    EXPECT_GE(std::chrono::steady_clock::now(), deadline);
}

TEST_F(AnXServer, IsNoneWhenItHasEnded)
{
    desktop_->server().end();
    EXPECT_FALSE(XConnection().is_open());
}

TEST_F(AnXServer, IsNoneWithoutADisplay)
{
    const editor_test::Surroundings here{
        {"DISPLAY", std::nullopt}
    };
    EXPECT_FALSE(XConnection().is_open());
}

} // namespace
