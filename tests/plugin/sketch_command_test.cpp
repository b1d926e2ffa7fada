#include "Source/plugin/vantPlugin.h"
#include "tests/plugin/failing_memory.h"
#include "tests/plugin/fixed_port_peer.h"
#include "tests/plugin/recording_host.h"
#include "tests/support/descriptors.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using plugin_tests::answering;
using plugin_tests::Fault;
using plugin_tests::FixedPortListener;
using plugin_tests::FixedPortPeer;
using plugin_tests::MemoryLimit;
using plugin_tests::RecordingHost;
using plugin_tests::reset_connection;
using support::Descriptor;
using Lines = std::vector<std::string>;

constexpr HostError kQueryCode = 4711; // of the first query, which the command returns

const std::string kLineAnswer =
    R"(<vant><shape><line><start x="0" y="0" z="0"/><end x="100" y="50" z="0"/></line></shape></vant>)";

// ---------------------------------------------------------------------------------------- the event order

const Lines kGuard = {"GetShowPageTiling"};
const Lines kWindow = {
    "ActiveNonFloatingWindow",
    "CopyWindowTitleAsCFString artwork",
    "CFStringGetLength 'Artwork'",
    "CFStringGetMaximumSizeForEncoding 7 UTF-8",
    "CFStringGetCString 'Artwork' 21 UTF-8",
    "IsWindowCollapsed artwork",
};
const Lines kFront = {"GetFrontProcess 0,0"};
const Lines kBoard = {"CopyWindowTitleAsCFString artwork", "GetWindowBounds artwork 40"}; // after the window
const Lines kMapping = {
    "GetNthDocumentView 0",
    "ViewPointToArtworkPoint view 0,0",
    "ViewPointToArtworkPoint view 100,0",
    "ViewPointToArtworkPoint view 0,100",
};
const Lines kGrid = {"GetNthDocumentView 0", "IsGridShown view", "IsSnappedToGrid view"};
const Lines kPath = {"GetNthDocumentView 0", "GetCurrentLayer", "GetFirstArtOfLayer layer",
                     "NewArt 2 3 group"};
const Lines kLineSegments = {
    "SetPathSegments path0 0 1 p=0,0 in=0,0 out=0,0 corner",
    "SetPathSegments path0 1 1 p=100,50 in=100,50 out=100,50 corner",
};
const Lines kRestore = {"SetFrontProcess 7,9"};
const Lines kNoDocument = {"CreateStandardAlert 0 'VANT information' 'Unable to find document'",
                           "RunStandardAlert"};
const Lines kNoFigure = {"CreateStandardAlert 0 'VANT Information' 'Unable to start VANT'",
                         "RunStandardAlert"};
const Lines kException = {"CreateStandardAlert 0 'VANT information' 'Unable to start VANT'",
                          "RunStandardAlert"};

Lines operator+(Lines first, const Lines& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Lines kBeforeCapture = kGuard + kWindow + kFront;
const Lines kCapture = kWindow + kBoard + kMapping + kGrid;
const Lines kBeforeExchange = kBeforeCapture + kCapture;

// The lines up to the count-th call of that name, and that one.
Lines up_to(const Lines& lines, const std::string& call, int count)
{
    Lines result;
    for (const std::string& line : lines) {
        result.push_back(line);
        if (line.substr(0, line.find(' ')) == call && --count == 0)
            break;
    }
    return result;
}

// A host with an open document, and the plug-in with its suites.
class Command : public testing::Test {
protected:
    Command()
    {
        HostMessage message = host.message();
        plugin.AcquireSuites(&message);
        host.calls.clear();
        host.counts.clear();
        host.page_tiling_code = kQueryCode;
        host.open_artwork({22, 0, 622, 800});
    }

    HostError run()
    {
        HostMessage message = host.message();
        const HostError result = plugin.GoMenuItem(&message);
        parked.park(); // a link has closed descriptor 0
        return result;
    }

    support::ParkedInput parked;
    RecordingHost host;
    vantPlugin plugin;
};

class SketchCommand : public Command {};

TEST_F(SketchCommand, DrawsTheAnswerAndBringsTheHostBackToTheFront)
{
    FixedPortPeer peer(answering(kLineAnswer));
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, kBeforeExchange + kPath + kLineSegments + kRestore);
}

