#include "sketch/core/journal_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using namespace vnt::sketch;

constexpr double kInfinite = std::numeric_limits<double>::infinity();
const double kNoNumber = std::nan("");

// Doubles whose decimal digits have a long way to go.
const double kHard[] = {0.1,        1.0 / 3, -0.0, 5e-324, 2.2250738585072014e-308, 1.7976931348623157e308,
                        -123456.789};

// clang-format off
const Round kRound{{{1.0 / 3, -0.0}, 1e8, 5e-324, 0.1}, -7.5, 2 * kPi};
const Straight kTriangle{{{0.1, 0.2}, {1e-9, 1e9}, {-3, 4}}, true};
const Curve kCurve{{{0, 0}, {0.1, 0}, {0.2, -999999999.9999999}, {0.3, 0}}, false};
const Sheet kWithGrid{
    0.1, 1e9, {1.0 / 3, 0, 0, -1.0 / 3, 5e-324, -0.0}, -kInfinite, Grid{{1.0 / 7, 2, 3, 4, 5, 6}, 8}};
const Round kSmallRound{{{10, 20.5}, 3, 0.1, 0}, -1, 1e-9};
const Straight kLine{{{1, 2}, {3, 4}}, false};

const Shape kNotKept[] = {
    Straight{{{1, 1}}, false},
    Straight{{{1, 1}, {2, kNoNumber}}, true},
    Curve{Path(5), false},
    Curve{},
    Curve{{{0, 0}, {0, kInfinite}, {0, 0}, {0, 0}}, false},
    Round{{{0, 0}, 0, 0, 0}, 0, 1},
    Round{{{0, 0}, 1, 1, 0}, kNoNumber, 1},
    Straight{{{1, 1}, {2, 1.0000000000000002e9}}, false},
    Curve{{{0, 0}, {-1e308, 0}, {0, 1e308}, {0, 0}}, false},
    Round{{{0, -1e10}, 1, 1, 0}, 0, 1},
    Round{{{0, 0}, 1e10, 1, 0}, 0, 1},
};
// clang-format on

Stroke full_stroke(StrokeId id, Kind kind, const Shape& shape)
{
    Stroke stroke;
    stroke.id = id;
    stroke.kind = kind;
    stroke.shape = shape;
    for (const double hard : kHard)
        stroke.ink.push_back({hard, -hard, hard, 0.1 + hard / 2});
    stroke.readings = {
        {Kind::square,       0.75,    kTriangle       },
        {Kind::elliptic_arc, 1.0 / 7, kRound          },
        {Kind::free_curve,   0.5,     kCurve          },
        {Kind::ink,          0,       std::monostate()},
    };
    return stroke;
}

// -0 and 0 differ here, and so do all digits.
void expect_same(double a, double b)
{
    EXPECT_EQ(a, b);
    EXPECT_EQ(std::signbit(a), std::signbit(b));
}
void expect_same(const Path& a, const Path& b)
{
    ASSERT_EQ(a.size(), b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
        expect_same(a[i].x, b[i].x);
        expect_same(a[i].y, b[i].y);
    }
}
void expect_same_alternative(std::monostate, std::monostate) {}
void expect_same_alternative(const Straight& a, const Straight& b)
{
    expect_same(a.corners, b.corners);
    EXPECT_EQ(a.closed, b.closed);
}
void expect_same_alternative(const Curve& a, const Curve& b)
{
    expect_same(a.points, b.points);
    EXPECT_EQ(a.closed, b.closed);
}
void expect_same_alternative(const Round& a, const Round& b)
{
    expect_same({a.ellipse.centre}, {b.ellipse.centre});
    expect_same(a.ellipse.major, b.ellipse.major);
    expect_same(a.ellipse.minor, b.ellipse.minor);
    expect_same(a.ellipse.rotation, b.ellipse.rotation);
    expect_same(a.start, b.start);
    expect_same(a.sweep, b.sweep);
}
void expect_same(const Shape& a, const Shape& b)
{
    ASSERT_EQ(a.index(), b.index());
    std::visit(
        [&](const auto& its) { expect_same_alternative(its, std::get<std::decay_t<decltype(its)>>(b)); }, a);
}
void expect_same(const Stroke& a, const Stroke& b)
{
    EXPECT_EQ(a.id, b.id);
    EXPECT_EQ(a.kind, b.kind);
    expect_same(a.shape, b.shape);
    ASSERT_EQ(a.ink.size(), b.ink.size());
    for (std::size_t i = 0; i < a.ink.size(); ++i) {
        expect_same(a.ink[i].x, b.ink[i].x);
        expect_same(a.ink[i].y, b.ink[i].y);
        expect_same(a.ink[i].time_ms, b.ink[i].time_ms);
        expect_same(a.ink[i].pressure, b.ink[i].pressure);
    }
    ASSERT_EQ(a.readings.size(), b.readings.size());
    for (std::size_t i = 0; i < a.readings.size(); ++i) {
        EXPECT_EQ(a.readings[i].kind, b.readings[i].kind);
        expect_same(a.readings[i].score, b.readings[i].score);
        expect_same(a.readings[i].shape, b.readings[i].shape);
    }
}

