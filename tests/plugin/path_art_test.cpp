#include "Source/geometry/bezier.h"
#include "Source/plugin/vantPlugin.h"
#include "tests/plugin/recording_host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <list>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using plugin_tests::Fault;
using plugin_tests::RecordingHost;
using Lines = std::vector<std::string>;
using vnt::Point;
using Chains = std::list<std::list<Point>>;

constexpr double kTolerance = 0.5;

const Lines kNewPath = {"GetNthDocumentView 0", "GetCurrentLayer", "GetFirstArtOfLayer layer",
                        "NewArt 2 3 group"};

// A plug-in with the host's suites.
class Art : public testing::Test {
protected:
    Art()
    {
        HostMessage message = host.message();
        plugin.AcquireSuites(&message);
        host.calls.clear();
        host.counts.clear();
    }

    // The segments of a path: anchors alone where both handles are retracted, else "in<anchor>out".
    std::string drawn(std::size_t path) const
    {
        std::string text;
        for (const AIPathSegment& segment : host.paths.at(path).segments) {
            const std::string anchor = plugin_tests::text_of(segment.p);
            const std::string in = plugin_tests::text_of(segment.in);
            const std::string out = plugin_tests::text_of(segment.out);
            text += text.empty() ? "" : " ";
            text += (in == anchor ? "" : in + "<") + anchor + (out == anchor ? "" : ">" + out);
        }
        return text;
    }

    RecordingHost host;
    vantPlugin plugin;
};

void add(vnt::StrokeInfo& stroke, std::unique_ptr<vnt::PrimInfo> primitive)
{
    stroke.primitives.push_back(primitive.release());
}

// A free curve of points like "0,0 1,1".
void add_curve(vnt::StrokeInfo& stroke, const std::string& points)
{
    std::list<Point> list;
    std::istringstream in(points);
    char comma = 0;
    for (double x = 0, y = 0; in >> x >> comma >> y;)
        list.emplace_back(x, y, 0.0);
    add(stroke, std::make_unique<vnt::PrimF>(list, false));
}

void add_line(vnt::StrokeInfo& stroke, double x0, double y0, double x1, double y1)
{
    add(stroke, std::make_unique<vnt::PrimL>(Point(x0, y0, 0), Point(x1, y1, 0)));
}

// ------------------------------------------------------------------------------------------------- welding

// A free curve's points pass the conversion as they are, so that a row says what welding gets.
struct WeldCase {
    const char* name;
    const char* points;
    const char* path;
};

