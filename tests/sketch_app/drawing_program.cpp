// Works at a sketch whose journal is in the folder that it is told, and prints how far it is, until it is ended.
//   strokes  one after the other; every third is turned into a line, every fifth taken back; prints how many there are
//   ink      one stroke without an end; prints its points
//   moves    two hundred strokes, all of them moved to the right again and again; prints the moves
#include "sketch/app/sketch_journal.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

namespace {

constexpr int kMoved = 200;

void print(std::size_t number)
{
    std::printf("%zu\n", number);
    std::fflush(stdout);
}

vnt::sketch::Ink inkAt(double y)
{
    vnt::sketch::Ink ink;
    for (int k = 0; k < 200; ++k)
        ink.push_back({k * 1.25, y + k / 3.0, k * 8.0, 0.5});
    return ink;
}

[[noreturn]] void drawStrokes(SketchModel& model)
{
    for (int i = 1;; ++i) {
        const auto id = model.addInk(inkAt(i), {});
        if (i % 3 == 0)
            model.convert(
                id, {
                        vnt::sketch::Kind::line, 0.9, vnt::sketch::Straight{{{0, 0}, {1.0 * i, 5}}, false}
            });
        if (i % 5 == 0)
            model.undoStack().undo();
        print(model.document().strokes().size());
    }
}

[[noreturn]] void drawInk(SketchModel& model)
{
    model.addInk(inkAt(0), {});
    for (int i = 1;; ++i) {
        model.growInk(
            {
                {i * 1.25, i / 3.0, i * 8.0, 0.5}
        },
            {});
        print(static_cast<std::size_t>(i));
    }
}

[[noreturn]] void moveStrokes(SketchModel& model)
{
    std::vector<vnt::sketch::StrokeId> all;
    for (int i = 0; i < kMoved; ++i)
        all.push_back(model.addInk(inkAt(i), {}));
    for (int i = 1;; ++i) {
        model.transform(all, {1, 0, 0, 1, 1, 0});
        print(static_cast<std::size_t>(i));
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    SketchModel model;
    const SketchJournal journal(model, QString::fromLocal8Bit(argv[1]));
    if (std::strcmp(argv[2], "ink") == 0)
        drawInk(model);
    if (std::strcmp(argv[2], "moves") == 0)
        moveStrokes(model);
    drawStrokes(model);
}