std::vector<StrokeId> ids_of(const JournalReading& reading)
{
    std::vector<StrokeId> ids;
    for (const StrokePtr& stroke : reading.document.strokes())
        ids.push_back(stroke->id);
    return ids;
}
using Ids = std::vector<StrokeId>;

Stroke small(StrokeId id)
{
    Stroke stroke;
    stroke.id = id;
    return stroke;
}

TEST(JournalText, IsWordsAndTheShortestNumbers)
{
    Stroke stroke;
    stroke.id = 12;
    stroke.kind = Kind::elliptic_arc;
    stroke.shape = kSmallRound;
    stroke.ink = {
        {1, 2, 8,  0.5},
        {3, 4, 16, 1  }
    };
    stroke.readings.push_back({Kind::line, 0.25, kLine});
    EXPECT_EQ(journal_head(), "vant-sketch-journal 1\n");
    EXPECT_EQ(journal_insert(5, stroke),
              "insert 5 12 elliptic-arc round 10 20.5 3 0.1 0 -1 1e-09 ink 2 1 2 8 0.5 3 4 16 1 "
              "readings 1 line 0.25 straight open 2 1 2 3 4\n");
    EXPECT_EQ(journal_replace(small(3)), "replace 3 ink none ink 0 readings 0\n");
    EXPECT_EQ(journal_take(7), "take 7\n");
    EXPECT_EQ(journal_clear(), "clear\n");
    EXPECT_EQ(journal_sheet({}), "sheet 1123 794 0.75 0 0 -0.75 0 595.5 0.75 none\n");
    Sheet sheet;
    sheet.tolerance = -1;
    sheet.grid = Grid{
        {7, 8, 9, 10, 11, 12},
        4
    };
    EXPECT_EQ(journal_sheet(sheet), "sheet 1123 794 0.75 0 0 -0.75 0 595.5 -1 grid 4 7 8 9 10 11 12\n");
}

TEST(JournalText, KeepsEveryKindAndShapeToTheLastBit)
{
    const Shape shapes[] = {
        std::monostate(), kTriangle, kRound, kCurve, kLine, kSmallRound, Curve{Path(8, Vec2{1, 2}), true}
    };
    SketchDocument drawn;
    std::string text = journal_head();
    for (const Kind kind : kKinds)
        for (const Shape& shape : shapes) {
            const Stroke stroke = full_stroke(drawn.new_id(), kind, shape);
            text += journal_insert(drawn.strokes().size(), stroke);
            drawn.insert(drawn.strokes().size(), std::make_shared<Stroke>(stroke));
        }
    const JournalReading reading = read_journal(text);
    EXPECT_TRUE(reading.known);
    EXPECT_TRUE(reading.whole);
    ASSERT_EQ(reading.document.strokes().size(), drawn.strokes().size());
    for (std::size_t i = 0; i < drawn.strokes().size(); ++i)
        expect_same(*reading.document.strokes()[i], *drawn.strokes()[i]);
}

TEST(JournalText, KeepsTheLastSheet)
{
    const JournalReading reading =
        read_journal(journal_head() + journal_sheet({}) + journal_sheet(kWithGrid));
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(reading.sheet.width, 0.1);
    EXPECT_EQ(reading.sheet.height, 1e9);
    EXPECT_EQ(reading.sheet.sheet_to_model, kWithGrid.sheet_to_model);
    EXPECT_EQ(reading.sheet.tolerance, -kInfinite);
    ASSERT_TRUE(reading.sheet.grid);
    EXPECT_EQ(reading.sheet.grid->grid_to_sheet, kWithGrid.grid->grid_to_sheet);
    EXPECT_EQ(reading.sheet.grid->subdivisions, 8);
    EXPECT_FALSE(read_journal(journal_head() + journal_sheet(kWithGrid) + journal_sheet({})).sheet.grid);
}

