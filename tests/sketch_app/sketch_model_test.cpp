// The sketch and its history: every change is a step, told as it happens, undone and redone exactly.
#include "sketch/app/sketch_model.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace vnt::sketch;

Ink inkAt(double x, double y)
{
    return {
        {x,      y,      1, 0.5},
        {x + 10, y + 20, 9, 1  }
    };
}

Reading circleAt(double x, double y)
{
    Round round;
    round.ellipse = {
        {x, y},
        5, 5, 0
    };
    return {Kind::circle, 0.9, round};
}

// What the model says of its changes, a word each.
class Listener : public QObject {
public:
    explicit Listener(SketchModel& model)
    {
        connect(&model, &SketchModel::inserted, this, [this](std::size_t index, const StrokePtr& stroke) {
            said.push_back("inserted " + std::to_string(stroke->id) + " at " + std::to_string(index));
        });
        connect(&model, &SketchModel::taken, this,
                [this](const StrokePtr& stroke) { said.push_back("taken " + std::to_string(stroke->id)); });
        connect(&model, &SketchModel::replaced, this,
                [this](const StrokePtr& before, const StrokePtr& after) {
                    said.push_back("replaced " + std::to_string(before->id) + ": " + name_of(before->kind) +
                                   " by " + name_of(after->kind));
                });
        connect(&model, &SketchModel::wasReset, this, [this] { said.emplace_back("reset"); });
        connect(&model, &SketchModel::selectionChanged, this, [this] { said.emplace_back("selection"); });
        connect(&model, &SketchModel::sheetChanged, this, [this] { said.emplace_back("sheet"); });
    }

    std::vector<std::string> takeSaid() { return std::exchange(said, {}); }

    std::vector<std::string> said;
};

using Said = std::vector<std::string>;
using Ids = std::vector<StrokeId>;

class Model : public testing::Test {
protected:
    Ids ids() const
    {
        Ids all;
        for (const StrokePtr& stroke : model.document().strokes())
            all.push_back(stroke->id);
        return all;
    }
    StrokeId draw(double x, double y) { return model.addInk(inkAt(x, y), {circleAt(x, y)}); }
    void undo() { model.undoStack().undo(); }
    void redo() { model.undoStack().redo(); }

    SketchModel model;
    Listener listener{model};
};

TEST_F(Model, DrawsOnTopAndSaysSo)
{
    EXPECT_EQ(draw(0, 0), 1U);
    EXPECT_EQ(draw(50, 0), 2U);
    EXPECT_EQ(listener.takeSaid(), (Said{"inserted 1 at 0", "inserted 2 at 1"}));
    const StrokePtr second = model.document().find(2);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->kind, Kind::ink);
    EXPECT_EQ(second->ink.size(), 2U);
    EXPECT_EQ(second->ink[1].pressure, 1);
    ASSERT_EQ(second->readings.size(), 1U);
    EXPECT_EQ(second->readings[0].kind, Kind::circle);
}

TEST_F(Model, GivesTheInkBackWithTheFirstUndoOfAConversion)
{
    const StrokeId id = draw(0, 0);
    const StrokePtr ink = model.document().find(id);
    model.convert(id, circleAt(3, 4));
    listener.takeSaid();
    EXPECT_EQ(model.document().find(id)->kind, Kind::circle);
    EXPECT_EQ(model.document().find(id)->ink.size(), 2U);
    EXPECT_EQ(model.undoStack().undoText(), "Convert to circle");
    undo();
    EXPECT_EQ(model.document().find(id), ink);
    undo();
    EXPECT_TRUE(ids().empty());
    redo();
    redo();
    EXPECT_EQ(std::get<Round>(model.document().find(id)->shape).ellipse.centre, (Vec2{3, 4}));
    EXPECT_EQ(listener.takeSaid(),
              (Said{"replaced 1: circle by ink", "taken 1", "inserted 1 at 0", "replaced 1: ink by circle"}));
}

