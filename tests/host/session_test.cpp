// A session's life: messages, paths, alerts, what is left when memory is short.
#include "host/kit/session.h"
#include "tests/host/open_session.h"
#include "tests/plugin/failing_memory.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using host_test::answer;
using host_test::OpenSession;
using host_test::PlugIn;
using plugin_tests::MemoryLimit;
using vnt::host::ArtPoint;
using vnt::host::PathArt;
using vnt::host::Problem;
using vnt::host::Result;
using vnt::host::Session;
using Lines = std::vector<std::string>;

// ------------------------------------------------------------------------------------------------ messages

std::string caller_seen;
std::string selector_seen;

HostError answer_with_a_code(const char* caller, const char* selector, HostMessage* message)
{
    caller_seen = caller;
    selector_seen = selector;
    return message != nullptr && message->plugin != nullptr && message->basic == &vnt::host::basic_suite()
               ? 4711
               : -1;
}

HostError throw_an_exception(const char*, const char*, HostMessage*) { throw std::runtime_error("no ink"); }
HostError throw_a_number(const char*, const char*, HostMessage*) { throw 7; }

TEST(SessionMessages, ReachThePlugInAndBringItsCodeBack)
{
    OpenSession host;
    const Result<HostError> sent = host.session.send(answer_with_a_code, kAccessCaller, kReloadSelector);
    EXPECT_EQ(std::get<HostError>(sent), 4711);
    EXPECT_EQ(caller_seen, "SP Access");
    EXPECT_EQ(selector_seen, "Reload");
}

TEST(SessionMessages, TellOfAnExceptionThatComesOut)
{
    OpenSession host;
    const Result<HostError> sent = host.session.send(throw_an_exception, kInterfaceCaller, kAboutSelector);
    EXPECT_EQ(
        std::get<Problem>(sent).sentence,
        "the plug-in failed at the message SP Interface / About: it let an exception out (no ink); report it "
        "to the plug-in's makers");
}

TEST(SessionMessages, TellOfAnyThingThatIsThrown)
{
    OpenSession host;
    const Result<HostError> sent = host.session.send(throw_a_number, kMenuCaller, kGoSelector);
    EXPECT_EQ(std::get<Problem>(sent).sentence, "the plug-in failed at the message AI Menu / AI Go: it let "
                                                "an exception out (of another kind); report "
                                                "it to the plug-in's makers");
}

TEST(SessionMessages, EndWithAnException)
{
    OpenSession host;
    host.session.send(throw_an_exception, kMenuCaller, kGoSelector);
    EXPECT_EQ(ActiveNonFloatingWindow(), nullptr);
    EXPECT_EQ(host.during([](PlugIn& plug_in) { return answer(plug_in.window != nullptr); }), "1");
}

TEST(Sessions, AreOneAtATime)
{
    OpenSession host;
    EXPECT_THROW(OpenSession(), std::logic_error);
    // The first one is still the one that there is.
    EXPECT_EQ(host.during([](PlugIn& plug_in) { return answer(plug_in.window != nullptr); }), "1");
}

TEST(Sessions, MayFollowEachOther)
{
    for (int i = 0; i < 2; ++i) {
        OpenSession host;
        host.during([](PlugIn& plug_in) {
            plug_in.new_path();
            return std::string();
        });
        EXPECT_EQ(host.session.path_count(), 1U);
    }
}

TEST(Sessions, TakeBackTextsThatNobodyGaveBack)
{
    OpenSession host; // a leak would be told at the end
    EXPECT_EQ(host.during([](PlugIn& plug_in) { return plug_in.new_text("Start")->bytes; }), "Start");
}

TEST(Sessions, RememberMenuItems)
{
    OpenSession host;
    EXPECT_FALSE(host.session.has_menu_item("Start VANT"));
    vnt::host::session_state()->menu_items.push_back({"VANT", "View Utilities", "Start VANT"});
    EXPECT_TRUE(host.session.has_menu_item("Start VANT"));
    EXPECT_FALSE(host.session.has_menu_item("Start"));
    EXPECT_FALSE(host.session.has_menu_item("VANT"));
}

// --------------------------------------------------------------------------------------------------- tables

// The address of the function in that place of a table, counted from 1; null for a reserved one.
template <class Suite>
const void* function_of(const Suite& suite, std::size_t place)
{
    return reinterpret_cast<const void* const*>(&suite)[place - 1];
}