TEST(JournalText, MakesTheSketchThatItsChangesMade)
{
    Stroke circle = small(2);
    circle.kind = Kind::circle;
    const JournalReading reading =
        read_journal(journal_head() + journal_insert(0, small(9)) + journal_clear() +
                     journal_insert(0, small(1)) + journal_insert(1, small(2)) + journal_insert(0, small(3)) +
                     journal_replace(circle) + journal_take(1) + journal_insert(1, small(4)));
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(ids_of(reading), (Ids{3, 4, 2}));
    EXPECT_EQ(reading.document.find(2)->kind, Kind::circle);
    SketchDocument document = reading.document;
    EXPECT_EQ(document.new_id(), 10U) << "an id that was ever there is not given again";
}

TEST(JournalText, MovesAllStrokesWithTheSheetInOneLine)
{
    Stroke stroke = small(1);
    stroke.kind = Kind::line;
    stroke.shape = kLine;
    stroke.ink = {
        {1, 2, 8, 0.5}
    };
    stroke.readings.push_back({Kind::line, 0.25, kLine});
    const std::string line = "sheet 1123 794 0.75 0 0 -0.75 0 595.5 0.75 none map 2 0 0 2 100 -1\n";
    EXPECT_EQ(journal_sheet({}, {2, 0, 0, 2, 100, -1}), line);
    const JournalReading reading =
        read_journal(journal_head() + journal_insert(0, stroke) + journal_insert(1, small(2)) + line);
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(ids_of(reading), (Ids{1, 2}));
    EXPECT_EQ(journal_insert(0, *reading.document.strokes().at(0)),
              "insert 0 1 line straight open 2 102 3 106 7 ink 1 102 3 8 0.5 "
              "readings 1 line 0.25 straight open 2 102 3 106 7\n");
    EXPECT_EQ(journal_sheet(kWithGrid, {}), journal_sheet(kWithGrid));
    EXPECT_EQ(journal_sheet({}, {1, 0, 1, 0, 0, 0}), journal_sheet({}))
        << "a flat map would spoil the shapes";
    EXPECT_TRUE(read_journal(journal_head() + journal_sheet(kWithGrid, {2, 0, 0, 2, 0, 0})).sheet.grid);
}

TEST(JournalText, MovesNoStrokeWhereOneWouldBeNowhere)
{
    Stroke far = small(2);
    far.ink = {
        {1e300, 0, 0, 1}
    };
    const std::string strokes = journal_insert(0, full_stroke(1, Kind::line, kLine)) + journal_insert(1, far);
    const JournalReading before = read_journal(journal_head() + strokes);
    const JournalReading reading =
        read_journal(journal_head() + strokes + journal_sheet(kWithGrid, {1e10, 0, 0, 1e10, 0, 0}));
    EXPECT_FALSE(reading.whole);
    EXPECT_FALSE(reading.sheet.grid);
    expect_same(*reading.document.strokes().at(0), *before.document.strokes().at(0));
}

TEST(JournalText, LeavesOutWhatIsNotFiniteOrDrawsNothing)
{
    Stroke stroke = small(1);
    stroke.ink = {
        {1,         2, 3,         1        },
        {kNoNumber, 2, 3,         1        },
        {1,         2, kInfinite, 1        },
        {1,         2, 3,         kNoNumber},
        {4,         5, 6,         0        }
    };
    for (const Shape& shape : kNotKept) {
        stroke.shape = shape;
        stroke.readings.assign(1, {Kind::line, kNoNumber, shape});
        EXPECT_EQ(journal_insert(0, stroke),
                  "insert 0 1 ink none ink 2 1 2 3 1 4 5 6 0 readings 1 line 0 none\n");
    }
    Sheet sheet;
    sheet.width = kNoNumber;
    EXPECT_EQ(journal_sheet(sheet), journal_sheet({}));
    sheet = {};
    sheet.grid.emplace().grid_to_sheet.a = kInfinite;
    EXPECT_EQ(journal_sheet(sheet), journal_sheet({}));
}

TEST(JournalText, WhereverItIsCutOffAllWholeLinesStand)
{
    const std::string lines[] = {journal_head(), journal_insert(0, full_stroke(1, Kind::arc, kRound)),
                                 journal_insert(1, small(2)), journal_take(1)};
    std::string text;
    for (const std::string& line : lines)
        text += line;
    const Ids after[] = {
        {},
        {},
        {1},
        {1, 2},
        {2}
    }; // so many lines
    std::size_t whole_lines = 0;
    std::size_t next_end = lines[0].size();
    for (std::size_t size = 0; size <= text.size(); ++size) {
        if (size == next_end) {
            ++whole_lines;
            next_end += whole_lines < std::size(lines) ? lines[whole_lines].size() : 0;
        }
        const bool is_at_end = size == 0 || text[size - 1] == '\n';
        const JournalReading reading = read_journal(std::string_view(text).substr(0, size));
        ASSERT_EQ(ids_of(reading), after[whole_lines]) << "cut off after " << size;
        ASSERT_EQ(reading.whole, is_at_end) << "cut off after " << size;
        ASSERT_EQ(reading.known, whole_lines > 0) << "cut off after " << size;
    }
}

