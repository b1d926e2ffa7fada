// The curves that are made ahead of an answer are those that it would have had without.
#include "sketch/app/answer_curves.h"

#include "sketch/app/sketch_session.h"
#include "sketch/core/answer.h"
#include "tests/sketch/drawn_strokes.h"
#include "tests/sketch_app/event_loop.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace {

using namespace sketch_app_test;
using namespace vnt::sketch;

Ink scribble(double at, int points)
{
    Ink ink;
    for (int i = 0; i < points; ++i) {
        const double t = i / 9.0;
        ink.push_back({at + 100 * std::sin(1.7 * t) + t, at + 90 * std::sin(2.3 * t), i * 8.0, 0.5});
    }
    return ink;
}

constexpr int kStrokes = 12;

struct ChangeCase {
    const char* name;
    std::function<void(SketchModel&)> change;
};
// clang-format off
const ChangeCase kChanges[] = {
    {"Drawn", [](SketchModel&) {}},
    {"Moved", [](SketchModel& model) { model.transform({1, 4, 9}, {1, 0, 0, 1, 1.0 / 3, -7}); }},
    {"MovedAndBack", [](SketchModel& model) {
        model.transform({1, 4, 9}, {1, 0, 0, 1, 1.0 / 3, -7});
        model.undoStack().undo();
    }},
    {"Converted", [](SketchModel& model) {
        model.convert(3, {Kind::line, 1, Straight{{{1, 2}, {300, 400}}, false}});
    }},
    {"ClearedAndBack", [](SketchModel& model) {
        model.clear();
        model.undoStack().undo();
    }},
    {"Removed", [](SketchModel& model) { model.remove({2, 12}); }},
    {"Copied", [](SketchModel& model) { model.duplicate({2, 5}, {16, 16}); }},
    {"OnAnotherView", [](SketchModel& model) { model.changeSheet(Sheet(), {1.7, 0.2, -0.2, 1.7, 30, -4}); }},
    {"InAnotherSketch", [](SketchModel& model) {
        const auto strokes = model.document().strokes();
        model.reset({strokes[3], strokes[7]});
    }},
};
// clang-format on
class CurvesOfStrokes : public testing::TestWithParam<ChangeCase> {};
TEST_P(CurvesOfStrokes, AreThoseThatTheyHaveWithout)
{
    for (const bool isMadeBefore : {true, false}) {
        SketchModel model;
        AnswerCurves curves(model);
        for (int i = 0; i < kStrokes; ++i)
            model.addInk(scribble(100 + 13 * i, 200), {});
        if (isMadeBefore)
            curves.waitUntilMade();
        GetParam().change(model);
        if (isMadeBefore)
            curves.waitUntilMade();
        const auto& strokes = model.document().strokes();
        const auto inks = std::count_if(strokes.begin(), strokes.end(), [](const StrokePtr& stroke) {
            return std::holds_alternative<std::monostate>(stroke->shape);
        });
        EXPECT_EQ(curves.count(), static_cast<std::size_t>(inks)) << "what is gone has none";
        if (isMadeBefore) {
            EXPECT_EQ(curves.madeCount(), curves.count());
        }
        EXPECT_EQ(
            answer_of(strokes, model.sheet(), [&](const StrokePtr& stroke) { return curves.of(stroke); }),
            answer_of(strokes, model.sheet()));
    }
}
INSTANTIATE_TEST_SUITE_P(, CurvesOfStrokes, testing::ValuesIn(kChanges),
                         [](const auto& row) { return row.param.name; });

TEST(AnswerCurves, AreAskedForByAnAnswer)
{
    int asked = 0;
    const auto stroke = std::make_shared<Stroke>();
    const std::string answer = answer_of({stroke}, Sheet(), [&](const StrokePtr& of) {
        ++asked;
        EXPECT_EQ(of, stroke);
        return Path{
            {0, 0},
            {1, 0},
            {2, 1},
            {3, 0}
        };
    });
    EXPECT_EQ(asked, 1);
    EXPECT_NE(answer.find("<open_free_curve>"), std::string::npos);
}

TEST(AnswerCurves, ChangeNothingOfASavedSketch)
{
    needApplication();
    const support::TemporaryFolder folder;
    SketchSession session(QString::fromStdString(folder.path("sketches")));
    for (int i = 0; i < 3; ++i)
        session.model().addInk(scribble(100 + i, 700), {});
    session.curves().waitUntilMade();
    const QString file = QString::fromStdString(folder.path("sketch.xml"));
    const auto& strokes = session.model().document().strokes();
    ASSERT_EQ(writeSketch(file, strokes, session.model().sheet()).sentence, "");
    const std::string expected = support::content_of(file.toStdString());
    ASSERT_EQ(session.save(file).sentence, "");
    EXPECT_EQ(support::content_of(file.toStdString()), expected);
}

// As many as there are go with it, made or not.
TEST(AnswerCurves, EndWithTheirSketchAtAnyTime)
{
    for (int i = 1; i < 20; ++i) {
        std::weak_ptr<const Stroke> last;
        {
            SketchModel model;
            const AnswerCurves curves(model);
            for (int k = 0; k < i; ++k)
                model.addInk(scribble(k, 300), {});
            model.clear();
            model.undoStack().undo();
            last = model.document().strokes().back();
        }
        EXPECT_TRUE(last.expired()) << i;
    }
}

} // namespace