TEST(SuiteTables, HaveTheirFunctionsInTheirPlacesAndNullBetween)
{
    OpenSession host;
    host.during([](PlugIn& plug_in) {
        for (std::size_t place = 1; place <= 20; ++place)
            EXPECT_EQ(function_of(plug_in.views, place), nullptr) << place;
        EXPECT_EQ(function_of(plug_in.views, 21),
                  reinterpret_cast<const void*>(plug_in.views.GetShowPageTiling));
        EXPECT_NE(function_of(plug_in.grids, 1), nullptr);
        for (std::size_t place = 2; place <= 4; ++place)
            EXPECT_EQ(function_of(plug_in.grids, place), nullptr) << place;
        EXPECT_EQ(function_of(plug_in.grids, 5), reinterpret_cast<const void*>(plug_in.grids.IsShown));
        EXPECT_EQ(function_of(plug_in.grids, 6), reinterpret_cast<const void*>(plug_in.grids.IsSnappedTo));
        return std::string();
    });
}

TEST(SuiteTables, AreTheSameInEveryMessage)
{
    OpenSession host;
    const void* first = nullptr;
    const void* second = nullptr;
    for (const void** table : {&first, &second}) {
        host.during([&](PlugIn& plug_in) {
            *table = &plug_in.arts;
            return std::string();
        });
    }
    EXPECT_EQ(first, second);
}

// --------------------------------------------------------------------------------------------------- paths

AIPathSegment segment(float h)
{
    return {
        {h,     1},
        {h - 1, 2},
        {h + 1, 3},
        1
    };
}

std::vector<float> anchors_of(const PathArt& path)
{
    std::vector<float> anchors;
    for (const vnt::host::PathSegment& each : path)
        anchors.push_back(each.p.h);
    return anchors;
}

class SessionPaths : public testing::Test {
protected:
    // Runs work in a message, and takes the paths afterwards.
    std::vector<PathArt> paths_after(const std::function<void(PlugIn&)>& work)
    {
        host.during([&](PlugIn& plug_in) {
            work(plug_in);
            return std::string();
        });
        return host.session.take_paths();
    }

    static HostError set(PlugIn& plug_in, AIArtHandle path, std::int16_t number, float h)
    {
        const AIPathSegment one = segment(h);
        return plug_in.paths.SetPathSegments(path, number, 1, &one);
    }

    OpenSession host;
};

TEST_F(SessionPaths, KeepAnchorsAndHandles)
{
    const auto paths = paths_after([](PlugIn& plug_in) { set(plug_in, plug_in.new_path(), 0, 10); });
    ASSERT_EQ(paths.size(), 1U);
    ASSERT_EQ(paths[0].size(), 1U);
    EXPECT_EQ(paths[0][0].p, (ArtPoint{10, 1}));
    EXPECT_EQ(paths[0][0].in, (ArtPoint{9, 2}));
    EXPECT_EQ(paths[0][0].out, (ArtPoint{11, 3}));
}

TEST_F(SessionPaths, GrowOneByOne)
{
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle path = plug_in.new_path();
        for (std::int16_t i = 0; i < 5; ++i)
            EXPECT_EQ(set(plug_in, path, i, i), kHostNoError);
    });
    EXPECT_EQ(anchors_of(paths.at(0)), (std::vector<float>{0, 1, 2, 3, 4}));
}

TEST_F(SessionPaths, ReplaceASegmentThatThereIs)
{
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle path = plug_in.new_path();
        for (std::int16_t i = 0; i < 3; ++i)
            set(plug_in, path, i, i);
        EXPECT_EQ(set(plug_in, path, 1, 50), kHostNoError);
    });
    EXPECT_EQ(anchors_of(paths.at(0)), (std::vector<float>{0, 50, 2}));
}

TEST_F(SessionPaths, TakeTwoSegmentsOverTheirEnd)
{
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle path = plug_in.new_path();
        set(plug_in, path, 0, 0);
        set(plug_in, path, 1, 1);
        const AIPathSegment two[] = {segment(50), segment(60)};
        EXPECT_EQ(plug_in.paths.SetPathSegments(path, 1, 2, two), kHostNoError);
    });
    EXPECT_EQ(anchors_of(paths.at(0)), (std::vector<float>{0, 50, 60}));
    EXPECT_EQ(host.session.notes(), Lines{});
}

