// What a journal's text says of more than one change at once, and of less than one: steps, the stroke that is
// being drawn, and the sketch's place in the artwork.
#include "sketch/core/journal_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace vnt::sketch;

const Round kArc{
    {{10, 20.5}, 3, 0.1, 0},
    -1, 1
};
const Straight kLine{
    {{1, 2}, {3, 4}},
    false
};
const Curve kCurve{
    {{0, 0}, {1, 0}, {2, 1}, {3, 0}},
    false
};

Stroke shaped(StrokeId id, Kind kind, const Shape& shape)
{
    Stroke stroke;
    stroke.id = id;
    stroke.kind = kind;
    stroke.shape = shape;
    return stroke;
}

Stroke small(StrokeId id) { return shaped(id, Kind::ink, {}); }

Sheet with_grid()
{
    Sheet sheet;
    sheet.grid = Grid{
        {7, 8, 9, 10, 11, 12},
        4
    };
    return sheet;
}

using Ids = std::vector<StrokeId>;

Ids ids_of(const JournalReading& reading) { return reading.document.ids(); }

const Ink kBegun{
    {1, 2, 0, 0.5},
    {3, 4, 8, 1  }
};
const Ink kMore{
    {5, 6, 16, 1}
};
const Ink kRest{
    {5.5, 6.5, 24, 1}
};

TEST(JournalSteps, IsTheInkThatIsDrawnAndWhatItWouldEndWith)
{
    EXPECT_EQ(journal_draw(kBegun, kRest), "draw 2 1 2 0 0.5 3 4 8 1 rest 1 5.5 6.5 24 1\n");
    EXPECT_EQ(journal_draw({}, {}), "draw 0 rest 0\n");
    EXPECT_EQ(journal_lift(), "lift\n");
}

TEST(JournalSteps, BringsBackAStrokeThatWasBeingDrawnOnTopOfTheOthers)
{
    const JournalReading reading = read_journal(journal_head() + journal_insert(0, small(7)) +
                                                journal_draw(kBegun, kRest) + journal_draw(kMore, kRest));
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(ids_of(reading), (Ids{7, 8}));
    EXPECT_EQ(reading.unfinished, 8U);
    EXPECT_EQ(journal_replace(*reading.document.strokes().back()),
              "replace 8 ink none ink 4 1 2 0 0.5 3 4 8 1 5 6 16 1 5.5 6.5 24 1 readings 0\n");
    const JournalReading bare = read_journal(journal_head() + journal_draw({}, {}));
    EXPECT_TRUE(bare.document.strokes().empty());
    EXPECT_EQ(bare.unfinished, 0U);
}

TEST(JournalSteps, MovesAStrokeThatIsBeingDrawnWithTheSheet)
{
    const JournalReading reading =
        read_journal(journal_head() + journal_draw(kBegun, kRest) + journal_sheet({}, {2, 0, 0, 2, 100, 0}));
    ASSERT_NE(reading.unfinished, 0U);
    EXPECT_EQ(reading.document.strokes().at(0)->ink.at(0).x, 102);
    EXPECT_EQ(reading.document.strokes().at(0)->ink.at(2).x, 111);
}

struct LiftCase {
    const char* name;
    std::string end; // of a stroke that was being drawn
    Ids ids;
};
const std::string kFinished = journal_together(journal_insert(1, small(2)) + journal_lift());
const LiftCase kLifts[] = {
    {"ThatWasFinishedOnce",           kFinished,                   {1, 2}},
    {"ThatWasCancelledNever",         journal_lift(),              {1}   },
    {"ThatWasFinishedAndUndoneNever", kFinished + journal_take(2), {1}   },
};
class JournalOfAStroke : public testing::TestWithParam<LiftCase> {};
TEST_P(JournalOfAStroke, HasIt)
{
    const std::string before = journal_head() + journal_insert(0, small(1)) + journal_draw(kBegun, kRest);
    const JournalReading reading = read_journal(before + GetParam().end);
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(ids_of(reading), GetParam().ids);
    EXPECT_EQ(reading.unfinished, 0U);
    // Of the next one nothing of this is left.
    const JournalReading next = read_journal(before + GetParam().end + journal_draw(kMore, {}));
    ASSERT_NE(next.unfinished, 0U);
    EXPECT_EQ(next.document.strokes().back()->ink.size(), 1U);
}
INSTANTIATE_TEST_SUITE_P(, JournalOfAStroke, testing::ValuesIn(kLifts),
                         [](const auto& row) { return row.param.name; });

