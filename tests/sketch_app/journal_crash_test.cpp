// A program that draws is killed at any moment: what it had drawn is there.
#include "sketch/app/sketch_journal.h"
#include "tests/sketch_app/event_loop.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <memory>
#include <string>

namespace {

using namespace sketch_app_test;

class KilledPrograms : public testing::TestWithParam<int> {
protected:
    // The last number that it printed before it was killed, which was when it had printed so many.
    qint64 killed(const char* work, int numbers)
    {
        QProcess program;
        program.start(VNT_DRAWING_PROGRAM, {path(), work});
        QByteArray printed;
        EXPECT_TRUE(runUntil([&] {
            printed += program.readAllStandardOutput();
            return printed.count('\n') >= numbers;
        }));
        program.kill();
        EXPECT_TRUE(program.waitForFinished());
        printed += program.readAllStandardOutput();
        printed.truncate(printed.lastIndexOf('\n')); // the last number may be cut
        return printed.mid(printed.lastIndexOf('\n') + 1).toLongLong();
    }
    void recover()
    {
        journal = std::make_unique<SketchJournal>(model, path());
        ASSERT_EQ(journal->left().size(), 1U);
        ASSERT_TRUE(journal->recover(journal->left()[0].file));
    }
    QString path() const { return QString::fromStdString(folder.path("")); }
    const auto& strokes() const { return model.document().strokes(); }

    KilledPrograms() { needApplication(); }
    support::TemporaryFolder folder;
    SketchModel model;
    std::unique_ptr<SketchJournal> journal;
};

TEST_P(KilledPrograms, LoseNothingThatTheyHadDrawn)
{
    const qint64 told = killed("strokes", GetParam());
    recover();
    const auto count = static_cast<qint64>(strokes().size());
    EXPECT_GE(count, told);
    EXPECT_LE(count, told + 1) << "the one that was being drawn";
    EXPECT_EQ(strokes().at(0)->ink.size(), 200U);
    EXPECT_EQ(strokes().at(0)->ink.at(3).x, 3.75);
    EXPECT_EQ(strokes().at(2)->kind, vnt::sketch::Kind::line);
}
INSTANTIATE_TEST_SUITE_P(After, KilledPrograms, testing::Values(4, 17, 60, 301));

class ProgramsKilledWithinAStroke : public KilledPrograms {};
TEST_P(ProgramsKilledWithinAStroke, LoseItsLastPointsAtMost)
{
    const qint64 told = killed("ink", GetParam());
    recover();
    ASSERT_EQ(strokes().size(), 2U);
    const auto& ink = strokes()[1]->ink;
    EXPECT_GE(static_cast<qint64>(ink.size()), told - 63);
    for (std::size_t i = 0; i < ink.size(); ++i)
        ASSERT_EQ(ink[i].x, static_cast<double>(i + 1) * 1.25);
    EXPECT_EQ(strokes()[1]->kind, vnt::sketch::Kind::ink);
}
INSTANTIATE_TEST_SUITE_P(After, ProgramsKilledWithinAStroke, testing::Values(70, 300, 5000));

class ProgramsKilledWithinAMove : public KilledPrograms {};
TEST_P(ProgramsKilledWithinAMove, HaveMovedAllOrNone)
{
    const auto told = static_cast<double>(killed("moves", GetParam()));
    recover();
    ASSERT_EQ(strokes().size(), 200U);
    const double moved = strokes()[0]->ink.at(0).x;
    EXPECT_GE(moved, told);
    for (const auto& stroke : strokes())
        ASSERT_EQ(stroke->ink.at(0).x, moved) << stroke->id;
}
INSTANTIATE_TEST_SUITE_P(After, ProgramsKilledWithinAMove, testing::Values(1, 4, 9, 16));

} // namespace