TEST_F(SketchCommand, DrawsNothingForAFigureWithoutStrokes)
{
    FixedPortPeer peer(answering("<vant></vant>"));
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, kBeforeExchange + kRestore);
}

TEST_F(SketchCommand, TellsTheSketchApplicationOfTheView)
{
    host.origin_h = 36;
    host.origin_v = 700;
    host.points_per_pixel = 0.25F;
    host.grid_shown = host.grid_snaps = true;
    FixedPortPeer peer(answering(kLineAnswer));
    run();
    EXPECT_EQ(peer.request(), R"(<?xml version="1.0" encoding="UTF-8" standalone="no"?><vant>)"
                              R"(<viewport_information height="600" width="800" x="0" y="22"/>)"
                              R"(<model_space_information><viewport_space_to_model_space_mapping_matrix)"
                              R"( m00="0.25" m01="0" m02="0" m03="36" m10="0" m11="-0.25" m12="0" m13="700")"
                              R"( m20="0" m21="0" m22="0.25" m23="0" m30="0" m31="0" m32="0" m33="1"/>)"
                              R"(<snapping_information><unit_grid_space_to_model_space_mapping_matrix)"
                              R"( m00="9" m01="0" m02="0" m03="0" m10="0" m11="-9" m12="0" m13="0")"
                              R"( m20="0" m21="0" m22="9" m23="0" m30="0" m31="0" m32="0" m33="1"/>)"
                              R"(<derivational_scale_factor>8</derivational_scale_factor>)"
                              R"(</snapping_information></model_space_information></vant>)"
                              "\n");
}

// ------------------------------------------------------------------------------------------------ the grid

struct GridCase {
    const char* name;
    bool shown;
    bool snaps;
    Lines settings;     // the calls after the flags
    const char* factor; // in the request
};

const GridCase kGrids[] = {
    {"ShownAndSnapping",        true,  true,  {"GridSettings"}, ">8<"},
    {"ShownButNotSnapping",     true,  false, {},               ">2<"},
    {"SnappingButNotShown",     false, true,  {},               ">2<"},
    {"NeitherShownNorSnapping", false, false, {},               ">2<"},
};

class GridInForce : public Command, public testing::WithParamInterface<GridCase> {};

