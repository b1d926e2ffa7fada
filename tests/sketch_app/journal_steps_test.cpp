// Whatever is done to many strokes is in the journal as one: a crash in the middle of its writing leaves all of
// it or nothing.
#include "sketch/app/sketch_journal.h"
#include "sketch/core/journal_text.h"
#include "tests/sketch_app/event_loop.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace sketch_app_test;
using namespace vnt::sketch;

constexpr int kStrokes = 5;

std::string textOf(const SketchDocument& document)
{
    std::string text;
    for (std::size_t i = 0; i < document.strokes().size(); ++i)
        text += journal_insert(i, *document.strokes()[i]);
    return text;
}

Stroke strokeAt(double y)
{
    Stroke stroke;
    stroke.ink = {
        {0,  y, 0, 1},
        {30, y, 8, 1}
    };
    return stroke;
}

struct StepCase {
    const char* name;
    std::function<void(SketchModel&)> before, step;
};
const auto kNothing = [](SketchModel&) {};
const auto kUndo = [](SketchModel& model) { model.undoStack().undo(); };
const auto kRedo = [](SketchModel& model) { model.undoStack().redo(); };
const auto kMove = [](SketchModel& model) { model.transform({1, 2, 4, 5}, {1, 0, 0, 1, 7, 0.5}); };
const auto kRemove = [](SketchModel& model) { model.remove({1, 3, 5}); };
const auto kClear = [](SketchModel& model) { model.clear(); };
const auto kPaste = [](SketchModel& model) {
    model.addPlacedStrokes({strokeAt(80), strokeAt(90)}, "Insert");
};
const StepCase kSteps[] = {
    {"AMove",            kNothing, kMove  },
    {"AMoveByAKey",      kNothing,
     [](SketchModel& model) {
         model.nudge({2, 3}, {1, 0});
     }                                    },
    {"AMoveUndone",      kMove,    kUndo  },
    {"ADeletion",        kNothing, kRemove},
    {"ADeletionUndone",  kRemove,  kUndo  },
    {"Copies",           kNothing,
     [](SketchModel& model) {
         model.duplicate({1, 2, 3}, {9, 9});
     }                                    },
    {"StrokesFromAFile", kNothing, kPaste },
    {"TheirUndoing",     kPaste,   kUndo  },
    {"AClearedSheet",    kNothing, kClear },
    {"AClearUndone",     kClear,   kUndo  },
    {"AClearRedone",
     [](SketchModel& model) {
         kClear(model);
         kUndo(model);
     },                            kRedo  },
};
class JournalSteps : public testing::TestWithParam<StepCase> {
protected:
    JournalSteps() { needApplication(); }
    support::TemporaryFolder folder;
};

TEST_P(JournalSteps, AreWrittenAsOne)
{
    SketchModel model;
    const SketchJournal journal(model, QString::fromStdString(folder.path("")));
    for (int i = 1; i <= kStrokes; ++i)
        model.addInk(strokeAt(10.0 * i).ink, {});
    GetParam().before(model);
    const auto content = [&] { return support::content_of(journal.file().toStdString()); };
    const std::string before = content();
    const std::string sketchBefore = textOf(model.document());
    GetParam().step(model);
    const std::string added = content().substr(before.size());
    ASSERT_NE(textOf(model.document()), sketchBefore);
    EXPECT_EQ(std::count(added.begin(), added.end(), '\n'), 1) << added;
    for (std::size_t size = 0; size < added.size(); ++size)
        ASSERT_EQ(textOf(read_journal(before + added.substr(0, size)).document), sketchBefore)
            << "cut off after " << size;
    const JournalReading whole = read_journal(before + added);
    EXPECT_EQ(textOf(whole.document), textOf(model.document()));
    EXPECT_EQ(whole.placed, model.isPlaced());
    EXPECT_TRUE(whole.whole);
}
INSTANTIATE_TEST_SUITE_P(, JournalSteps, testing::ValuesIn(kSteps),
                         [](const auto& row) { return row.param.name; });

} // namespace