// clang-format off
const WeldCase kWelds[] = {
    {"OneGroupIsPassedOn",
     "0,0 1,1 2,1 3,0",
     "0,0>1,1 2,1<3,0"},
    {"TwoGroupsShareTheirAnchor",
     "0,0 1,1 2,1 3,0 3,0 4,-1 5,-1 6,0",
     "0,0>1,1 2,1<3,0>4,-1 5,-1<6,0"},
    {"ANearStartIsDroppedForTheEndBeforeIt",
     "0,0 1,1 2,1 3,0 3.25,0 4,-1 5,-1 6,0",
     "0,0>1,1 2,1<3,0>4,-1 5,-1<6,0"},
    {"AGapOfExactlyTheToleranceIsBridged",
     "0,0 1,1 2,1 3,0 3.5,0 4,-1 5,-1 6,0",
     "0,0>1,1 2,1<3,0 3.5,0>4,-1 5,-1<6,0"},
    {"AWideGapIsBridgedByAStraightLine",
     "0,0 1,1 2,1 3,0 9,9 10,8 11,8 12,9",
     "0,0>1,1 2,1<3,0 9,9>10,8 11,8<12,9"},
    {"ThreeGroupsAreWeldedTwice",
     "0,0 1,1 2,1 3,0 3,0 4,1 5,1 6,0 6,0 7,1 8,1 9,0",
     "0,0>1,1 2,1<3,0>4,1 5,1<6,0>7,1 8,1<9,0"},
    {"AGroupIsWeldedAfterABridge",
     "0,0 1,1 2,1 3,0 9,0 10,1 11,1 12,0 12,0 13,1 14,1 15,0",
     "0,0>1,1 2,1<3,0 9,0>10,1 11,1<12,0>13,1 14,1<15,0"},
    {"AGroupIsBridgedAfterAWeld",
     "0,0 1,1 2,1 3,0 3,0 4,1 5,1 6,0 9,0 10,1 11,1 12,0",
     "0,0>1,1 2,1<3,0>4,1 5,1<6,0 9,0>10,1 11,1<12,0"},
    // Lists that are no groups of four: the walk goes through them all the same.
    {"NoPointsAreNoSegments", "", ""},
    {"OnePointIsOneSegment", "1,2", "1,2"},
    {"TwoPointsAreOneSegment", "0,0 1,1", "0,0>1,1"},
    {"ThreePointsAreOneSegment", "0,0 1,1 2,2", "0,0>1,1"},
    {"AFifthPointThatIsNearEndsTheWalk",
     "0,0 1,1 2,1 3,0 3.25,0",
     "0,0>1,1 2,1<3,0"},
    {"AFifthPointThatIsFarIsBridged",
     "0,0 1,1 2,1 3,0 9,0",
     "0,0>1,1 2,1<3,0 9,0"},
    {"ASixthPointIsAHandleOfTheSharedAnchor",
     "0,0 1,1 2,1 3,0 3,0 4,1",
     "0,0>1,1 2,1<3,0>4,1"},
    {"ASeventhPointBelongsToNoAnchor",
     "0,0 1,1 2,1 3,0 3,0 4,1 5,1",
     "0,0>1,1 2,1<3,0>4,1"},
    {"ANinthPointThatIsNearEndsTheWalk",
     "0,0 1,1 2,1 3,0 3,0 4,1 5,1 6,0 6,0.25",
     "0,0>1,1 2,1<3,0>4,1 5,1<6,0"},
    {"AThirteenthPointThatIsNearEndsTheWalk",
     "0,0 1,1 2,1 3,0 9,0 10,1 11,1 12,0 12,0 13,1 14,1 15,0 15,0",
     "0,0>1,1 2,1<3,0 9,0>10,1 11,1<12,0>13,1 14,1<15,0"},
};
// clang-format on

class WeldingRows : public Art, public testing::WithParamInterface<WeldCase> {};