TEST_F(SessionPaths, AreCutShortAtASegmentPastTheirEnd)
{
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle whole = plug_in.new_path();
        set(plug_in, whole, 0, 7);
        const AIArtHandle path = plug_in.new_path();
        set(plug_in, path, 0, 0);
        set(plug_in, path, 1, 1);
        EXPECT_EQ(set(plug_in, path, 3, 3), kHostOutOfRange);
    });
    EXPECT_EQ(anchors_of(paths.at(0)), (std::vector<float>{7}));
    EXPECT_EQ(anchors_of(paths.at(1)), (std::vector<float>{0, 1}));
    EXPECT_EQ(host.session.notes(),
              Lines{"path 1 is cut short at 2 segments: the plug-in's segment numbers go no further"});
}

// As a plug-in does that counts them in 16 bits.
TEST_F(SessionPaths, AreCutShortWhereSegmentNumbersWrap)
{
    constexpr int kMost = 32768;
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle path = plug_in.new_path();
        for (int i = 0; i < kMost; ++i)
            EXPECT_EQ(set(plug_in, path, static_cast<std::int16_t>(i), static_cast<float>(i)), kHostNoError);
        EXPECT_EQ(set(plug_in, path, -32768, 0), kHostOutOfRange);
    });
    EXPECT_EQ(paths.at(0).size(), 32768U);
    EXPECT_EQ(paths.at(0).back().p.h, 32767);
    EXPECT_EQ(host.session.notes(),
              Lines{"path 0 is cut short at 32768 segments: the plug-in's segment numbers go no further"});
}

// Numbers in 16 bits that go on counting come back to 0.
TEST_F(SessionPaths, StayCutShort)
{
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle path = plug_in.new_path();
        set(plug_in, path, 0, 10);
        set(plug_in, path, 1, 11);
        EXPECT_EQ(set(plug_in, path, -1, 12), kHostOutOfRange);
        EXPECT_EQ(set(plug_in, path, 0, 13), kHostOutOfRange);
        EXPECT_EQ(set(plug_in, path, 2, 14), kHostOutOfRange);
    });
    EXPECT_EQ(anchors_of(paths.at(0)), (std::vector<float>{10, 11}));
    EXPECT_EQ(host.session.notes(),
              Lines{"path 0 is cut short at 2 segments: the plug-in's segment numbers go no further"});
}

TEST_F(SessionPaths, AreTakenInTheirOrderAndOnce)
{
    const auto paths = paths_after([](PlugIn& plug_in) {
        const AIArtHandle first = plug_in.new_path();
        const AIArtHandle second = plug_in.new_path();
        plug_in.new_path();
        set(plug_in, second, 0, 2);
        set(plug_in, first, 0, 1);
    });
    ASSERT_EQ(paths.size(), 3U);
    EXPECT_EQ(anchors_of(paths[0]), (std::vector<float>{1}));
    EXPECT_EQ(anchors_of(paths[1]), (std::vector<float>{2}));
    EXPECT_EQ(anchors_of(paths[2]), (std::vector<float>{}));
    EXPECT_EQ(host.session.path_count(), 0U);
    EXPECT_TRUE(host.session.take_paths().empty());
}

TEST_F(SessionPaths, AreCountedAsTheyAreMade)
{
    host.during([&](PlugIn& plug_in) {
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(host.session.path_count(), i);
            plug_in.new_path();
        }
        return std::string();
    });
    EXPECT_EQ(host.session.path_count(), 3U);
}

// --------------------------------------------------------------------------------------- alerts and callbacks

DialogRef make_alert(const char* text, const char* explanation)
{
    DialogRef alert = nullptr;
    CreateStandardAlert(kAlertStopAlert, CFSTR(text), CFSTR(explanation), nullptr, &alert);
    return alert;
}

TEST(SessionAlerts, AreShownWhenTheyAreRunAndOnce)
{
    OpenSession host;
    host.during([&](PlugIn&) {
        const DialogRef first = make_alert("Ink", "None left");
        const DialogRef second = make_alert("Paper", "Torn");
        EXPECT_EQ(host.alerts, Lines{});
        EXPECT_EQ(RunStandardAlert(second, nullptr, nullptr), kHostNoError);
        EXPECT_EQ(host.alerts, Lines{"Paper: Torn"});
        EXPECT_EQ(RunStandardAlert(second, nullptr, nullptr), kHostBadParameter);
        EXPECT_EQ(RunStandardAlert(first, nullptr, nullptr), kHostNoError);
        return std::string();
    });
    EXPECT_EQ(host.alerts, (Lines{"Paper: Torn", "Ink: None left"}));
    ASSERT_EQ(host.session.alerts().size(), 2U);
    EXPECT_EQ(host.session.alerts()[0].text, "Paper");
    EXPECT_EQ(host.session.alerts()[0].explanation, "Torn");
    EXPECT_EQ(host.session.alerts()[1].text, "Ink");
}