TEST_F(Model, ConvertsBackToInkOnlyWhereThereIsInk)
{
    Stroke opened;
    opened.kind = Kind::circle;
    opened.shape = circleAt(0, 0).shape;
    model.addStrokes({opened}, "Open");
    const StrokeId drawn = draw(0, 0);
    const int steps = model.undoStack().count();
    const Reading ink{Kind::ink, 0, std::monostate{}};
    model.convert(1, ink);
    model.convert(drawn, ink);
    EXPECT_EQ(model.undoStack().count(), steps);
    EXPECT_EQ(model.document().find(1)->kind, Kind::circle);
    model.convert(drawn, circleAt(0, 0));
    model.convert(drawn, ink);
    EXPECT_EQ(model.document().find(drawn)->kind, Kind::ink);
    EXPECT_EQ(model.undoStack().undoText(), "Back to ink");
}

TEST_F(Model, PutsWhatItRemovedBackInItsPlaces)
{
    for (int i = 0; i < 5; ++i)
        draw(10 * i, 0);
    listener.takeSaid();
    model.remove({4, 2, 2, 99});
    EXPECT_EQ(ids(), (Ids{1, 3, 5}));
    EXPECT_EQ(listener.takeSaid(), (Said{"taken 4", "taken 2"}));
    undo();
    EXPECT_EQ(ids(), (Ids{1, 2, 3, 4, 5}));
    EXPECT_EQ(listener.takeSaid(), (Said{"inserted 2 at 1", "inserted 4 at 3"}));
    redo();
    EXPECT_EQ(ids(), (Ids{1, 3, 5}));
}

TEST_F(Model, MovesInkAndShapeAndReadingsAndBackToTheLastBit)
{
    const StrokeId id = draw(0.1, 0.2);
    model.convert(id, circleAt(0.1, 0.2));
    const StrokePtr before = model.document().find(id);
    model.transform({id}, {1, 0, 0, 1, 7.3, -2.9});
    const StrokePtr after = model.document().find(id);
    EXPECT_DOUBLE_EQ(after->ink[0].x, 7.4);
    EXPECT_DOUBLE_EQ(after->ink[0].y, -2.7);
    EXPECT_DOUBLE_EQ(std::get<Round>(after->shape).ellipse.centre.x, 7.4);
    EXPECT_DOUBLE_EQ(std::get<Round>(after->readings[0].shape).ellipse.centre.y, -2.7);
    EXPECT_EQ(after->kind, Kind::circle);
    undo();
    EXPECT_EQ(model.document().find(id), before);
}

TEST_F(Model, SelectsTheCopiesThatItMakes)
{
    draw(0, 0);
    draw(50, 0);
    model.setSelection({2});
    model.duplicate({2}, {10, 5});
    EXPECT_EQ(ids(), (Ids{1, 2, 3}));
    EXPECT_EQ(model.selection(), (Ids{3}));
    EXPECT_EQ(model.document().find(3)->ink[0].x, 60);
    EXPECT_EQ(model.document().find(3)->ink[0].y, 5);
    EXPECT_EQ(model.document().find(2)->ink[0].x, 50);
    undo();
    EXPECT_EQ(ids(), (Ids{1, 2}));
    EXPECT_TRUE(model.selection().empty());
}

TEST_F(Model, ClearsInOneStep)
{
    for (int i = 0; i < 4; ++i)
        draw(i, i);
    model.setSelection({2, 3});
    listener.takeSaid();
    model.clear();
    EXPECT_TRUE(ids().empty());
    EXPECT_EQ(listener.takeSaid(), (Said{"taken 4", "taken 3", "taken 2", "taken 1", "selection"}));
    EXPECT_TRUE(model.selection().empty());
    undo();
    EXPECT_EQ(ids(), (Ids{1, 2, 3, 4}));
    const int steps = model.undoStack().count();
    model.undoStack().redo();
    model.clear();
    EXPECT_EQ(model.undoStack().count(), steps) << "clearing nothing is no step";
}

TEST_F(Model, SelectsWhatIsThereLowestFirst)
{
    for (int i = 0; i < 3; ++i)
        draw(i, i);
    listener.takeSaid();
    model.setSelection({3, 1, 77, 3});
    EXPECT_EQ(model.selection(), (Ids{1, 3}));
    model.setSelection({1, 3});
    EXPECT_EQ(listener.takeSaid(), (Said{"selection"}));
}

