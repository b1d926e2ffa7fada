// What a crash leaves of a stroke that is being drawn: all that one had seen of it, and of one that was finished
// or cancelled what that made of it.
#include "sketch/app/sketch_journal.h"
#include "sketch/core/journal_text.h"
#include "tests/sketch_app/canvas_hand.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QFileInfo>

#include <memory>
#include <string>

namespace {

using namespace sketch_app_test;
using vnt::sketch::JournalReading;
using vnt::sketch::SketchDocument;

std::string textOf(const SketchDocument& document)
{
    std::string text;
    for (std::size_t i = 0; i < document.strokes().size(); ++i)
        text += vnt::sketch::journal_insert(i, *document.strokes()[i]);
    return text;
}

Ink inkOf(int points, double y = 0)
{
    Ink ink;
    for (int i = 0; i < points; ++i)
        ink.push_back({i * 2.5, y, i * 8.0, 1});
    return ink;
}

class DrawingJournals : public Canvas {
protected:
    DrawingJournals() : journal(std::make_unique<SketchJournal>(model, path())) {}

    QString path() const { return QString::fromStdString(folder.path("")); }
    // As it would be found after a crash now.
    JournalReading kept() const
    {
        return journal->file().isEmpty()
                   ? JournalReading()
                   : vnt::sketch::read_journal(support::content_of(journal->file().toStdString()));
    }
    bool runUntilKeptTo(Vec2 end) const
    {
        return runUntil([&] {
            const JournalReading reading = kept();
            if (reading.unfinished == 0)
                return false;
            const auto& last = reading.document.strokes().back()->ink.back();
            return distance({last.x, last.y}, end) < 1e-9;
        });
    }

    support::TemporaryFolder folder;
    std::unique_ptr<SketchJournal> journal;
    const Path line = linePath({100, 100}, {300, 180});
};

class SteadiedStrokes : public DrawingJournals, public testing::WithParamInterface<double> {};
TEST_P(SteadiedStrokes, AreKeptToThePenWithinAMoment)
{
    change([](CanvasSettings& settings) { settings.stabiliser = GetParam(); });
    mouse.drawOn(line);
    ASSERT_TRUE(runUntilKeptTo(line.back())) << "the line ends where it does on the screen";
    const JournalReading reading = kept();
    EXPECT_TRUE(reading.whole);
    EXPECT_EQ(count(), 0U) << "the sketch does not have it yet";
    ASSERT_EQ(reading.document.strokes().size(), 1U);
    const Ink& ink = reading.document.strokes()[0]->ink;
    EXPECT_NEAR(ink.front().x, 100, 1e-9);
    for (std::size_t i = 1; i < ink.size(); ++i)
        EXPECT_GE(ink[i].x, ink[i - 1].x) << "once and in order";
    mouse.release(point(line.back()));
    EXPECT_EQ(textOf(kept().document), textOf(model.document()));
    EXPECT_EQ(kept().unfinished, 0U);
    EXPECT_EQ(count(), 1U);
}
INSTANTIATE_TEST_SUITE_P(, SteadiedStrokes, testing::Values(0.0, 1.0),
                         [](const auto& row) { return row.param == 0 ? "NotAtAll" : "AsMuchAsCanBe"; });

TEST_F(DrawingJournals, HaveManyPointsAtOnce)
{
    mouse.drawOn(line);
    EXPECT_EQ(kept().unfinished, 0U) << "no time has passed";
    for (int i = 0; i < 5; ++i) {
        for (const Vec2 p : line)
            mouse.move(point(p));
    }
    const JournalReading reading = kept();
    ASSERT_NE(reading.unfinished, 0U);
    EXPECT_GE(reading.document.strokes().back()->ink.size(), 6 * line.size() - 64 - 2);
}

TEST_F(DrawingJournals, HaveNothingOfAStrokeThatWasCancelled)
{
    mouse.draw(line);
    mouse.drawOn(line);
    ASSERT_TRUE(runUntilKeptTo(line.back()));
    key(Qt::Key_Escape);
    EXPECT_FALSE(canvas.isDrawing());
    EXPECT_EQ(kept().unfinished, 0U);
    EXPECT_EQ(textOf(kept().document), textOf(model.document()));
    EXPECT_EQ(count(), 1U);
    EXPECT_TRUE(kept().whole);
}

TEST_F(DrawingJournals, LeaveNothingOfACancelledFirstStroke)
{
    mouse.drawOn(line);
    ASSERT_TRUE(runUntilKeptTo(line.back()));
    key(Qt::Key_Escape);
    journal.reset();
    SketchModel other;
    const SketchJournal next(other, path());
    EXPECT_TRUE(next.left().empty());
    EXPECT_TRUE(next.earlier().empty());
}

TEST_F(DrawingJournals, KeepEachStrokeToItself)
{
    mouse.drawOn(line);
    ASSERT_TRUE(runUntilKeptTo(line.back()));
    mouse.release(point(line.back()));
    mouse.drawOn({
        {10, 10},
        {20, 10},
        {30, 10},
        {40, 10}
    });
    ASSERT_TRUE(runUntilKeptTo({40, 10}));
    const JournalReading reading = kept();
    ASSERT_EQ(reading.document.strokes().size(), 2U);
    EXPECT_EQ(reading.document.strokes()[1]->ink.front().x, 10);
    EXPECT_EQ(reading.document.strokes()[1]->ink.size(), 4U);
}

TEST_F(DrawingJournals, OfferTheReadingsOfAStrokeThatComesBack)
{
    const Path circle = circlePath({300, 300}, 80);
    mouse.drawOn(circle);
    ASSERT_TRUE(runUntilKeptTo(circle.back()));
    const std::string file =
        folder.file("crashed.sketch", support::content_of(journal->file().toStdString()));
    SketchModel other;
    SketchJournal next(other, path());
    ASSERT_TRUE(next.recover(QString::fromStdString(file)));
    ASSERT_EQ(other.document().strokes().size(), 1U);
    const StrokePtr stroke = other.document().strokes()[0];
    EXPECT_EQ(stroke->kind, Kind::ink);
    ASSERT_FALSE(stroke->readings.empty());
    EXPECT_EQ(stroke->readings.front().kind, Kind::circle);
    EXPECT_EQ(vnt::sketch::read_journal(support::content_of(next.file().toStdString())).unfinished, 0U)
        << "it is one of the strokes from now on";
}

TEST_F(DrawingJournals, LeaveAStrokeThatTheirEndCutOff)
{
    mouse.drawOn(line); // and no time passes
    journal.reset();
    SketchModel other;
    const SketchJournal next(other, path());
    ASSERT_EQ(next.left().size(), 1U);
    EXPECT_EQ(next.left()[0].strokes, 1);
}

TEST_F(DrawingJournals, TakeItAlongWhenTheFileIsMadeAnew)
{
    model.addInk(inkOf(20), {});
    for (int i = 0; i < 15; ++i) {
        model.addInk(inkOf(40000, i + 1.0 / 3), {});
        model.undoStack().undo();
    }
    const qint64 before = QFileInfo(journal->file()).size();
    ASSERT_GT(before, 9 * 1024 * 1024);
    mouse.drawOn(line);
    ASSERT_TRUE(runUntilKeptTo(line.back()));
    ASSERT_TRUE(runUntil([&] { return QFileInfo(journal->file()).size() < before / 100; }));
    ASSERT_NE(kept().unfinished, 0U);
    EXPECT_EQ(kept().document.strokes().back()->ink.size(), line.size());
    EXPECT_EQ(kept().document.strokes().size(), 2U);
}

} // namespace
