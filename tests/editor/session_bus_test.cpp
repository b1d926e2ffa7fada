#include "host/editor/session_bus.h"
#include "tests/editor/own_bus.h"
#include "tests/editor/silent_bus.h"
#include "tests/editor/surroundings.h"
#include "tests/support/program_start.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <unistd.h>

namespace {

using namespace vnt::host;
using namespace editor_test;
using std::chrono::milliseconds;
using Names = std::vector<std::string>;

constexpr milliseconds kLong(20000);
// The longest that a call with the usual limit may take, on a machine that is busy with other things.
constexpr milliseconds kAtMost = kBusLimit + milliseconds(8000);

class Elapsed {
public:
    milliseconds time() const
    {
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin_);
    }

private:
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

std::vector<std::string> joined(std::vector<std::string> first, const std::vector<std::string>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

// What an editor's process is on the bus.
class Editor : public RunningProgram {
public:
    Editor(const OwnBus& bus, const std::vector<std::string>& arguments)
        : RunningProgram(joined({VNT_FAKE_EDITOR}, arguments), {"DBUS_SESSION_BUS_ADDRESS=" + bus.address()})
    {
        if (line() != "ready")
            throw std::runtime_error("the editor of the test is not ready");
    }
};

constexpr char kName[] = "org.inkscape.Inkscape";
constexpr char kTaggedName[] = "org.inkscape.Inkscape.tag-1";
const std::vector<std::string> kUsual{"--object", "/org/inkscape/Inkscape", "--name", kName};
const std::vector<std::string> kTagged{"--object", "/org/inkscape/Inkscape/tag_1", "--name", kTaggedName};

std::optional<SessionBus> connect_to(const std::string& address)
{
    const Surroundings here{
        {"DBUS_SESSION_BUS_ADDRESS", address}
    };
    return SessionBus::connect();
}

// A bus of the test's own, and a connection to it.
class OnABus : public testing::Test {
protected:
    void SetUp() override
    {
        if (!support::is_installed("dbus-daemon"))
            GTEST_SKIP() << "dbus-daemon is missing (Debian: dbus)";
        bus_ = std::make_unique<OwnBus>();
        connection_ = connect_to(bus_->address());
        ASSERT_TRUE(connection_.has_value());
    }

    std::unique_ptr<OwnBus> bus_;
    std::optional<SessionBus> connection_;
};

std::string told(const Result<Activated>& result)
{
    if (const auto* const problem = std::get_if<Problem>(&result))
        return problem->sentence;
    constexpr const char* kWords[] = {"done", "busy", "unfinished"};
    return kWords[static_cast<int>(std::get<Activated>(result))];
}

std::string told(std::optional<bool> state) { return !state ? "none" : *state ? "on" : "off"; }

// ---- the bus itself

using ABus = OnABus;

TEST_F(ABus, IsFoundInTheRuntimeFolderWhenNoAddressIsSet)
{
    const Surroundings here{
        {"DBUS_SESSION_BUS_ADDRESS", std::nullopt  },
        {"XDG_RUNTIME_DIR",          bus_->folder()}
    };
    EXPECT_TRUE(SessionBus::connect().has_value());
}

TEST_F(ABus, IsNoneWhenNothingTellsOfOne)
{
    const Surroundings here{
        {"DBUS_SESSION_BUS_ADDRESS", std::nullopt},
        {"XDG_RUNTIME_DIR",          std::nullopt}
    };
    EXPECT_FALSE(SessionBus::connect().has_value());
}

TEST_F(ABus, IsNoneWhenItHasEnded)
{
    bus_->daemon().end();
    EXPECT_FALSE(connect_to(bus_->address()).has_value());
    EXPECT_EQ(connection_->names_of_process(getpid()), Names());
}

TEST_F(ABus, IsNoneWhenItsAddressIsNone) { EXPECT_FALSE(connect_to("here, or so").has_value()); }

TEST_F(ABus, ThatLetsNobodyInIsGivenUp)
{
    bus_->daemon().stop();
    const Elapsed elapsed;
    EXPECT_FALSE(connect_to(bus_->address()).has_value());
    EXPECT_GE(elapsed.time(), kBusLimit);
    EXPECT_LT(elapsed.time(), kAtMost);
}

TEST(ASilentBus, IsGivenUp)
{
    SilentBus bus;
    const Elapsed elapsed;
    EXPECT_FALSE(connect_to(bus.address()).has_value());
    EXPECT_GE(elapsed.time(), kBusLimit);
    EXPECT_LT(elapsed.time(), kAtMost);
    EXPECT_TRUE(bus.has_let_in());
}

TEST_F(ABus, ThatStopsAnsweringTellsNoNamesAndShowsNothing)
{
    bus_->daemon().stop();
    const Elapsed elapsed;
    EXPECT_EQ(connection_->names_of_process(getpid()), Names());
    EXPECT_FALSE(connection_->notify("summary", "body"));
    EXPECT_LT(elapsed.time(), 2 * kAtMost);
}

// ---- names

class NamesOfAProcess : public OnABus {
protected:
    // The names of an editor, its unique one as ":".
    Names names_of(pid_t pid) const
    {
        Names names = connection_->names_of_process(pid);
        for (std::string& name : names) {
            if (name.front() == ':')
                name = ":";
        }
        return names;
    }
};

TEST_F(NamesOfAProcess, AreItsOwnAlsoWhenTwoEditorsRun)
{
    const Editor usual(*bus_, kUsual);
    const Editor tagged(*bus_, kTagged);
    EXPECT_EQ(names_of(usual.pid()), (Names{kName, ":"}));
    EXPECT_EQ(names_of(tagged.pid()), (Names{kTaggedName, ":"}));
}

TEST_F(NamesOfAProcess, BeginWithTheEditors)
{
    const Editor editor(
        *bus_, joined({"--name", "org.inkscape.Inkscapes", "--name", "a.b", "--name", kTaggedName}, kUsual));
    EXPECT_EQ(names_of(editor.pid()), (Names{kName, kTaggedName, "a.b", "org.inkscape.Inkscapes", ":"}));
}

TEST_F(NamesOfAProcess, AreFoundWhileItDoesNotAnswer)
{
    const Editor editor(*bus_, kUsual);
    editor.stop();
    EXPECT_EQ(names_of(editor.pid()), (Names{kName, ":"}));
}

TEST_F(NamesOfAProcess, AreNoneWhenItIsNotOnTheBus)
{
    const Editor editor(*bus_, kUsual);
    EXPECT_EQ(names_of(getppid()), Names());
    EXPECT_EQ(names_of(getpid()), Names{":"});
}

TEST_F(NamesOfAProcess, GoWithIt)
{
    Editor editor(*bus_, kUsual);
    const pid_t pid = editor.pid();
    ASSERT_EQ(names_of(pid), (Names{kName, ":"}));
    editor.end();
    EXPECT_EQ(names_of(pid), Names());
}

// ---- actions

class AnAction : public OnABus {};

TEST_F(AnAction, IsRunToItsEnd)
{
    Editor editor(*bus_, kUsual);
    EXPECT_EQ(told(connection_->activate(kName, "quick", kLong)), "done");
    EXPECT_EQ(editor.line(), "ran quick");
}

TEST_F(AnAction, IsRunByTheEditorThatHasTheName)
{
    Editor usual(*bus_, kUsual);
    Editor tagged(*bus_, kTagged);
    EXPECT_EQ(told(connection_->activate(kTaggedName, "quick", kLong)), "done");
    EXPECT_EQ(told(connection_->activate(kName, "quick", kLong)), "done");
    EXPECT_EQ(tagged.line(), "ran quick");
    EXPECT_EQ(usual.line(), "ran quick");
}

TEST_F(AnAction, IsRunByItsUniqueName)
{
    Editor usual(*bus_, kUsual);
    Editor tagged(*bus_, kTagged);
    EXPECT_EQ(told(connection_->activate(connection_->names_of_process(tagged.pid()).back(), "quick", kLong)),
              "done");
    EXPECT_EQ(tagged.line(), "ran quick");
    EXPECT_EQ(told(connection_->activate(connection_->names_of_process(usual.pid()).back(), "quick", kLong)),
              "done");
    EXPECT_EQ(usual.line(), "ran quick");
}

TEST_F(AnAction, ThatIsNotOverInTimeIsUnfinished)
{
    Editor editor(*bus_, kUsual);
    const Elapsed elapsed;
    EXPECT_EQ(told(connection_->activate(kName, "slow", milliseconds(300))), "unfinished");
    EXPECT_GE(elapsed.time(), milliseconds(300));
    EXPECT_EQ(editor.line(), "ran slow");
}

TEST_F(AnAction, IsNotAskedOfABusyEditor)
{
    Editor editor(*bus_, kUsual);
    editor.stop();
    const Elapsed elapsed;
    EXPECT_EQ(told(connection_->activate(kName, "quick", kLong)), "busy");
    EXPECT_GE(elapsed.time(), kBusLimit);
    EXPECT_LT(elapsed.time(), kAtMost);
    EXPECT_EQ(told(connection_->activate(connection_->names_of_process(editor.pid()).back(), "quick", kLong)),
              "busy");
    editor.go_on();
    // It would have run the earlier one first.
    EXPECT_EQ(told(connection_->activate(kName, "slow", milliseconds(300))), "unfinished");
    EXPECT_EQ(editor.line(), "ran slow");
}

struct RefusalCase {
    const char* name;
    std::vector<std::string> editor;
    std::string bus_name;
    std::string action;
    std::string expected;
};
// clang-format off
const RefusalCase kRefusals[] = {
    {"WhenItIsUnknown", kUsual, kName, "org.vant.place.noprefs",
     "the editor has no action org.vant.place.noprefs; its extension is not installed there"},
    {"WhenItIsSwitchedOff", kUsual, kName, "off", "the editor has switched off its action off"},
    {"WhenTheNameIsNobodys", kTagged, kName, "quick",
     "the editor (org.inkscape.Inkscape on the session bus) is not running any more"},
    {"WhenTheNameIsAnotherPrograms",
     {"--name", "a.b"},
     "a.b",
     "quick",
     "what has the name a.b on the session bus is no editor that runs actions"},
    {"WhenTheNameIsNone", kUsual, "not a name", "quick", "\"not a name\" is no name on a session bus"},
    {"WhenItIsNoText", kUsual, kName, "qui\xFF", "the name of an action of the editor is not UTF-8"},
    {"WhenTheEditorEndsMeanwhile", kUsual, kName, "last", "the editor ended while it ran its action last"},
};
// clang-format on
class AnActionIsRefused : public OnABus, public testing::WithParamInterface<RefusalCase> {};
TEST_P(AnActionIsRefused, InASentence)
{
    const Editor editor(*bus_, GetParam().editor);
    EXPECT_EQ(told(connection_->activate(GetParam().bus_name, GetParam().action, kLong)),
              GetParam().expected);
    // The connection has come to no harm.
    EXPECT_EQ(connection_->names_of_process(getpid()).size(), 1U);
}
INSTANTIATE_TEST_SUITE_P(, AnActionIsRefused, testing::ValuesIn(kRefusals),
                         [](const auto& row) { return row.param.name; });

// ---- windows

struct WindowsCase {
    const char* name;
    std::vector<std::string> editor;
    std::string bus_name;
    std::optional<std::size_t> count;
    std::string snap; // none, on or off
};
// clang-format off
const WindowsCase kWindows[] = {
    {"OneTellsItsState", joined(kUsual, {"--window", "snap=on,grid=off"}), kName, 1, "on"},
    {"OneTellsThatItIsOff", joined(kUsual, {"--window", "snap=off,grid=on"}), kName, 1, "off"},
    {"OfATaggedEditorTellIt", joined(kTagged, {"--window", "snap=on"}), kTaggedName, 1, "on"},
    {"ThatAgreeAreOneAnswer",
     joined(kUsual, {"--window", "snap=on", "--window", "snap=on", "--window", "snap=on"}), kName, 3, "on"},
    {"ThatAgreeOnOffAreOneAnswer", joined(kUsual, {"--window", "snap=off", "--window", "snap=off"}), kName, 2,
     "off"},
    {"ThatDisagreeAreNone",
     joined(kUsual, {"--window", "snap=on", "--window", "snap=on", "--window", "snap=off"}), kName, 3,
     "none"},
    {"OfWhichOneDoesNotTellAreNone", joined(kUsual, {"--window", "snap=on", "--window", "grid=on"}), kName, 2,
     "none"},
    {"WhoseStateIsNoSwitchTellNone", joined(kUsual, {"--window", "snap=half"}), kName, 1, "none"},
    {"ThatAreNotOpenTellNone", kUsual, kName, 0, "none"},
    {"OfAnEditorThatIsNotThereTellNone", kTagged, kName, std::nullopt, "none"},
    {"OfWhatIsNoNameTellNone", kUsual, "", std::nullopt, "none"},
};
// clang-format on
class Windows : public OnABus, public testing::WithParamInterface<WindowsCase> {};
TEST_P(Windows, OfAnEditor)
{
    const Editor editor(*bus_, GetParam().editor);
    EXPECT_EQ(connection_->window_count(GetParam().bus_name), GetParam().count);
    EXPECT_EQ(told(connection_->window_state(GetParam().bus_name, "snap")), GetParam().snap);
}
INSTANTIATE_TEST_SUITE_P(, Windows, testing::ValuesIn(kWindows),
                         [](const auto& row) { return row.param.name; });

using AWindow = OnABus;

TEST_F(AWindow, IsAskedAlone)
{
    const Editor editor(*bus_, joined(kUsual, {"--window", "snap=on", "--window", "snap=off"}));
    const auto state_of = [&](const std::string& path, const std::string& action) {
        return told(connection_->window_state_of(kName, path, action));
    };
    EXPECT_EQ(state_of("/org/inkscape/Inkscape/window/1", "snap"), "on");
    EXPECT_EQ(state_of("/org/inkscape/Inkscape/window/2", "snap"), "off");
    EXPECT_EQ(state_of("/org/inkscape/Inkscape/window/3", "snap"), "none");
    EXPECT_EQ(state_of("/org/inkscape/Inkscape/window/1", "snap\xFF"), "none");
    EXPECT_EQ(state_of("window 1", "snap"), "none");
    EXPECT_EQ(state_of("", "snap"), "none");
    EXPECT_EQ(told(connection_->window_state_of("", "/org/inkscape/Inkscape/window/1", "snap")), "none");
    EXPECT_EQ(state_of("/org/inkscape/Inkscape/window/1", "snap"), "on");
}

TEST_F(AWindow, OfABusyEditorTellsNothingInTime)
{
    const Editor editor(
        *bus_, joined(kUsual, {"--window", "snap=on", "--window", "snap=on", "--window", "snap=on"}));
    editor.stop();
    const Elapsed elapsed;
    EXPECT_EQ(told(connection_->window_state(kName, "snap")), "none");
    EXPECT_EQ(connection_->window_count(kName), std::nullopt);
    EXPECT_LT(elapsed.time(), 2 * kAtMost);
}

// ---- notifications

struct NotificationCase {
    const char* name;
    const char* capabilities;
    const char* summary;
    const char* body;
    const char* expected;
};
// clang-format off
const NotificationCase kNotifications[] = {
    {"ShowsBothTexts", "body", "VANT", "The sketch is in the drawing.",
     "notified VANT|VANT|The sketch is in the drawing."},
    {"EscapesMarkupWhereItIsRead", "body,body-markup", "a < b", "a < b & c",
     "notified VANT|a < b|a &lt; b &amp; c"},
    {"LeavesMarkupWhereItIsShown", "actions,body", "a < b", "a < b & c", "notified VANT|a < b|a < b & c"},
    {"MendsWhatIsNoText", "body", "drawing \xFF.svg", "\xC3",
     "notified VANT|drawing \xEF\xBF\xBD.svg|\xEF\xBF\xBD"},
};
// clang-format on
class ANotification : public OnABus, public testing::WithParamInterface<NotificationCase> {};
TEST_P(ANotification, IsShown)
{
    Editor desktop(*bus_, {"--notifications", GetParam().capabilities});
    EXPECT_TRUE(connection_->notify(GetParam().summary, GetParam().body));
    EXPECT_EQ(desktop.line(), GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(, ANotification, testing::ValuesIn(kNotifications),
                         [](const auto& row) { return row.param.name; });

using NoNotification = OnABus;

TEST_F(NoNotification, IsShownWhereNothingShowsAny) { EXPECT_FALSE(connection_->notify("summary", "body")); }

TEST_F(NoNotification, IsShownByAServiceThatDoesNotAnswer)
{
    const Editor desktop(*bus_, {"--notifications", "body"});
    desktop.stop();
    const Elapsed elapsed;
    EXPECT_FALSE(connection_->notify("summary", "body"));
    EXPECT_GE(elapsed.time(), kBusLimit);
    EXPECT_LT(elapsed.time(), kAtMost);
}

} // namespace