TEST_F(Model, DoesNothingWithStrokesThatAreNotThere)
{
    draw(0, 0);
    listener.takeSaid();
    const int steps = model.undoStack().count();
    model.remove({5});
    model.convert(5, circleAt(0, 0));
    model.transform({5}, {2, 0, 0, 2, 0, 0});
    model.duplicate({5}, {1, 1});
    model.addStrokes({}, "Nothing");
    EXPECT_EQ(model.undoStack().count(), steps);
    EXPECT_TRUE(listener.said.empty());
}

TEST_F(Model, StartsAnotherSketchWithNothingToUndoAndIdsOfItsOwn)
{
    draw(0, 0);
    draw(5, 5);
    model.setSelection({1});
    Stroke nameless;
    nameless.ink = inkAt(1, 1);
    Stroke seven = nameless;
    seven.id = 7;
    const auto shared = std::make_shared<const Stroke>(seven);
    listener.takeSaid();
    model.reset({shared, nullptr, std::make_shared<const Stroke>(nameless), shared});
    EXPECT_EQ(listener.takeSaid(), (Said{"selection", "reset"}));
    EXPECT_FALSE(model.undoStack().canUndo());
    EXPECT_EQ(ids(), (Ids{7, 8, 9}));
    EXPECT_EQ(draw(0, 0), 10U);
}

TEST_F(Model, UndoesThousandsOfStrokesWithoutALimit)
{
    constexpr int kStrokes = 10'000;
    for (int i = 0; i < kStrokes; ++i)
        draw(i, i);
    EXPECT_EQ(model.undoStack().count(), kStrokes);
    while (model.undoStack().canUndo())
        undo();
    EXPECT_TRUE(ids().empty());
    while (model.undoStack().canRedo())
        redo();
    EXPECT_EQ(ids().size(), static_cast<std::size_t>(kStrokes));
}

TEST_F(Model, SharesItsStrokesWithItsHistory)
{
    const StrokeId id = draw(0, 0);
    std::weak_ptr<const Stroke> stroke = model.document().find(id);
    undo();
    EXPECT_FALSE(stroke.expired());
    draw(1, 1); // what was undone can come back no more
    EXPECT_TRUE(stroke.expired());
}

TEST_F(Model, TellsOfAnotherSheet)
{
    Sheet sheet;
    sheet.width = 300;
    model.setSheet(sheet);
    EXPECT_EQ(model.sheet().width, 300);
    EXPECT_EQ(listener.takeSaid(), (Said{"sheet"}));
    EXPECT_FALSE(model.undoStack().canUndo());
}

TEST_F(Model, TakesItsStrokesAndItsHistoryAlongToAnotherView)
{
    const StrokeId kept = draw(1, 2);
    const StrokeId moved = draw(10, 20);
    model.transform({moved}, {1, 0, 0, 1, 5, 0});
    model.clear();
    undo();
    const StrokePtr before = model.document().find(kept);
    listener.takeSaid();
    Sheet sheet;
    sheet.width = 300;
    StrokeMapping mapping = model.changeSheet(sheet, {2, 0, 0, 2, 100, 0});
    EXPECT_EQ(listener.takeSaid(), (Said{"sheet"}));
    EXPECT_EQ(model.undoStack().count(), 4);
    EXPECT_EQ(mapping(before), model.document().find(kept));
    EXPECT_EQ(model.document().find(kept)->ink[0].x, 102);
    EXPECT_EQ(std::get<Round>(model.document().find(kept)->readings[0].shape).ellipse.major, 10);
    EXPECT_EQ(model.document().find(moved)->ink[0].x, 130);
    undo();
    EXPECT_EQ(model.document().find(moved)->ink[0].x, 120);
    redo();
    redo();
    EXPECT_TRUE(ids().empty());
    undo();
    EXPECT_EQ(model.document().find(kept), mapping(before)) << "the history shares it still";
}

} // namespace