TEST_P(GridInForce, IsAskedByBothFlags)
{
    host.grid_shown = GetParam().shown;
    host.grid_snaps = GetParam().snaps;
    FixedPortPeer peer(answering("<vant></vant>"));
    run();
    EXPECT_EQ(host.calls, kBeforeExchange + GetParam().settings + kRestore);
    EXPECT_NE(peer.request().find(GetParam().factor), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(, GridInForce, testing::ValuesIn(kGrids),
                         [](const auto& row) { return row.param.name; });

// ------------------------------------------------------------------------------------------- the tolerance

// A gap of 1 point between the two pieces of a curve.
const std::string kGapAnswer = R"(<vant><shape><open_free_curve><bezier_curve>)"
                               R"(<control_point x="0" y="0"/><control_point x="1" y="1"/>)"
                               R"(<control_point x="2" y="1"/><control_point x="3" y="0"/>)"
                               R"(<control_point x="4" y="0"/><control_point x="5" y="1"/>)"
                               R"(<control_point x="6" y="1"/><control_point x="7" y="0"/>)"
                               R"(</bezier_curve></open_free_curve></shape></vant>)";

struct ToleranceCase {
    const char* name;
    float points_per_pixel;
    bool grid;
    std::size_t segments; // 3: the gap is closed, 4: bridged
};

const ToleranceCase kTolerances[] = {
    {"AGapBelowAPixelIsClosed",   1.0009765625F, false, 3},
    {"AGapOfAPixelIsBridged",     1,             false, 4},
    {"AGapOfFourPixelsIsBridged", 0.25F,         false, 4},
    {"TheGridClosesNoGap",        0.25F,         true,  4},
    {"TheGridBridgesNoGap",       2,             true,  3},
};

class Tolerance : public Command, public testing::WithParamInterface<ToleranceCase> {};

TEST_P(Tolerance, IsAPixelInTheArtwork)
{
    host.points_per_pixel = GetParam().points_per_pixel;
    host.grid_shown = host.grid_snaps = GetParam().grid;
    FixedPortPeer peer(answering(kGapAnswer));
    run();
    ASSERT_EQ(host.paths.size(), 1U);
    EXPECT_EQ(host.paths[0].segments.size(), GetParam().segments);
}

INSTANTIATE_TEST_SUITE_P(, Tolerance, testing::ValuesIn(kTolerances),
                         [](const auto& row) { return row.param.name; });

// --------------------------------------------------------------------------------- no document: no exchange

struct NoDocumentCase {
    const char* name;
    void (*close)(RecordingHost& host);
    Lines calls;
};

// clang-format off
const NoDocumentCase kNoDocuments[] = {
    {"ShownPageTiling", [](RecordingHost& host) { host.page_tiling = true; },
     kGuard + kNoDocument},
    {"NoWindow", [](RecordingHost& host) { host.windows.clear(); },
     kGuard + Lines{"ActiveNonFloatingWindow"} + kNoDocument},
    {"ACollapsedWindow", [](RecordingHost& host) { host.windows.front().collapsed = true; },
     kGuard + kWindow + Lines{"GetPreviousWindow artwork"} + kNoDocument},
};
// clang-format on

class WithoutDocument : public Command, public testing::WithParamInterface<NoDocumentCase> {};

TEST_P(WithoutDocument, ShowsAnAlertAndConnectsNowhere)
{
    const FixedPortListener listener;
    GetParam().close(host);
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, GetParam().calls);
    EXPECT_FALSE(listener.somebody_waits());
}

INSTANTIATE_TEST_SUITE_P(, WithoutDocument, testing::ValuesIn(kNoDocuments),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchCommand, GoesOnWhenTheFlagCannotBeAsked)
{
    host.faults["GetShowPageTiling"] = Fault{kHostNoDocument};
    FixedPortPeer peer(answering(kLineAnswer));
    EXPECT_EQ(run(), kHostNoDocument);
    EXPECT_EQ(host.calls, kBeforeExchange + kPath + kLineSegments + kRestore);
}

// ----------------------------------------------------------------------------------- an exchange that fails

struct NoFigureCase {
    const char* name;
    FixedPortPeer::Script script; // none: nobody listens
};

const NoFigureCase kNoFigures[] = {
    {"NobodyListens",         nullptr                          },
    {"TheAnswerIsMalformed",  answering("<vant><shape></vant>")},
    {"TheAnswerIsIncomplete", answering("<vant><shape>")       },
    {"TheAnswerIsEmpty",      answering("")                    },
    {"TheConnectionIsReset",  reset_connection                 },
};

class WithoutFigure : public Command, public testing::WithParamInterface<NoFigureCase> {};

TEST_P(WithoutFigure, ShowsAnAlertWhileTheLinkIsOpenAndRestoresTheFront)
{
    std::unique_ptr<FixedPortPeer> peer;
    if (GetParam().script != nullptr)
        peer = std::make_unique<FixedPortPeer>(GetParam().script);
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, kBeforeExchange + kNoFigure + kRestore);
    ASSERT_EQ(host.alerts.size(), 1U);
    EXPECT_TRUE(host.alerts[0].link_open);
}

INSTANTIATE_TEST_SUITE_P(, WithoutFigure, testing::ValuesIn(kNoFigures),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchCommand, KeepsTwoSpellingsOfTheAlertsTitle)
{
    run(); // nobody listens
    host.windows.clear();
    run();
    ASSERT_EQ(host.alerts.size(), 2U);
    EXPECT_EQ(host.alerts[0].text, "VANT Information");
    EXPECT_EQ(host.alerts[1].text, "VANT information");
}

// ------------------------------------------------------------------------------------------------ exceptions

struct ExceptionCase {
    const char* name;
    const char* call; // that throws
    int at_call;
    bool after_exchange; // else nobody has to answer
};

