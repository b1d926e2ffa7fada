// What is done to all of very many strokes. That it takes a time that grows with them, and no faster, is
// measured by benchmarks/sketch_bench.
#include "sketch/app/sketch_model.h"
#include "sketch/app/stroke_art.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using namespace vnt::sketch;

constexpr std::size_t kMany = 20'000;
constexpr double kSlope = 3; // of each line, by its number

std::vector<StrokePtr> strokesUpTo(std::size_t count)
{
    std::vector<StrokePtr> strokes;
    for (std::size_t i = 1; i <= count; ++i) {
        auto stroke = std::make_shared<Stroke>();
        stroke->id = i;
        stroke->kind = Kind::line;
        stroke->shape = Straight{
            {{0, 0}, {static_cast<double>(i), kSlope * static_cast<double>(i)}},
            false
        };
        strokes.push_back(stroke);
    }
    return strokes;
}

const std::vector<StrokePtr>& many()
{
    static const std::vector<StrokePtr> strokes = strokesUpTo(kMany);
    return strokes;
}

Vec2 endOf(const StrokePtr& stroke) { return std::get<Straight>(stroke->shape).corners.back(); }

// Each stroke once more, moved, in the same order.
void expectCopied(const std::vector<StrokePtr>& strokes, std::size_t first, Vec2 by)
{
    ASSERT_EQ(strokes.size(), first + kMany);
    for (std::size_t i = 0; i < kMany; ++i)
        ASSERT_EQ(endOf(strokes[first + i]), endOf(many()[i]) + by) << i;
}

struct WorkCase {
    const char* name;
    std::function<void(SketchModel&)> work;
    std::function<void(const SketchModel&)> expect;
};
const auto kUndo = [](SketchModel& model) { model.undoStack().undo(); };
const auto kSelectAll = [](SketchModel& model) { model.setSelection(model.document().ids()); };
const auto kMoveAll = [](SketchModel& model) { model.transform(model.document().ids(), {1, 0, 0, 1, 2, 4}); };
const auto kClear = [](SketchModel& model) { model.clear(); };
const auto kDuplicateAll = [](SketchModel& model) { model.duplicate(model.document().ids(), {5, 6}); };
const auto kDeleteAll = [](SketchModel& model) { model.remove(model.document().ids()); };
const auto kExpectNone = [](const SketchModel& model) { EXPECT_TRUE(model.document().strokes().empty()); };
const auto kExpectAll = [](const SketchModel& model) { EXPECT_EQ(model.document().strokes(), many()); };

std::function<void(SketchModel&)> andBack(std::function<void(SketchModel&)> work)
{
    return [work](SketchModel& model) {
        work(model);
        kUndo(model);
    };
}

// clang-format off
const WorkCase kWorks[] = {
    {"Selected", kSelectAll, [](const SketchModel& model) { EXPECT_EQ(model.selection().size(), kMany); }},
    {"Cleared", kClear, kExpectNone},
    {"ClearedAndBack", andBack(kClear), kExpectAll},
    {"Deleted", kDeleteAll, kExpectNone},
    {"DeletedAndBack", andBack(kDeleteAll), kExpectAll},
    {"Moved", kMoveAll,
        [](const SketchModel& model) { expectCopied(model.document().strokes(), 0, {2, 4}); }},
    {"MovedAndBack", andBack(kMoveAll),
        [](const SketchModel& model) { expectCopied(model.document().strokes(), 0, {0, 0}); }},
    {"Copied", kDuplicateAll,
        [](const SketchModel& model) { expectCopied(model.document().strokes(), kMany, {5, 6}); }},
    {"CopiedAndBack", andBack(kDuplicateAll), kExpectAll},
};
// clang-format on
class ManyStrokes : public testing::TestWithParam<WorkCase> {};
TEST_P(ManyStrokes, AreAll)
{
    SketchModel model;
    model.reset(many());
    GetParam().work(model);
    GetParam().expect(model);
}
INSTANTIATE_TEST_SUITE_P(, ManyStrokes, testing::ValuesIn(kWorks),
                         [](const auto& row) { return row.param.name; });

TEST(ManyStrokesOfASheet, AreFoundReplacedAndTaken)
{
    StrokeArts arts;
    arts.reset(many());
    for (const StrokePtr& stroke : many()) {
        ASSERT_EQ(arts.find(stroke->id)->stroke, stroke);
        ASSERT_NE(arts.replace(stroke), nullptr);
    }
    EXPECT_EQ(arts.all()[kMany / 2]->stroke, many()[kMany / 2]);
    arts.take(1);
    EXPECT_EQ(arts.find(1), nullptr);
    EXPECT_EQ(arts.all().front()->stroke, many()[1]);
}

} // namespace
