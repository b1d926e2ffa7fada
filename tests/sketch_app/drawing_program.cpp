// Draws one stroke after the other into a journal in the folder that it is told, and prints how many there are, until it
// is ended. Every third is turned into a line, every fifth taken back.
#include "sketch/app/sketch_journal.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    SketchModel model;
    const SketchJournal journal(model, QString::fromLocal8Bit(argv[1]));
    for (int i = 1;; ++i) {
        vnt::sketch::Ink ink;
        for (int k = 0; k < 200; ++k)
            ink.push_back({k * 1.25, i + k / 3.0, k * 8.0, 0.5});
        const auto id = model.addInk(std::move(ink), {});
        if (i % 3 == 0)
            model.convert(
                id, {
                        vnt::sketch::Kind::line, 0.9, vnt::sketch::Straight{{{0, 0}, {1.0 * i, 5}}, false}
            });
        if (i % 5 == 0)
            model.undoStack().undo();
        std::printf("%zu\n", model.document().strokes().size());
        std::fflush(stdout);
    }
}
