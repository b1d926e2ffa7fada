// A program that draws is killed at any moment: what it had drawn is there.
#include "sketch/app/sketch_journal.h"
#include "tests/sketch_app/event_loop.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <string>

namespace {

using namespace sketch_app_test;

class KilledPrograms : public testing::TestWithParam<int> {};

TEST_P(KilledPrograms, LoseNothingThatTheyHadDrawn)
{
    needApplication();
    const support::TemporaryFolder folder;
    QProcess program;
    program.start(VNT_DRAWING_PROGRAM, {QString::fromStdString(folder.path(""))});
    QByteArray printed;
    ASSERT_TRUE(runUntil([&] {
        printed += program.readAllStandardOutput();
        return printed.count('\n') >= GetParam();
    }));
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    printed += program.readAllStandardOutput();
    printed.truncate(printed.lastIndexOf('\n')); // the last number may be cut
    const qint64 told = printed.mid(printed.lastIndexOf('\n') + 1).toLongLong();

    SketchModel model;
    SketchJournal journal(model, QString::fromStdString(folder.path("")));
    ASSERT_EQ(journal.left().size(), 1U);
    ASSERT_TRUE(journal.recover(journal.left()[0].file));
    const auto strokes = static_cast<qint64>(model.document().strokes().size());
    EXPECT_GE(strokes, told);
    EXPECT_LE(strokes, told + 1) << "the one that was being drawn";
    EXPECT_EQ(model.document().strokes()[0]->ink.size(), 200U);
    EXPECT_EQ(model.document().strokes()[0]->ink[3].x, 3.75);
    EXPECT_EQ(model.document().strokes()[2]->kind, vnt::sketch::Kind::line);
}
INSTANTIATE_TEST_SUITE_P(After, KilledPrograms, testing::Values(4, 17, 60, 301));

} // namespace
