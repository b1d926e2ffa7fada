#include "Source/plugin/vantPlugin.h"
#include "tests/plugin/recording_host.h"
#include "tests/support/describe.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using plugin_tests::Fault;
using plugin_tests::RecordingHost;
using support::describe;
using Lines = std::vector<std::string>;

// A plug-in with the host's suites.
class Capture : public testing::Test {
protected:
    Capture()
    {
        HostMessage message = host.message();
        plugin.AcquireSuites(&message);
        host.calls.clear();
    }

    RecordingHost host;
    vantPlugin plugin;
};

// --------------------------------------------------------------------------------------- the window search

HostWindow window(const char* name, const char* title, bool collapsed = false)
{
    HostWindow result;
    result.name = name;
    result.title.utf8 = title;
    result.collapsed = collapsed;
    return result;
}

HostWindow untitled_window()
{
    HostWindow result = window("untitled", "");
    result.has_title = false;
    return result;
}

HostWindow unconvertible_window()
{
    HostWindow result = window("odd", "Artwork");
    result.title.converts = false;
    return result;
}

constexpr bool kCollapsed = true;

struct WindowCase {
    const char* name;
    const char* found;               // the window's name
    std::vector<HostWindow> windows; // front to back
};

// clang-format off
const WindowCase kWindows[] = {
    {"NoWindowIsNone", "none", {}},
    {"TheActiveArtworkIsTaken", "active",
     {window("active", "Artwork"), window("behind", "Artwork")}},
    {"ArtworkBehindAnotherIsTaken", "behind",
     {window("active", "Layers"), window("behind", "Artwork")}},
    {"TheThirdWindowIsNotLookedAt", "none",
     {window("active", "Layers"), window("behind", "Colours"), window("third", "Artwork")}},
    {"ASoleOtherWindowIsNone", "none",
     {window("active", "Layers")}},
    {"ASoleCollapsedArtworkIsNone", "none",
     {window("active", "Artwork", kCollapsed)}},
    {"BehindACollapsedArtworkIsNone", "none",
     {window("active", "Artwork", kCollapsed), window("behind", "Artwork")}},
    {"BehindACollapsedOtherIsNone", "none",
     {window("active", "Layers", kCollapsed), window("behind", "Artwork")}},
    {"ACollapsedArtworkBehindIsTaken", "behind",
     {window("active", "Layers"), window("behind", "Artwork", kCollapsed)}},
    {"AWindowWithoutTitleNeverMatches", "none",
     {untitled_window()}},
    {"BehindAWindowWithoutTitleIsLookedAt", "behind",
     {untitled_window(), window("behind", "Artwork")}},
    {"ATitleThatDoesNotConvertNeverMatches", "none",
     {unconvertible_window()}},
    {"AnEmptyTitleNeverMatches", "none",
     {window("active", ""), window("behind", "")}},
    {"TitlesAreComparedWhole", "none",
     {window("active", "Artwork 2"), window("behind", "Artwor")}},
    {"TitlesAreComparedByCase", "none",
     {window("active", "artwork"), window("behind", "ARTWORK")}},
};
// clang-format on

class WindowSearchRows : public Capture, public testing::WithParamInterface<WindowCase> {};

