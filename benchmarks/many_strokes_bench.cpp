// What is done to all strokes of a sketch when there are very many, and what an answer of ink takes.
#include "sketch/app/answer_curves.h"
#include "sketch/app/sketch_model.h"
#include "sketch/core/answer.h"

#include "benchmarks/support.h"
#include "tests/sketch/drawn_strokes.h"

#include <QCoreApplication>

#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using vnt::sketch::Kind;
using vnt::sketch::StrokePtr;

// For ten times as many strokes: what grows with their square takes a hundred times as long.
constexpr double kMostGrowth = 20;
constexpr double kAnswerTarget_ms = 100;

std::vector<StrokePtr> lines(std::size_t count)
{
    std::vector<StrokePtr> strokes;
    strokes.reserve(count);
    for (std::size_t i = 1; i <= count; ++i) {
        auto stroke = std::make_shared<vnt::sketch::Stroke>();
        stroke->id = i;
        stroke->kind = Kind::line;
        stroke->shape = vnt::sketch::Straight{
            {{0, 0}, {static_cast<double>(i), 1}},
            false
        };
        strokes.push_back(stroke);
    }
    return strokes;
}

using Work = std::function<void(SketchModel&)>;

struct WorkCase {
    const char* name;
    Work prepare, work;
};

std::vector<WorkCase> works()
{
    const Work nothing = [](SketchModel&) {};
    const Work select = [](SketchModel& model) { model.setSelection(model.document().ids()); };
    const Work clear = [](SketchModel& model) { model.clear(); };
    const Work move = [](SketchModel& model) { model.transform(model.document().ids(), {1, 0, 0, 1, 2, 2}); };
    const Work copy = [](SketchModel& model) { model.duplicate(model.document().ids(), {3, 3}); };
    const Work undo = [](SketchModel& model) { model.undoStack().undo(); };
    return {
        {"select all",         nothing, select},
        {"clear",              select,  clear },
        {"undo of that",       clear,   undo  },
        {"move all",           nothing, move  },
        {"undo of the move",   move,    undo  },
        {"duplicate all",      nothing, copy  },
        {"undo of the copies", copy,    undo  },
    };
}

std::string name_for(const WorkCase& row, std::size_t count)
{
    return row.name + (", " + std::to_string(count));
}

void register_work(const WorkCase& row, std::size_t count)
{
    benchmark::RegisterBenchmark(name_for(row, count).c_str(), [row, count](benchmark::State& state) {
        const std::vector<StrokePtr> strokes = lines(count);
        SketchModel model;
        for ([[maybe_unused]] auto _ : state) {
            state.PauseTiming();
            model.reset(strokes);
            row.prepare(model);
            state.ResumeTiming();
            row.work(model);
        }
    })->Unit(benchmark::kMillisecond);
}

// Ink that fills a good part of a hand's sheet each.
void draw(SketchModel& model, int strokes)
{
    for (int i = 0; i < strokes; ++i) {
        drawn::Hand hand;
        hand.seed = static_cast<std::uint64_t>(i) + 1;
        hand.points = 200;
        hand.jitter = 6;
        model.addInk(drawn::stroke(drawn::ellipse(1, 0.7), true, hand), {});
    }
}

std::unique_ptr<SketchModel> g_drawn;
std::unique_ptr<AnswerCurves> g_curves;

// Each curve fitted now.
void plain_answer(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(answer_of(g_drawn->document().strokes(), g_drawn->sheet()));
}

// With the curves that were made while one drew.
void answer(benchmark::State& state)
{
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(answer_of(g_drawn->document().strokes(), g_drawn->sheet(),
                                           [](const StrokePtr& stroke) { return g_curves->of(stroke); }));
    }
}

void program(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "many strokes");
    const QCoreApplication application(argc, argv);
    const bool is_smoke = effort == bench::Effort::smoke;
    const std::size_t many = is_smoke ? 1000 : 100'000;
    const int inks = is_smoke ? 20 : 2000;
    for (const WorkCase& row : works()) {
        register_work(row, many / 10);
        register_work(row, many);
    }
    g_drawn = std::make_unique<SketchModel>();
    g_curves = std::make_unique<AnswerCurves>(*g_drawn);
    draw(*g_drawn, inks);
    g_curves->waitUntilMade();
    benchmark::RegisterBenchmark("plain_answer", plain_answer)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("answer", answer)->Unit(benchmark::kMillisecond);
    const bench::Medians medians = bench::run_registered();
    g_curves.reset();
    g_drawn.reset();
    const auto milliseconds = [&](const std::string& name) { return 1000 * medians.of(name); };

    std::cout << "## Many strokes\n\n"
              << "The sketch application's document with its steps, without a window. Milliseconds.\n\n";
    bench::Table table(
        {"done to all", std::to_string(many / 10) + " strokes", std::to_string(many) + " strokes", "times"});
    for (const WorkCase& row : works()) {
        const double few = milliseconds(name_for(row, many / 10));
        const double all = milliseconds(name_for(row, many));
        table.add({row.name, bench::fixed(few, 1), bench::fixed(all, 1),
                   is_smoke ? bench::fixed(all / few, 1) : bench::at_most(all / few, kMostGrowth)});
    }
    std::cout << table.text() << "\nThe answer of " << inks
              << " strokes of ink: " << bench::at_most(milliseconds("answer"), kAnswerTarget_ms)
              << " milliseconds, with the curves that were made while one drew; "
              << bench::fixed(milliseconds("plain_answer"), 0) << " without.\n";
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, program); }