const ExceptionCase kExceptions[] = {
    {"FromTheGuard",           "GetShowPageTiling",       1, false},
    {"FromTheWindowSearch",    "IsWindowCollapsed",       1, false},
    {"FromTheFrontProcess",    "GetFrontProcess",         1, false},
    {"FromTheWindowsBounds",   "GetWindowBounds",         1, false},
    {"FromTheView",            "GetNthDocumentView",      1, false},
    {"FromTheMapping",         "ViewPointToArtworkPoint", 1, false},
    {"FromTheGridsFirstFlag",  "IsGridShown",             1, false},
    {"FromTheGridsSecondFlag", "IsSnappedToGrid",         1, false},
    {"FromTheLayer",           "GetCurrentLayer",         1, true },
    {"FromTheGroup",           "GetFirstArtOfLayer",      1, true },
    {"FromTheFirstPath",       "NewArt",                  1, true },
    {"FromASegment",           "SetPathSegments",         1, true },
    {"FromTheSecondPath",      "NewArt",                  2, true },
};

const std::string kTwoStrokes =
    R"(<vant><shape><line><start x="0" y="0"/><end x="100" y="50"/></line></shape><shape></shape></vant>)";

class Exceptions : public Command, public testing::WithParamInterface<ExceptionCase> {};

TEST_P(Exceptions, EndTheLinkThenShowAnAlertAndRestoreNothing)
{
    host.faults[GetParam().call] = Fault{0, true, GetParam().at_call};
    std::unique_ptr<FixedPortPeer> peer;
    if (GetParam().after_exchange)
        peer = std::make_unique<FixedPortPeer>(answering(kTwoStrokes));
    const bool was_asked = std::string(GetParam().call) != "GetShowPageTiling";
    const Lines calls =
        up_to(kBeforeExchange + kPath + kLineSegments + kPath, GetParam().call, GetParam().at_call);
    const bool has_link = calls.size() > kBeforeCapture.size();

    EXPECT_EQ(run(), was_asked ? kQueryCode : 0);

    EXPECT_EQ(host.calls, calls + kException);
    ASSERT_EQ(host.alerts.size(), 1U);
    EXPECT_EQ(host.alerts[0].link_open, !has_link); // the link has closed descriptor 0
}

INSTANTIATE_TEST_SUITE_P(, Exceptions, testing::ValuesIn(kExceptions),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchCommand, KeepsThePathsThatWereMadeBeforeAnException)
{
    host.faults["NewArt"] = Fault{0, true, 2};
    FixedPortPeer peer(answering(kTwoStrokes));
    run();
    ASSERT_EQ(host.paths.size(), 1U);
    EXPECT_EQ(host.paths[0].segments.size(), 2U);
}