TEST_P(WeldingRows, MakeChainsOfSharedAnchors)
{
    vnt::FigPrimInfo figure;
    add_curve(figure.strokes.emplace_back(), GetParam().points);
    plugin.CreateStroke(figure, kTolerance);
    ASSERT_EQ(host.paths.size(), 1U);
    EXPECT_EQ(drawn(0), GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(, WeldingRows, testing::ValuesIn(kWelds),
                         [](const auto& row) { return row.param.name; });

class Welding : public Art {};

TEST_F(Welding, KeepsCountingInFoursThroughAnyList)
{
    // Six points, then two groups: the joint between them is not where the fours end, so it is not welded.
    vnt::FigPrimInfo figure;
    add_curve(figure.strokes.emplace_back(), "0,0 1,1 2,1 3,0 3,0 4,1 "
                                             "5,0 6,1 7,1 8,0 8,0 9,1 10,1 11,0");
    plugin.CreateStroke(figure, kTolerance);
    // By fours: 0-3, 4-7, 8-11, then 12 and 13; point 7 is far from 8, and 11 from 12.
    EXPECT_EQ(drawn(0), "0,0>1,1 2,1<3,0>4,1 5,0<6,1 7,1>8,0 8,0<9,1 10,1>11,0");
}

TEST_F(Welding, JoinsTheQuartersOfACircle)
{
    // A whole circle: four quarters, whose joints are equal to the bit or nearly so.
    vnt::FigPrimInfo figure;
    add(figure.strokes.emplace_back(),
        std::make_unique<vnt::PrimC>(Point(0, 0, 0), 100, 0, 6.283185307179586, false, vnt::Matrix()));
    plugin.CreateStroke(figure, kTolerance);
    // 4/3 (√2 - 1) 100 in single precision
    EXPECT_EQ(drawn(0), "100,0>100,55.2284737 55.2284737,100<0,100>-55.2284737,100 -100,55.2284737<-100,0>"
                        "-100,-55.2284737 -55.2284737,-100<0,-100>55.2284737,-100 100,-55.2284737<100,0");
}

struct NearCase {
    const char* name;
    Point a;
    Point b;
    double tolerance;
    bool is_near;
};

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

const NearCase kNear[] = {
    {"EqualPointsAreNear",                 {1, 2, 3}, {1, 2, 3},    0.5,   true },
    {"EqualPointsAreNotNearerThanNothing", {1, 2, 3}, {1, 2, 3},    0.0,   false},
    {"ExactlyTheToleranceIsNotNear",       {0, 0, 0}, {3, 4, 0},    5.0,   false},
    {"JustBelowTheToleranceIsNear",        {0, 0, 0}, {3, 4, 0},    5.001, true },
    {"ZCounts",                            {0, 0, 0}, {0, 0, 2},    1.0,   false},
    {"AllThreeCountTogether",              {0, 0, 0}, {2, 3, 6},    7.0,   false},
    {"ANegativeToleranceCountsAsItsSize",  {0, 0, 0}, {3, 4, 0},    -6.0,  true },
    {"WhatIsNoNumberIsNotNear",            {0, 0, 0}, {kNan, 0, 0}, 5.0,   false},
};

class NearPoints : public testing::TestWithParam<NearCase> {};

TEST_P(NearPoints, AreCloserThanTheTolerance)
{
    EXPECT_EQ(vantPlugin::CheckNearPoint(GetParam().a, GetParam().b, GetParam().tolerance),
              GetParam().is_near);
    EXPECT_EQ(vantPlugin::CheckNearPoint(GetParam().b, GetParam().a, GetParam().tolerance),
              GetParam().is_near);
}

INSTANTIATE_TEST_SUITE_P(, NearPoints, testing::ValuesIn(kNear),
                         [](const auto& row) { return row.param.name; });

// ------------------------------------------------------------------------------------------------ strokes

class Strokes : public Art {};

TEST_F(Strokes, OfAnEmptyFigureMakeNothing)
{
    plugin.CreateStroke(vnt::FigPrimInfo(), kTolerance);
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(Strokes, WithoutPrimitivesMakeAPathWithoutSegments)
{
    vnt::FigPrimInfo figure;
    figure.strokes.resize(2);
    plugin.CreateStroke(figure, kTolerance);
    Lines expected = kNewPath;
    expected.insert(expected.end(), kNewPath.begin(), kNewPath.end());
    EXPECT_EQ(host.calls, expected);
}

TEST_F(Strokes, MakeTheirCallsInThisOrder)
{
    vnt::FigPrimInfo figure;
    add_curve(figure.strokes.emplace_back(), "0,0 1,1 2,1 3,0");
    plugin.CreateStroke(figure, kTolerance);
    Lines expected = kNewPath;
    expected.insert(expected.end(), {"SetPathSegments path0 0 1 p=0,0 in=0,0 out=1,1 corner",
                                     "SetPathSegments path0 1 1 p=3,0 in=2,1 out=3,0 corner"});
    EXPECT_EQ(host.calls, expected);
}

TEST_F(Strokes, BecomeOnePathEachInTheirOrder)
{
    vnt::FigPrimInfo figure;
    add_line(figure.strokes.emplace_back(), 0, 0, 1, 0);
    add_line(figure.strokes.emplace_back(), 5, 5, 6, 5);
    plugin.CreateStroke(figure, kTolerance);
    ASSERT_EQ(host.paths.size(), 2U);
    EXPECT_EQ(drawn(0), "0,0 1,0");
    EXPECT_EQ(drawn(1), "5,5 6,5");
}

TEST_F(Strokes, NumberTheSegmentsThroughAllTheirPrimitives)
{
    vnt::FigPrimInfo figure;
    vnt::StrokeInfo& stroke = figure.strokes.emplace_back();
    add_line(stroke, 0, 0, 10, 0);
    add_line(stroke, 10, 0, 10, 10); // starts where the first ends: a segment of no length, not a weld
    add_line(stroke, 20, 10, 20, 0);
    plugin.CreateStroke(figure, kTolerance);
    Lines expected = kNewPath;
    expected.insert(expected.end(), {"SetPathSegments path0 0 1 p=0,0 in=0,0 out=0,0 corner",
                                     "SetPathSegments path0 1 1 p=10,0 in=10,0 out=10,0 corner",
                                     "SetPathSegments path0 2 1 p=10,0 in=10,0 out=10,0 corner",
                                     "SetPathSegments path0 3 1 p=10,10 in=10,10 out=10,10 corner",
                                     "SetPathSegments path0 4 1 p=20,10 in=20,10 out=20,10 corner",
                                     "SetPathSegments path0 5 1 p=20,0 in=20,0 out=20,0 corner"});
    EXPECT_EQ(host.calls, expected);
}

TEST_F(Strokes, SkipAPrimitiveThatDrawsNothing)
{
    vnt::FigPrimInfo figure;
    vnt::StrokeInfo& stroke = figure.strokes.emplace_back();
    add_line(stroke, 0, 0, 1, 0);
    add(stroke,
        std::make_unique<vnt::PrimC>(Point(0, 0, 0), 5, 2, 1, true, vnt::Matrix())); // ends before it starts
    add_line(stroke, 2, 0, 3, 0);
    plugin.CreateStroke(figure, kTolerance);
    EXPECT_EQ(drawn(0), "0,0 1,0 2,0 3,0");
}

TEST_F(Strokes, AreCutWithTheirTolerance)
{
    // An arc's cut depends on the tolerance; what is drawn are the conversion's own points.
    const vnt::PrimC arc(Point(0, 0, 0), 100, 0.3, 1.2, true, vnt::Matrix());
    for (const double tolerance : {0.01, 300.0}) {
        host.paths.clear();
        vnt::FigPrimInfo figure;
        add(figure.strokes.emplace_back(), std::make_unique<vnt::PrimC>(arc));
        plugin.CreateStroke(figure, tolerance);
        const std::list<Point> points = vnt::conv_prim_to_bezier(&arc, tolerance);
        ASSERT_EQ(points.size(), 4U);
        EXPECT_EQ(host.paths[0].segments.at(0).p.h, static_cast<float>(points.front().x));
        EXPECT_EQ(host.paths[0].segments.at(1).p.h, static_cast<float>(points.back().x));
    }
    EXPECT_NE(vnt::conv_prim_to_bezier(&arc, 0.01).front().x,
              vnt::conv_prim_to_bezier(&arc, 300.0).front().x);
}

// -------------------------------------------------------------------------------------------------- paths

class PathArt : public Art {};

TEST_F(PathArt, KeepsEveryPathOpenAndCornered)
{
    vnt::FigPrimInfo figure;
    vnt::StrokeInfo& stroke = figure.strokes.emplace_back();
    add(stroke, std::make_unique<vnt::PrimF>(
                    std::list<Point>{Point(0, 0, 0), Point(1, 1, 0), Point(2, 1, 0), Point(0, 0, 0)}, true));
    plugin.CreateStroke(figure, kTolerance);
    ASSERT_EQ(host.paths.at(0).segments.size(), 2U); // the second one ends the open path at its start
    for (const AIPathSegment& segment : host.paths[0].segments)
        EXPECT_EQ(segment.corner, 1);
}

TEST_F(PathArt, RoundsEachCoordinateToSinglePrecisionAndDropsZ)
{
    const std::list<Point> chain = {Point(0.1, -1e300, 7), Point(1e-60, 16777217, 8)};
    plugin.CreatePathArt(Chains(1, chain));
    const AIPathSegment& segment = host.paths.at(0).segments.at(0);
    EXPECT_EQ(segment.p.h, 0.1F);
    EXPECT_EQ(segment.p.v, -std::numeric_limits<float>::infinity());
    EXPECT_EQ(segment.out.h, 0.0F);
    EXPECT_EQ(segment.out.v, 16777216.0F);
}

TEST_F(PathArt, LeavesItsChainsAsTheyAre)
{
    const std::list<Point> chain = {Point(0, 0, 0), Point(1, 1, 0), Point(2, 1, 0), Point(3, 0, 0)};
    const Chains chains = {chain, std::list<Point>()};
    plugin.CreatePathArt(chains);
    EXPECT_EQ(chains.front().size(), 4U);
    EXPECT_EQ(drawn(0), "0,0>1,1 2,1<3,0");
}

TEST_F(PathArt, KeepsSegmentNumbersInSixteenBits)
{
    constexpr int kSegments = 65537;
    plugin.CreatePathArt(Chains(kSegments, std::list<Point>{Point(1, 2, 0)}));
    ASSERT_EQ(host.calls.size(), kNewPath.size() + kSegments);
    const auto number = [this](std::size_t segment) {
        const std::string& line = host.calls[kNewPath.size() + segment];
        return line.substr(0, line.find(" 1 p="));
    };
    EXPECT_EQ(number(32767), "SetPathSegments path0 32767");
    EXPECT_EQ(number(32768), "SetPathSegments path0 -32768");
    EXPECT_EQ(number(65535), "SetPathSegments path0 -1");
    EXPECT_EQ(number(65536), "SetPathSegments path0 0");
}

// --------------------------------------------------------------------------------- what the host does not do

struct PathFault {
    const char* name;
    const char* call;
    const char* part; // of the calls' lines, where null stands instead
    const char* by;
};

const PathFault kPathFaults[] = {
    {"NoView",    "GetNthDocumentView", "",               ""             },
    {"NoLayer",   "GetCurrentLayer",    "OfLayer layer",  "OfLayer null" },
    {"NoGroup",   "GetFirstArtOfLayer", "2 3 group",      "2 3 null"     },
    {"NoArt",     "NewArt",             "Segments path0", "Segments null"},
    {"NoSegment", "SetPathSegments",    "",               ""             },
};

class PathFaults : public Art, public testing::WithParamInterface<PathFault> {};

TEST_P(PathFaults, ChangeNothingOfTheOtherCalls)
{
    Lines expected = kNewPath;
    expected.insert(expected.end(), {"SetPathSegments path0 0 1 p=0,0 in=0,0 out=0,0 corner",
                                     "SetPathSegments path0 1 1 p=1,0 in=1,0 out=1,0 corner"});
    const std::string part = GetParam().part;
    for (std::string& line : expected) {
        if (!part.empty() && line.find(part) != std::string::npos)
            line.replace(line.find(part), part.size(), GetParam().by);
    }
    host.faults[GetParam().call] = Fault{kHostBadParameter};
    vnt::FigPrimInfo figure;
    add_line(figure.strokes.emplace_back(), 0, 0, 1, 0);
    plugin.CreateStroke(figure, kTolerance);
    EXPECT_EQ(host.calls, expected);
}

INSTANTIATE_TEST_SUITE_P(, PathFaults, testing::ValuesIn(kPathFaults),
                         [](const auto& row) { return row.param.name; });

TEST_F(PathArt, StaysWhereAnExceptionCameLater)
{
    host.faults["NewArt"] = Fault{0, true, 2};
    vnt::FigPrimInfo figure;
    for (int i = 0; i < 3; ++i)
        add_line(figure.strokes.emplace_back(), i, 0, i, 1);
    EXPECT_THROW(plugin.CreateStroke(figure, kTolerance), std::bad_alloc);
    ASSERT_EQ(host.paths.size(), 1U);
    EXPECT_EQ(drawn(0), "0,0 0,1");
}

struct NullSuite {
    const char* name;
    void (*lose)(vantPlugin& plugin);
    std::size_t calls_before; // of kNewPath
};

const NullSuite kNullSuites[] = {
    {"DocumentView", [](vantPlugin& plugin) { plugin.document_view_suite = nullptr; }, 0},
    {"Layer",        [](vantPlugin& plugin) { plugin.layer_suite = nullptr; },         1},
    {"Art",          [](vantPlugin& plugin) { plugin.art_suite = nullptr; },           2},
    {"Path",         [](vantPlugin& plugin) { plugin.path_suite = nullptr; },          4},
};

class NullSuites : public Art, public testing::WithParamInterface<NullSuite> {};

TEST_P(NullSuites, AreNotCalledAndEndTheDrawing)
{
    GetParam().lose(plugin);
    vnt::FigPrimInfo figure;
    add_line(figure.strokes.emplace_back(), 0, 0, 1, 0);
    EXPECT_THROW(plugin.CreateStroke(figure, kTolerance), std::exception);
    EXPECT_EQ(host.calls, Lines(kNewPath.begin(),
                                kNewPath.begin() + static_cast<std::ptrdiff_t>(GetParam().calls_before)));
}

INSTANTIATE_TEST_SUITE_P(, NullSuites, testing::ValuesIn(kNullSuites),
                         [](const auto& row) { return row.param.name; });

} // namespace