struct BadLineCase {
    const char* name;
    std::string line; // after two strokes, 1 and 2
};
// clang-format off
const BadLineCase kBadLines[] = {
    {"OfNoWord",                         ""},
    {"OfAnUnknownWord",                  "erase 1"},
    {"WithABlankBefore",                 " clear"},
    {"WithABlankBehind",                 "clear "},
    {"WithAWordTooMany",                 "clear all"},
    {"WithTwoBlanks",                    "take  1"},
    {"WithATab",                         "take\t1"},
    {"WithACarriageReturn",              "take 1\r"},
    {"WithoutItsNumber",                 "take"},
    {"WithAMinus",                       "take -1"},
    {"WithAPlus",                        "take +1"},
    {"WithAFraction",                    "take 1.0"},
    {"WithAnIdTooLarge",                 "take 18446744073709551616"},
    {"ThatTakesWhatIsNotThere",          "take 3"},
    {"ThatReplacesWhatIsNotThere",       "replace 3 ink none ink 0 readings 0"},
    {"ThatInsertsWhatIsThere",           "insert 0 2 ink none ink 0 readings 0"},
    {"ThatInsertsAboveAGap",             "insert 3 9 ink none ink 0 readings 0"},
    {"WithTheLargestIdOfAll",            "insert 2 18446744073709551615 ink none ink 0 readings 0"},
    {"OfAnUnknownKind",                  "insert 2 9 blob none ink 0 readings 0"},
    {"OfAnUnknownShape",                 "insert 2 9 ink blob ink 0 readings 0"},
    {"ThatEndsInAStroke",                "insert 2 9 ink none ink 0 readings"},
    {"WithInkThatIsMissing",             "insert 2 9 ink none ink 1 readings 0"},
    {"WithAReadingThatIsMissing",        "insert 2 9 ink none ink 0 readings 1"},
    {"WithAReadingTooMany",              "insert 2 9 ink none ink 0 readings 0 line 1 none"},
    {"WithInkThatIsNoNumber",            "insert 2 9 ink none ink 1 nan 0 0 0 readings 0"},
    {"WithInfiniteInk",                  "insert 2 9 ink none ink 1 0 inf 0 0 readings 0"},
    {"WithInkBeyondDoubles",             "insert 2 9 ink none ink 1 0 1e999 0 0 readings 0"},
    {"WithAHugeCountOfInk",              "insert 2 9 ink none ink 18446744073709551615 0 0 0 0 readings 0"},
    {"WithAHugeCountOfCorners",          "insert 2 9 line straight open 4611686018427387904 0 0 ink 0 readings 0"},
    {"WithAHugeCountOfReadings",         "insert 2 9 ink none ink 0 readings 99999999999"},
    {"WithOneCorner",                    "insert 2 9 line straight open 1 0 0 ink 0 readings 0"},
    {"NeitherOpenNorClosed",             "insert 2 9 line straight ajar 2 0 0 1 1 ink 0 readings 0"},
    {"WithACurveOfFivePoints",           "insert 2 9 free-curve curve open 5 0 0 0 0 0 0 0 0 0 0 ink 0 readings 0"},
    {"WithARoundShapeOfNoSize",          "insert 2 9 circle round 0 0 0 0 0 0 6 ink 0 readings 0"},
    {"WithARoundShapeInsideOut",         "insert 2 9 circle round 0 0 5 -5 0 0 6 ink 0 readings 0"},
    {"WithACornerTooFarOff",             "insert 2 9 line straight open 2 0 0 1e10 1 ink 0 readings 0"},
    {"WithACurveTooFarOff",              "insert 2 9 free-curve curve open 4 0 0 0 1e308 -1e308 0 1 1 ink 0 readings 0"},
    {"WithARoundShapeTooFarOff",         "insert 2 9 circle round 0 -1e10 5 5 0 0 6 ink 0 readings 0"},
    {"WithARoundShapeTooLarge",          "insert 2 9 circle round 0 0 1e10 1e10 0 0 6 ink 0 readings 0"},
    {"WithAReadingTooFarOff",            "insert 2 9 ink none ink 0 readings 1 line 1 straight open 2 0 0 0 1e10"},
    {"OfASheetWithoutItsGrid",           "sheet 1 2 1 0 0 1 0 0 1"},
    {"OfASheetWithHalfAGrid",            "sheet 1 2 1 0 0 1 0 0 1 grid 4 1 0"},
    {"OfASheetWithoutItsMap",            "sheet 1 2 1 0 0 1 0 0 1 none map"},
    {"OfASheetWithHalfAMap",             "sheet 1 2 1 0 0 1 0 0 1 none map 1 0 0"},
    {"OfASheetWithAFlatMap",             "sheet 1 2 1 0 0 1 0 0 1 none map 1 0 1 0 0 0"},
    {"OfASheetWithAWordTooMany",         "sheet 1 2 1 0 0 1 0 0 1 none map 1 0 0 1 0 0 0"},
    {"OfASheetOfNoNumbers",              "sheet nan 2 1 0 0 1 0 0 1 none"},
    {"OfADrawWithoutItsRest",            "draw 1 0 0 0 1"},
    {"OfADrawWithHalfAPoint",            "draw 1 0 0 rest 0"},
    {"OfADrawThatIsNoNumber",            "draw 1 0 0 0 nan rest 0"},
    {"OfADrawWithAHugeCount",            "draw 18446744073709551615 0 0 0 1 rest 0"},
    {"OfADrawWithAWordTooMany",          "draw 0 rest 0 0"},
    {"OfALiftWithAWordTooMany",          "lift 1"},
    {"OfAPlacedSheetWithAWordTooMany",   "sheet 1 2 1 0 0 1 0 0 1 none placed placed"},
    {"OfASheetPlacedBehindItsMap",       "sheet 1 2 1 0 0 1 0 0 1 none map 1 0 0 1 0 0 placed"},
    {"OfASheetWithABlankBehind",         "sheet 1 2 1 0 0 1 0 0 1 none "},
    {"ThatEndsWithinAStep",              "replace 2 ink none ink 0 readings 0;"},
    {"WithANulByte",                     std::string("take 1\0", 7)},
};
// clang-format on
class JournalWithABadLine : public testing::TestWithParam<BadLineCase> {};
TEST_P(JournalWithABadLine, IsReadAllButThatLine)
{
    const std::string before = journal_head() + journal_insert(0, small(1)) + journal_insert(1, small(2));
    const JournalReading reading = read_journal(before + GetParam().line + '\n' + journal_take(2));
    EXPECT_TRUE(reading.known);
    EXPECT_FALSE(reading.whole);
    EXPECT_EQ(reading.skipped, 1U);
    EXPECT_EQ(ids_of(reading), (Ids{1})) << "the line behind it has been read";
    EXPECT_EQ(reading.sheet.width, Sheet().width);
}
INSTANTIATE_TEST_SUITE_P(, JournalWithABadLine, testing::ValuesIn(kBadLines),
                         [](const auto& row) { return row.param.name; });