TEST_F(SketchCommand, KeepsTheFrontProcessAsItIsAfterAnException)
{
    // The link throws: memory runs out over a long answer.
    const std::string answer = "<vant>" + std::string(std::size_t{4} << 20, ' ') + "</vant>\n";
    FixedPortPeer peer([&answer](Descriptor& connection) {
        for (std::size_t sent = 0; sent < answer.size();) {
            const ssize_t count =
                send(connection.get(), answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
            if (count <= 0)
                return; // the link has gone
            sent += static_cast<std::size_t>(count);
        }
    });
    HostError result = 0;
    {
        host.calls.reserve(1000);
        const MemoryLimit limit(std::size_t{1} << 20);
        HostMessage message = host.message();
        result = plugin.GoMenuItem(&message);
    }
    parked.park();
    EXPECT_EQ(result, kQueryCode);
    EXPECT_EQ(host.calls, kBeforeExchange + kException);
    ASSERT_EQ(host.alerts.size(), 1U);
    EXPECT_FALSE(host.alerts[0].link_open);
}

// ----------------------------------------------------------------------------------------------- null suites

struct NullSuite {
    const char* name;
    void (*lose)(vantPlugin& plugin);
    bool after_exchange;
    Lines calls;
    HostError result;
};

// clang-format off
const NullSuite kNullSuites[] = {
    {"DocumentView", [](vantPlugin& plugin) { plugin.document_view_suite = nullptr; }, false, {}, 0},
    {"Grid", [](vantPlugin& plugin) { plugin.grid_suite = nullptr; }, false,
     up_to(kBeforeExchange, "GetNthDocumentView", 2), kQueryCode},
    {"Layer", [](vantPlugin& plugin) { plugin.layer_suite = nullptr; }, true,
     up_to(kBeforeExchange + kPath, "GetNthDocumentView", 3), kQueryCode},
    {"Art", [](vantPlugin& plugin) { plugin.art_suite = nullptr; }, true,
     up_to(kBeforeExchange + kPath, "GetCurrentLayer", 1), kQueryCode},
    {"Path", [](vantPlugin& plugin) { plugin.path_suite = nullptr; }, true,
     kBeforeExchange + kPath, kQueryCode},
};
// clang-format on

class NullSuites : public Command, public testing::WithParamInterface<NullSuite> {};

TEST_P(NullSuites, EndTheCommandAsAnExceptionDoes)
{
    GetParam().lose(plugin);
    std::unique_ptr<FixedPortPeer> peer;
    if (GetParam().after_exchange)
        peer = std::make_unique<FixedPortPeer>(answering(kLineAnswer));
    EXPECT_EQ(run(), GetParam().result);
    EXPECT_EQ(host.calls, GetParam().calls + kException);
}

INSTANTIATE_TEST_SUITE_P(, NullSuites, testing::ValuesIn(kNullSuites),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchCommand, NeedsNoDocumentSuite)
{
    plugin.document_suite = nullptr;
    FixedPortPeer peer(answering(kLineAnswer));
    run();
    EXPECT_EQ(host.calls, kBeforeExchange + kPath + kLineSegments + kRestore);
}

// ----------------------------------------------------------------------------- codes that nobody looks at

struct Replacement {
    const char* part;
    const char* by;
};

struct IgnoredCode {
    const char* name;
    const char* call;
    std::vector<Replacement> nulls; // handed on, since the host gave nothing
};

// clang-format off
const IgnoredCode kIgnoredCodes[] = {
    {"OfTheFrontProcess", "GetFrontProcess", {{"SetFrontProcess 7,9", "SetFrontProcess 0,0"}}},
    {"OfRestoringTheFront", "SetFrontProcess", {}},
    {"OfTheBounds", "GetWindowBounds", {}},
    {"OfTheView", "GetNthDocumentView",
     {{"Point view", "Point null"}, {"Shown view", "Shown null"}, {"Grid view", "Grid null"}}},
    {"OfTheMapping", "ViewPointToArtworkPoint", {}},
    {"OfTheLayer", "GetCurrentLayer", {{"OfLayer layer", "OfLayer null"}}},
    {"OfTheGroup", "GetFirstArtOfLayer", {{"2 3 group", "2 3 null"}}},
    {"OfTheNewArt", "NewArt", {{"Segments path0", "Segments null"}}},
    {"OfTheSegments", "SetPathSegments", {}},
};
// clang-format on

Lines replaced(Lines lines, const std::vector<Replacement>& replacements)
{
    for (std::string& line : lines) {
        for (const Replacement& replacement : replacements) {
            const std::size_t at = line.find(replacement.part);
            if (at != std::string::npos)
                line.replace(at, std::string(replacement.part).size(), replacement.by);
        }
    }
    return lines;
}

class IgnoredCodes : public Command, public testing::WithParamInterface<IgnoredCode> {};

TEST_P(IgnoredCodes, LetTheCommandGoOn)
{
    host.faults[GetParam().call] = Fault{kHostBadParameter};
    FixedPortPeer peer(answering(kLineAnswer));
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, replaced(kBeforeExchange + kPath + kLineSegments + kRestore, GetParam().nulls));
}

INSTANTIATE_TEST_SUITE_P(, IgnoredCodes, testing::ValuesIn(kIgnoredCodes),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchCommand, RunsNothingOfAnAlertThatCannotBeMade)
{
    host.faults["CreateStandardAlert"] = Fault{kHostOutOfMemory};
    EXPECT_EQ(run(), kQueryCode);
    const Lines alert = {kNoFigure[0], "RunStandardAlert null"};
    EXPECT_EQ(host.calls, kBeforeExchange + alert + kRestore);
}

TEST_F(SketchCommand, GoesOnAfterAnAlertThatCannotBeShown)
{
    host.faults["RunStandardAlert"] = Fault{kHostWrongTime};
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, kBeforeExchange + kNoFigure + kRestore);
}

TEST_F(SketchCommand, RunsAgainAfterAFailure)
{
    run(); // nobody listens
    host.calls.clear();
    FixedPortPeer peer(answering(kLineAnswer));
    EXPECT_EQ(run(), kQueryCode);
    EXPECT_EQ(host.calls, kBeforeExchange + kPath + kLineSegments + kRestore);
}

} // namespace