TEST(JournalSteps, SaysWhetherTheSketchHasItsPlaceInTheArtwork)
{
    const Affine map{2, 0, 0, 2, 100, -1};
    EXPECT_EQ(journal_sheet({}, map, true),
              "sheet 1123 794 0.75 0 0 -0.75 0 595.5 0.75 none placed map 2 0 0 2 100 -1\n");
    EXPECT_TRUE(read_journal(journal_head() + journal_sheet({}, map, true)).placed);
    EXPECT_TRUE(read_journal(journal_head() + journal_sheet(with_grid(), {}, true)).placed);
    EXPECT_FALSE(read_journal(journal_head() + journal_sheet({}, {}, true) + journal_sheet({})).placed);
}

TEST(JournalSteps, HasTheChangesOfAStepAllOrNotAtAll)
{
    EXPECT_EQ(journal_together(journal_take(1) + journal_take(2) + journal_clear()), "take 1;take 2;clear\n");
    EXPECT_EQ(journal_together(journal_take(1)), journal_take(1));
    EXPECT_EQ(journal_together(""), "");
    const std::string before =
        journal_head() + journal_insert(0, shaped(1, Kind::arc, kArc)) + journal_insert(1, small(2));
    const std::string step =
        journal_together(journal_take(1) + journal_insert(1, shaped(3, Kind::line, kLine)) +
                         journal_replace(shaped(2, Kind::free_curve, kCurve)));
    for (std::size_t size = 0; size < step.size(); ++size) {
        const JournalReading reading = read_journal(before + step.substr(0, size));
        ASSERT_EQ(ids_of(reading), (Ids{1, 2})) << "cut off after " << size;
        ASSERT_EQ(reading.document.find(2)->kind, Kind::ink) << "cut off after " << size;
        ASSERT_EQ(reading.whole, size == 0) << "cut off after " << size;
    }
    const JournalReading reading = read_journal(before + step);
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(ids_of(reading), (Ids{2, 3}));
    EXPECT_EQ(reading.document.find(2)->kind, Kind::free_curve);
}

TEST(JournalSteps, PassesOverWhatIsDamagedOfAStepAndReadsTheRestOfIt)
{
    const JournalReading reading =
        read_journal(journal_head() + "insert 0 1 ink none ink 0 readings 0;insert 1 2 "
                                      "ink no;insert 2 3 ink none ink 0 readings 0\n");
    EXPECT_FALSE(reading.whole);
    EXPECT_EQ(reading.skipped, 1U);
    EXPECT_EQ(ids_of(reading), (Ids{1, 3}));
}

struct DamagedLiftCase {
    const char* name;
    const char* line; // behind two points that were drawn, and a third that the stroke would end with
    std::size_t points;
};
// clang-format off
const DamagedLiftCase kDamagedLifts[] = {
    {"ThatWasFinishedAndIsDamaged", "insert 0 1 ink none ink no;lift", 3},
    {"ThatWasCancelled",            "lift",                            0},
};
// clang-format on
class DamagedLiftOfAStroke : public testing::TestWithParam<DamagedLiftCase> {};
TEST_P(DamagedLiftOfAStroke, LeavesItsInk)
{
    const std::string drawn = "draw 2 1 2 0 1 3 4 8 1 rest 1 5 6 16 1\n";
    const JournalReading reading =
        read_journal(journal_head() + drawn + GetParam().line + "\n" + journal_insert(0, small(7)));
    EXPECT_EQ(reading.unfinished, 0U) << "it had come to its end";
    ASSERT_EQ(reading.document.strokes().size(), GetParam().points > 0 ? 2U : 1U);
    EXPECT_EQ(reading.document.strokes().front()->id, 7U);
    if (GetParam().points > 0) {
        EXPECT_EQ(reading.document.strokes().back()->ink.size(), GetParam().points);
    }
}
INSTANTIATE_TEST_SUITE_P(, DamagedLiftOfAStroke, testing::ValuesIn(kDamagedLifts),
                         [](const auto& row) { return row.param.name; });

} // namespace