TEST_P(WindowSearchRows, FindTheArtwork)
{
    host.windows.assign(GetParam().windows.begin(), GetParam().windows.end());
    const WindowRef found = plugin.getNonCollapsedFocusDocument();
    EXPECT_EQ(found == nullptr ? "none" : found->name, GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(, WindowSearchRows, testing::ValuesIn(kWindows),
                         [](const auto& row) { return row.param.name; });

class WindowSearch : public Capture {};

TEST_F(WindowSearch, AsksOfTheActiveWindowAloneWhenItIsTheArtwork)
{
    host.windows = {window("active", "Artwork"), window("behind", "Artwork")};
    plugin.getNonCollapsedFocusDocument();
    const Lines expected = {
        "ActiveNonFloatingWindow",
        "CopyWindowTitleAsCFString active",
        "CFStringGetLength 'Artwork'",
        "CFStringGetMaximumSizeForEncoding 7 UTF-8",
        "CFStringGetCString 'Artwork' 21 UTF-8",
        "IsWindowCollapsed active",
    };
    EXPECT_EQ(host.calls, expected);
}

TEST_F(WindowSearch, KeepsLookingAtTheActiveWindowTwice)
{
    host.windows = {window("active", "Layers"), window("behind", "Artwork", kCollapsed)};
    plugin.getNonCollapsedFocusDocument();
    const Lines expected = {
        "ActiveNonFloatingWindow",
        "CopyWindowTitleAsCFString active",
        "CFStringGetLength 'Layers'",
        "CFStringGetMaximumSizeForEncoding 6 UTF-8",
        "CFStringGetCString 'Layers' 18 UTF-8",
        "IsWindowCollapsed active",
        "GetPreviousWindow active",
        "CopyWindowTitleAsCFString behind",
        "CFStringGetLength 'Artwork'",
        "CFStringGetMaximumSizeForEncoding 7 UTF-8",
        "CFStringGetCString 'Artwork' 21 UTF-8",
        "IsWindowCollapsed active",
    };
    EXPECT_EQ(host.calls, expected);
}

TEST_F(WindowSearch, TakesATitleThatCannotBeCopiedForNone)
{
    host.windows = {window("active", "Artwork"), window("behind", "Artwork")};
    host.faults["CopyWindowTitleAsCFString"] = Fault{kHostBadParameter, false, 1};
    const WindowRef found = plugin.getNonCollapsedFocusDocument();
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->name, "behind");
}

// ----------------------------------------------------------------------------------------- titles as text

struct TitleCase {
    const char* name;
    const char* utf8;
    bool fits; // into 3 bytes for each UTF-16 unit, with its terminator
};

const TitleCase kTitles[] = {
    {"PlainTextFits",                         "Artwork",            true },
    {"OneLetterFits",                         "A",                  true },
    {"TwoByteLettersFit",                     "\u00e9\u00e9",       true },
    {"APairOfUnitsOfFourBytesFits",           "\U0001F600",         true },
    {"ThreeBytesAndALetterFit",               "\u20acA",            true },
    {"AnEmptyTitleHasNoRoomForItsTerminator", "",                   false},
    {"ThreeByteLettersAloneLeaveNoRoom",      "\u20ac\u30a2\u20ac", false},
};

class TitleTextRows : public Capture, public testing::WithParamInterface<TitleCase> {};

TEST_P(TitleTextRows, ComeOutWhereTheyFit)
{
    const HostString title{GetParam().utf8};
    const std::unique_ptr<char, decltype(&std::free)> text(plugin.CFStringRefToCharConverter(&title),
                                                           std::free);
    EXPECT_STREQ(text.get(), GetParam().fits ? GetParam().utf8 : nullptr);
}

INSTANTIATE_TEST_SUITE_P(, TitleTextRows, testing::ValuesIn(kTitles),
                         [](const auto& row) { return row.param.name; });

class TitleText : public Capture {};

TEST_F(TitleText, AsksNothingOfNull)
{
    EXPECT_EQ(plugin.CFStringRefToCharConverter(nullptr), nullptr);
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(TitleText, KeepsNoByteForTheTerminator)
{
    const HostString title{"\u20ac"};
    EXPECT_EQ(plugin.CFStringRefToCharConverter(&title), nullptr);
    const Lines expected = {
        "CFStringGetLength '\u20ac'",
        "CFStringGetMaximumSizeForEncoding 1 UTF-8",
        "CFStringGetCString '\u20ac' 3 UTF-8",
    };
    EXPECT_EQ(host.calls, expected);
}

TEST_F(TitleText, IsNoneWhereTheHostDoesNotKnowTheEncoding)
{
    const HostString title{"Artwork"};
    host.faults["CFStringGetMaximumSizeForEncoding"] = Fault{kHostBadParameter};
    EXPECT_EQ(plugin.CFStringRefToCharConverter(&title), nullptr);
    const Lines expected = {
        "CFStringGetLength 'Artwork'",
        "CFStringGetMaximumSizeForEncoding 7 UTF-8", // -1, and no text is asked for
    };
    EXPECT_EQ(host.calls, expected);
}

// --------------------------------------------------------------------------------------- the drawing board

struct BoardCase {
    const char* name;
    Rect bounds;          // top, left, bottom, right
    const char* viewport; // x y width height
};

const BoardCase kBoards[] = {
    {"APlainWindow",                       {22, 0, 622, 800},        "0 22 800 600"       },
    {"AnEmptyPort",                        {0, 0, 0, 0},             "0 0 0 0"            },
    {"TheLargestPort",                     {0, 0, 32767, 32767},     "0 0 32767 32767"    },
    {"ALeftEdgeOffScreenBecomesLarge",     {22, -12, 622, 788},      "65524 22 -64736 600"},
    {"ATopEdgeOffScreenBecomesLarge",      {-1, 0, 599, 800},        "0 65535 800 -64936" },
    {"AWindowWhollyOffScreenKeepsItsSize", {-700, -900, -100, -100}, "64636 64836 800 600"},
    {"AnInvertedPortHasANegativeSize",     {600, 800, 0, 0},         "800 600 -800 -600"  },
};

class DrawingBoardRows : public Capture, public testing::WithParamInterface<BoardCase> {};

TEST_P(DrawingBoardRows, AreTheWindowsPort)
{
    host.open_artwork(GetParam().bounds);
    vnt::ViewportInfo viewport(1, 2, 3, 4);
    plugin.CreateDrawingBoard(viewport);
    std::ostringstream text;
    text << viewport;
    EXPECT_EQ(text.str(), GetParam().viewport);
}

INSTANTIATE_TEST_SUITE_P(, DrawingBoardRows, testing::ValuesIn(kBoards),
                         [](const auto& row) { return row.param.name; });

class DrawingBoard : public Capture {};

TEST_F(DrawingBoard, KeepsEdgesUnsigned)
{
    host.open_artwork({-32768, -1, 32767, 0});
    vnt::ViewportInfo viewport(0, 0, 0, 0);
    plugin.CreateDrawingBoard(viewport);
    EXPECT_EQ(viewport.x, 65535);
    EXPECT_EQ(viewport.y, 32768);
    EXPECT_EQ(viewport.width, -65535);
    EXPECT_EQ(viewport.height, -1);
}

TEST_F(DrawingBoard, TakesTheTitleOnceMoreWithoutConvertingIt)
{
    host.windows = {window("active", "Artwork")};
    vnt::ViewportInfo viewport(0, 0, 0, 0);
    plugin.CreateDrawingBoard(viewport);
    const Lines expected = {
        "ActiveNonFloatingWindow",
        "CopyWindowTitleAsCFString active",
        "CFStringGetLength 'Artwork'",
        "CFStringGetMaximumSizeForEncoding 7 UTF-8",
        "CFStringGetCString 'Artwork' 21 UTF-8",
        "IsWindowCollapsed active",
        "CopyWindowTitleAsCFString active",
        "GetWindowBounds active 40",
    };
    EXPECT_EQ(host.calls, expected);
}

TEST_F(DrawingBoard, AsksOnWithoutAWindow)
{
    vnt::ViewportInfo viewport(1, 2, 3, 4);
    plugin.CreateDrawingBoard(viewport);
    const Lines expected = {"ActiveNonFloatingWindow", "CopyWindowTitleAsCFString null",
                            "GetWindowBounds null 40"};
    EXPECT_EQ(host.calls, expected);
}

// ------------------------------------------------------------------------------------------- the mapping

class Mapping : public Capture {};

TEST_F(Mapping, AsksTheFrontViewForThreePoints)
{
    plugin.GetTranceformMatrix();
    const Lines expected = {
        "GetNthDocumentView 0",
        "ViewPointToArtworkPoint view 0,0",
        "ViewPointToArtworkPoint view 100,0",
        "ViewPointToArtworkPoint view 0,100",
    };
    EXPECT_EQ(host.calls, expected);
}

TEST_F(Mapping, TakesViewPointsToArtworkPointsAndScalesZAsX)
{
    // (x, y) is seen at (36.5 + x / 4, 700.25 - y / 4); all numbers are exact in binary.
    host.origin_h = 36.5F;
    host.origin_v = 700.25F;
    host.points_per_pixel = 0.25F;
    EXPECT_EQ(describe(plugin.GetTranceformMatrix().viewport_space_to_model_space_mapping_matrix),
              " m00=0.25 m03=36.5 m11=-0.25 m13=700.25 m22=0.25");
}

TEST_F(Mapping, ScalesZAsXAlsoInAViewThatIsTurnedAndStretched)
{
    // (x, y) is seen at (36.5 + x / 4 + y / 8, 700.25 + x / 2 - 2 y); all numbers are exact in binary.
    host.origin_h = 36.5F;
    host.origin_v = 700.25F;
    host.pixel_right = AIRealPoint{0.25F, 0.5F};
    host.pixel_down = AIRealPoint{0.125F, -2};
    EXPECT_EQ(describe(plugin.GetTranceformMatrix().viewport_space_to_model_space_mapping_matrix),
              " m00=0.25 m01=0.125 m03=36.5 m10=0.5 m11=-2 m13=700.25 m22=0.25");
}

TEST_F(Mapping, HasANegativeZForAViewThatIsMirrored)
{
    host.pixel_right = AIRealPoint{-0.5F, 0};
    host.pixel_down = AIRealPoint{0, -1};
    EXPECT_EQ(describe(plugin.GetTranceformMatrix().viewport_space_to_model_space_mapping_matrix),
              " m00=-0.5 m11=-1 m22=-0.5");
}

TEST_F(Mapping, IsTheIdentityForAViewOfFullSizeAtTheOriginButForY)
{
    EXPECT_EQ(describe(plugin.GetTranceformMatrix().viewport_space_to_model_space_mapping_matrix), " m11=-1");
}

TEST_F(Mapping, WidensSinglePrecisionAsItStands)
{
    host.origin_h = 0.1F;
    EXPECT_EQ(plugin.GetTranceformMatrix().viewport_space_to_model_space_mapping_matrix.m03,
              0.100000001490116119384765625); // 0.1 in single precision, in decimal
}

TEST_F(Mapping, IsFlatWhereTheHostMapsNothing)
{
    host.faults["ViewPointToArtworkPoint"] = Fault{kHostBadParameter};
    EXPECT_EQ(describe(plugin.GetTranceformMatrix().viewport_space_to_model_space_mapping_matrix),
              " m00=0 m11=0 m22=0");
}

TEST_F(Mapping, AsksOnWithoutAView)
{
    host.faults["GetNthDocumentView"] = Fault{kHostNoDocument};
    plugin.GetTranceformMatrix();
    ASSERT_EQ(host.calls.size(), 4U);
    EXPECT_EQ(host.calls[1], "ViewPointToArtworkPoint null 0,0");
}

// ---------------------------------------------------------------------------------------------- the grid

vnt::ModelSpaceInfo odd_record()
{
    vnt::ModelSpaceInfo record{vnt::Matrix(), vnt::Matrix()};
    for (std::size_t i = 0; i < vnt::Matrix::kElements; ++i) {
        record.viewport_space_to_model_space_mapping_matrix[i] = 3;
        record.unit_grid_space_to_model_space_mapping_matrix[i] = 5;
    }
    record.derivational_scale_factor = 77;
    return record;
}

struct GridCase {
    const char* name;
    float spacing;
    int subdivisions;
    const char* matrix;
};

// 10 / 3 in single precision is 13981013 / 2^22. 2^24 + 1 is rounded to 2^24.
const char* const kThird = " m00=3.3333332538604736 m11=-3.3333332538604736 m22=3.3333332538604736";

const GridCase kGrids[] = {
    {"SpacingOverSubdivisionsIsTheUnit",        72,       8,        " m00=9 m11=-9 m22=9"   },
    {"OneSubdivisionIsTheSpacing",              20,       1,        " m00=20 m11=-20 m22=20"},
    {"TheUnitIsDividedInSinglePrecision",       10,       3,        kThird                  },
    {"NegativeSubdivisionsTurnTheGridRound",    72,       -8,       " m00=-9 m11=9 m22=-9"  },
    {"SubdivisionsAreRoundedToSinglePrecision", 16777216, 16777217, " m11=-1"               },
};

class GridSpaceRows : public Capture, public testing::WithParamInterface<GridCase> {};

TEST_P(GridSpaceRows, AreTheDocumentsGrid)
{
    host.grid_spacing = GetParam().spacing;
    host.grid_subdivisions = GetParam().subdivisions;
    vnt::ModelSpaceInfo record = odd_record();
    plugin.CreateGridSpace(record);
    EXPECT_EQ(describe(record.unit_grid_space_to_model_space_mapping_matrix), GetParam().matrix);
    EXPECT_EQ(record.derivational_scale_factor, GetParam().subdivisions);
    EXPECT_EQ(host.calls, Lines{"GridSettings"});
}

INSTANTIATE_TEST_SUITE_P(, GridSpaceRows, testing::ValuesIn(kGrids),
                         [](const auto& row) { return row.param.name; });

class GridSpace : public Capture {};

TEST_F(GridSpace, IsInfiniteWithoutSubdivisions)
{
    host.grid_subdivisions = 0;
    vnt::ModelSpaceInfo record = odd_record();
    plugin.CreateGridSpace(record);
    EXPECT_EQ(record.unit_grid_space_to_model_space_mapping_matrix.m00,
              std::numeric_limits<double>::infinity());
    EXPECT_EQ(record.derivational_scale_factor, 0);
}

TEST_F(GridSpace, IsNoNumberWhereTheHostTellsNothing)
{
    host.faults["GridSettings"] = Fault{kHostNoDocument};
    vnt::ModelSpaceInfo record = odd_record();
    plugin.CreateGridSpace(record);
    EXPECT_TRUE(std::isnan(record.unit_grid_space_to_model_space_mapping_matrix.m00));
    EXPECT_EQ(record.derivational_scale_factor, 0);
}

TEST_F(GridSpace, IsFiftyInTwoWhereTheDocumentsIsNotInForce)
{
    vnt::ModelSpaceInfo record = odd_record();
    plugin.CreateAdequateGridSpace(record);
    EXPECT_EQ(describe(record.unit_grid_space_to_model_space_mapping_matrix), " m00=50 m11=-50 m22=50");
    EXPECT_EQ(record.derivational_scale_factor, 2);
    EXPECT_EQ(host.calls, Lines());
}

TEST_F(GridSpace, KeepsTheGridAtTheModelsOrigin)
{
    const vnt::ModelSpaceInfo untouched = odd_record();
    vnt::ModelSpaceInfo document = odd_record(); // of a view that is neither of size 1 nor at the origin
    vnt::ModelSpaceInfo fixed = odd_record();
    plugin.CreateGridSpace(document);
    plugin.CreateAdequateGridSpace(fixed);
    for (const vnt::ModelSpaceInfo* record : {&document, &fixed}) {
        const vnt::Matrix& grid = record->unit_grid_space_to_model_space_mapping_matrix;
        EXPECT_EQ(grid.m03, 0.0);
        EXPECT_EQ(grid.m13, 0.0);
        EXPECT_EQ(grid.m11, -grid.m00);
        EXPECT_EQ(describe(record->viewport_space_to_model_space_mapping_matrix),
                  describe(untouched.viewport_space_to_model_space_mapping_matrix));
    }
}

} // namespace