// As where a block of the disk was lost: the strokes behind it do not go with it.
TEST(JournalText, BehindABadInsertTheOtherStrokesCome)
{
    const std::string text = journal_head() + journal_insert(0, small(1)) + "insert 1 2 ink no" +
                             std::string(100, '\0') + "\n" + journal_insert(2, small(3)) + journal_take(2) +
                             journal_insert(0, small(4));
    const JournalReading reading = read_journal(text);
    EXPECT_EQ(ids_of(reading), (Ids{4, 1, 3}));
    EXPECT_EQ(reading.skipped, 2U) << "the bad one, and what was done to its stroke";
    EXPECT_FALSE(reading.whole);
}

struct HeadCase {
    const char* name;
    const char* text;
    bool known, whole;
};
// clang-format off
const HeadCase kHeads[] = {
    {"OfNothing",            "",                                              false, true},
    {"OfAHeadAlone",         "vant-sketch-journal 1\n",                       true,  true},
    {"WithoutALineFeed",     "vant-sketch-journal 1",                         false, false},
    {"OfALaterVersion",      "vant-sketch-journal 2\nclear\n",                false, false},
    {"OfAnotherFile",        "<?xml version=\"1.0\"?>\n<svg/>\n",             false, false},
    {"OfLineFeeds",          "\n\n\n",                                        false, false},
};
// clang-format on
class JournalHead : public testing::TestWithParam<HeadCase> {};
TEST_P(JournalHead, SaysWhetherItIsKnown)
{
    const JournalReading reading = read_journal(GetParam().text);
    EXPECT_EQ(reading.known, GetParam().known);
    EXPECT_EQ(reading.whole, GetParam().whole);
    EXPECT_TRUE(reading.document.strokes().empty());
}
INSTANTIATE_TEST_SUITE_P(, JournalHead, testing::ValuesIn(kHeads),
                         [](const auto& row) { return row.param.name; });

} // namespace