TEST(SessionAlerts, ThatAreNotRunAreNotShown)
{
    OpenSession host;
    host.during([](PlugIn&) {
        make_alert("Ink", "None left");
        return std::string();
    });
    EXPECT_EQ(host.alerts, Lines{});
    EXPECT_TRUE(host.session.alerts().empty());
}

TEST(SessionFront, IsAskedForByThePlugIn)
{
    OpenSession host;
    host.during([](PlugIn&) {
        ProcessSerialNumber front{0, 0};
        GetFrontProcess(&front);
        SetFrontProcess(&front);
        return std::string();
    });
    EXPECT_EQ(host.fronts, 1);
}

TEST(SessionCallbacks, MayBeMissing)
{
    Session session(vnt::host::SessionSetup{});
    const Result<HostError> sent = session.during(kMenuCaller, kGoSelector, [](HostMessage& message) {
        const ProcessSerialNumber host{0, 1};
        EXPECT_EQ(RunStandardAlert(make_alert("Ink", "None left"), nullptr, nullptr), kHostNoError);
        EXPECT_EQ(SetFrontProcess(&host), kHostNoError);
        const void* suite = nullptr;
        return message.basic->AcquireSuite("AI Mood Suite", 1, &suite);
    });
    EXPECT_EQ(std::get<HostError>(sent), kHostNoSuite);
    EXPECT_EQ(session.alerts().size(), 1U);
}

// --------------------------------------------------------------------------------------- without enough memory

struct MemoryCase {
    const char* name;
    // Takes a service's memory away; the answer is its code, and whether it has written nothing.
    std::string (*call)(PlugIn& plug_in);
    const char* service;
};

// What is larger does not come; words for people do.
constexpr std::size_t kTooMuch = 400;

// A path more takes no memory of that size but for now and then, when the list grows by a piece.
std::string new_art_without_memory(PlugIn& p)
{
    const MemoryLimit limit(kTooMuch);
    for (int i = 0; i < 1000; ++i) {
        AIArtHandle path = nullptr;
        if (const HostError error = p.arts.NewArt(kPathArt, kPlaceInsideOnTop, p.group, &path))
            return answer(error, path == nullptr);
    }
    return "there was enough";
}

std::string set_segments_without_memory(PlugIn& p)
{
    const AIArtHandle path = p.new_path();
    const std::vector<AIPathSegment> many(100, segment(1));
    const MemoryLimit limit(kTooMuch);
    const HostError error = p.paths.SetPathSegments(path, 0, 100, many.data());
    return answer(error, path->segments.empty());
}

std::string make_text_without_memory(PlugIn& p)
{
    const std::string bytes(kTooMuch, 'x');
    HostText text = nullptr;
    const MemoryLimit limit(kTooMuch);
    const HostError error = p.texts.MakeFromBytes(bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                                  kHostPlatformEncoding, &text);
    return answer(error, text == nullptr);
}

std::string create_alert_without_memory(PlugIn&)
{
    const HostString ink{std::string(kTooMuch, 'x')};
    DialogRef alert = nullptr;
    const MemoryLimit limit(kTooMuch);
    const HostError error = CreateStandardAlert(kAlertStopAlert, &ink, nullptr, nullptr, &alert);
    return answer(error, alert == nullptr);
}

const MemoryCase kMemoryCases[] = {
    {"NewArt",              new_art_without_memory,      "NewArt"             },
    {"SetPathSegments",     set_segments_without_memory, "SetPathSegments"    },
    {"MakeFromBytes",       make_text_without_memory,    "MakeFromBytes"      },
    {"CreateStandardAlert", create_alert_without_memory, "CreateStandardAlert"},
};

class ShortMemory : public testing::TestWithParam<MemoryCase> {};

TEST_P(ShortMemory, IsTheHostsFault)
{
    OpenSession host(false);
    EXPECT_EQ(host.during(GetParam().call), "5 1");
    const std::string service = GetParam().service;
    EXPECT_EQ(host.session.failure(),
              "not enough memory for " + service + "; try a smaller figure, or allow more with --memory");
    EXPECT_EQ(host.wrong_calls, Lines{"host: " + service + " did not get the memory that it needs"});
}

INSTANTIATE_TEST_SUITE_P(, ShortMemory, testing::ValuesIn(kMemoryCases),
                         [](const auto& row) { return row.param.name; });

} // namespace
