#include "sketch/app/sketch_journal.h"

#include "sketch/app/journal_file.h"
#include "sketch/core/journal_text.h"
#include "tests/sketch_app/event_loop.h"
#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <thread>

namespace {

using namespace sketch_app_test;
using namespace vnt::sketch;

// The document as text: equal where all strokes are, in the same order.
std::string textOf(const SketchDocument& document)
{
    std::string text;
    for (std::size_t i = 0; i < document.strokes().size(); ++i)
        text += journal_insert(i, *document.strokes()[i]);
    return text;
}

Ink inkAt(double y, int points = 20)
{
    Ink ink;
    for (int i = 0; i < points; ++i)
        ink.push_back({i * 2.5, y + i / 7.0, i * 8.0, 0.25});
    return ink;
}

StrokePtr strokeAt(StrokeId id)
{
    Stroke stroke;
    stroke.id = id;
    stroke.ink = inkAt(static_cast<double>(id));
    return std::make_shared<const Stroke>(stroke);
}

const Reading kLine{
    Kind::line, 0.9, Straight{{{0, 0}, {50, 8}}, false}
};

class SketchJournals : public testing::Test {
protected:
    SketchJournals() { needApplication(); }

    QString path(const std::string& name = "") const { return QString::fromStdString(folder.path(name)); }
    SketchDocument documentIn(const QString& file) const
    {
        return read_journal(support::content_of(file.toStdString())).document;
    }
    // Draws so many strokes, and ends the program in order.
    void leave(int strokes, bool isSafe) const
    {
        SketchModel model;
        SketchJournal journal(model, path());
        for (int i = 0; i < strokes; ++i)
            model.addInk(inkAt(i), {});
        journal.setSafe(isSafe);
    }

    support::TemporaryFolder folder;
};

TEST_F(SketchJournals, HaveEveryChangeInTheFileAtOnce)
{
    SketchModel model;
    const SketchJournal journal(model, path());
    EXPECT_EQ(journal.file(), "") << "nothing is drawn yet";
    const auto expectSame = [&](const char* step) {
        EXPECT_EQ(textOf(documentIn(journal.file())), textOf(model.document())) << step;
    };
    const StrokeId first = model.addInk(inkAt(10), {kLine});
    expectSame("ink");
    const StrokeId second = model.addInk(inkAt(20), {});
    model.convert(first, kLine);
    expectSame("converted");
    model.transform({first, second}, {1, 0, 0, 1, 3.25, -1});
    expectSame("moved");
    model.duplicate({second}, {16, 16});
    expectSame("duplicated");
    model.remove({first});
    expectSame("removed");
    model.clear();
    expectSame("cleared");
    model.undoStack().undo();
    model.undoStack().undo();
    expectSame("undone");
    Sheet sheet;
    sheet.width = 640;
    model.setSheet(sheet);
    EXPECT_EQ(read_journal(support::content_of(journal.file().toStdString())).sheet.width, 640);
}

TEST_F(SketchJournals, AreOfferedAfterACrashAndNotWhileTheirProgramRuns)
{
    SketchModel model;
    auto journal = std::make_unique<SketchJournal>(model, path());
    model.addInk(inkAt(1), {});
    SketchModel other;
    const SketchJournal second(other, path());
    EXPECT_TRUE(second.left().empty());
    journal.reset();
    ASSERT_EQ(second.left().size(), 1U);
    EXPECT_EQ(second.left()[0].strokes, 1);
}

TEST_F(SketchJournals, GoOnInTheRecoveredFile)
{
    leave(3, false);
    SketchModel model;
    SketchJournal journal(model, path());
    ASSERT_EQ(journal.left().size(), 1U);
    const QString file = journal.left()[0].file;
    ASSERT_TRUE(journal.recover(file));
    EXPECT_EQ(journal.file().toStdString(), file.toStdString());
    EXPECT_TRUE(journal.left().empty());
    EXPECT_EQ(model.document().strokes().size(), 3U);
    model.addInk(inkAt(9), {});
    EXPECT_EQ(textOf(documentIn(file)), textOf(model.document()));
    EXPECT_EQ(documentIn(file).strokes().size(), 4U);
}

struct EndCase {
    const char* name;
    int strokes;
    bool isSafe;
    std::size_t left, earlier; // sketches afterwards
};
const EndCase kEnds[] = {
    {"OfAnUnsafeSketchLeaveIt", 2, false, 1, 0},
    {"OfASafeSketchPutItAway",  2, true,  0, 1},
    {"OfNoStrokesLeaveNothing", 0, false, 0, 0},
};
class OrderlyEnds : public SketchJournals, public testing::WithParamInterface<EndCase> {};
TEST_P(OrderlyEnds, KeepWhatIsWorthIt)
{
    leave(GetParam().strokes, GetParam().isSafe);
    SketchModel model;
    const SketchJournal journal(model, path());
    EXPECT_EQ(journal.left().size(), GetParam().left);
    EXPECT_EQ(journal.earlier().size(), GetParam().earlier);
}
INSTANTIATE_TEST_SUITE_P(, OrderlyEnds, testing::ValuesIn(kEnds),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchJournals, PutTheSketchAwayWhenAnotherComesInItsPlace)
{
    SketchModel model;
    SketchJournal journal(model, path());
    QString away;
    QObject::connect(&journal, &SketchJournal::putAway, [&away](const QString& file) { away = file; });
    model.addInk(inkAt(4), {});
    const std::string before = textOf(model.document());
    model.reset({});
    ASSERT_EQ(journal.earlier().size(), 1U);
    EXPECT_EQ(journal.earlier()[0].file.toStdString(), away.toStdString());
    EXPECT_EQ(textOf(documentIn(away)), before);
    EXPECT_EQ(journal.file(), "");

    model.addInk(inkAt(5), {});
    ASSERT_TRUE(journal.recover(away)); // and now the other one is put away
    EXPECT_EQ(textOf(model.document()), before);
    EXPECT_FALSE(QFile::exists(away)) << "it is being drawn again, in the folder of those";
    EXPECT_EQ(journal.earlier().size(), 1U);
}

TEST_F(SketchJournals, KeepTheLastTwentyThatWerePutAway)
{
    SketchModel model;
    SketchJournal journal(model, path());
    for (int i = 0; i < SketchJournal::kMostEarlier + 3; ++i) {
        model.addInk(inkAt(i), {});
        model.reset({});
    }
    EXPECT_EQ(journal.earlier().size(), static_cast<std::size_t>(SketchJournal::kMostEarlier));
}

TEST_F(SketchJournals, DiscardWhatTheUserDoesNotWant)
{
    leave(2, false);
    SketchModel model;
    SketchJournal journal(model, path());
    journal.discard(journal.left().at(0).file);
    EXPECT_TRUE(journal.left().empty());
    EXPECT_EQ(journal.earlier().size(), 1U) << "it can be had back";
}

TEST_F(SketchJournals, PassOverAHalfWrittenLastLine)
{
    leave(3, false);
    SketchModel model;
    SketchJournal journal(model, path());
    const QString file = journal.left().at(0).file;
    QFile cut(file);
    ASSERT_TRUE(cut.resize(cut.size() - 30));
    ASSERT_TRUE(journal.recover(file));
    EXPECT_EQ(model.document().strokes().size(), 2U);
}

TEST_F(SketchJournals, LeaveAFileOfAnotherKindAlone)
{
    SketchModel model;
    SketchJournal journal(model, path());
    const std::string name = folder.file("foreign.sketch", "something else\n");
    EXPECT_TRUE(journal.left().empty());
    EXPECT_FALSE(journal.recover(QString::fromStdString(name)));
    EXPECT_EQ(support::content_of(name), "something else\n");
}

TEST_F(SketchJournals, TellOnceThatTheyCannotWriteAndTryAgainWithEachStroke)
{
    folder.file("blocked", "a file where the folder should be");
    SketchModel model;
    SketchJournal journal(model, path("blocked"));
    int told = 0;
    QObject::connect(&journal, &SketchJournal::failed, [&told] { ++told; });
    model.addInk(inkAt(1), {});
    model.addInk(inkAt(2), {});
    EXPECT_EQ(told, 1);
    QFile::remove(path("blocked"));
    model.addInk(inkAt(3), {});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(textOf(documentIn(journal.file())), textOf(model.document()));
    EXPECT_EQ(documentIn(journal.file()).strokes().size(), 3U);
}

// What was undone is not kept for ever: the file is made anew when nothing is drawn for a moment.
TEST_F(SketchJournals, DropWhatWasUndoneWhenItHasBecomeLong)
{
    SketchModel model;
    const SketchJournal journal(model, path());
    model.addInk(inkAt(1), {});
    for (int i = 0; i < 12; ++i) {
        model.addInk(inkAt(i, 30000), {});
        model.undoStack().undo();
    }
    ASSERT_GT(QFileInfo(journal.file()).size(), 8 * 1024 * 1024);
    EXPECT_TRUE(runUntil([&] { return QFileInfo(journal.file()).size() < 10000; }));
    EXPECT_EQ(textOf(documentIn(journal.file())), textOf(model.document()));
    model.addInk(inkAt(2), {});
    EXPECT_EQ(documentIn(journal.file()).strokes().size(), 2U);
}

enum class End { goOnWaiting, end, anotherSketch };
struct FullDiskCase {
    const char* name;
    rlim_t bytes; // that a file may have
    End end;
};
// One stroke of inkAt is some 600 bytes.
const FullDiskCase kFullDisks[] = {
    {"AtTheFirstStrokeIsTriedAgainAfterAWhile",       10,   End::goOnWaiting  },
    {"AtTheLastStrokeIsTriedAgainAfterAWhile",        1000, End::goOnWaiting  },
    {"AtTheFirstStrokeIsTriedAgainAtTheEnd",          10,   End::end          },
    {"AtTheLastStrokeIsTriedAgainAtTheEnd",           1000, End::end          },
    {"AtTheFirstStrokeIsTriedAgainBeforeAnother",     10,   End::anotherSketch},
    {"AtTheLastStrokeIsTriedAgainBeforeAnotherComes", 1000, End::anotherSketch},
};
class FullDisks : public SketchJournals, public testing::WithParamInterface<FullDiskCase> {};
TEST_P(FullDisks, LoseNothingOnceThereIsRoom)
{
    SketchModel model;
    auto journal = std::make_unique<SketchJournal>(model, path());
    QStringList told;
    int mended = 0;
    QObject::connect(journal.get(), &SketchJournal::failed, [&told](const QString& why) { told += why; });
    QObject::connect(journal.get(), &SketchJournal::mended, [&mended] { ++mended; });
    {
        const support::FullDisk full(GetParam().bytes);
        model.addInk(inkAt(1), {});
        model.addInk(inkAt(2), {});
        model.addInk(inkAt(3), {});
        letPass(2300); // a try in vain
    }
    EXPECT_EQ(told, QStringList{qt_error_string(EFBIG)});
    const std::string drawn = textOf(model.document());
    if (GetParam().end == End::goOnWaiting) {
        ASSERT_TRUE(runUntil([&] { return mended == 1; }));
        EXPECT_EQ(textOf(documentIn(journal->file())), drawn);
    } else if (GetParam().end == End::end) {
        journal.reset();
        journal = std::make_unique<SketchJournal>(model, path());
        ASSERT_EQ(journal->left().size(), 1U);
        EXPECT_EQ(textOf(documentIn(journal->left()[0].file)), drawn);
    } else {
        model.reset({});
        ASSERT_EQ(journal->earlier().size(), 1U);
        EXPECT_EQ(textOf(documentIn(journal->earlier()[0].file)), drawn);
    }
}
INSTANTIATE_TEST_SUITE_P(, FullDisks, testing::ValuesIn(kFullDisks),
                         [](const auto& row) { return row.param.name; });

TEST_F(SketchJournals, KeepAnOldSketchThatIsPutAwayNow)
{
    SketchModel model;
    SketchJournal journal(model, path());
    for (int i = 0; i < SketchJournal::kMostEarlier; ++i) {
        model.addInk(inkAt(i), {});
        model.reset({});
    }
    const std::string old = folder.file("old.sketch", journal_head() + journal_insert(0, *strokeAt(1)));
    QFile file(QString::fromStdString(old));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        file.setFileTime(QDateTime::currentDateTime().addYears(-1), QFileDevice::FileModificationTime));
    file.close();
    journal.discard(QString::fromStdString(old));
    const auto earlier = journal.earlier();
    EXPECT_EQ(earlier.size(), static_cast<std::size_t>(SketchJournal::kMostEarlier));
    const QFileInfo moved(path("earlier/old.sketch"));
    ASSERT_TRUE(moved.exists());
    EXPECT_GE(moved.lastModified(), QFileInfo(earlier.at(0).file).lastModified()) << "none is later";

    // By a clock that went wrong all the others are later.
    for (const SketchJournal::Left& one : earlier) {
        QFile later(one.file);
        ASSERT_TRUE(later.open(QIODevice::ReadWrite));
        ASSERT_TRUE(
            later.setFileTime(QDateTime::currentDateTime().addYears(1), QFileDevice::FileModificationTime));
    }
    folder.file("now.sketch", journal_head() + journal_insert(0, *strokeAt(1)));
    journal.discard(path("now.sketch"));
    EXPECT_TRUE(QFile::exists(path("earlier/now.sketch")));
    EXPECT_EQ(journal.earlier().size(), static_cast<std::size_t>(SketchJournal::kMostEarlier));
}

TEST_F(SketchJournals, KeepADamagedFileAsItWasAndSayWhatCameBack)
{
    const std::string content = journal_head() + journal_insert(0, *strokeAt(1)) + "insert 1 2 ink no\n" +
                                journal_insert(2, *strokeAt(3));
    const QString file = QString::fromStdString(folder.file("damaged.sketch", content));
    SketchModel model;
    SketchJournal journal(model, path());
    QString kept;
    qint64 strokes = 0;
    QObject::connect(&journal, &SketchJournal::wasDamaged, [&](const QString& where, qint64 count) {
        kept = where;
        strokes = count;
    });
    ASSERT_TRUE(journal.recover(file));
    EXPECT_EQ(strokes, 2);
    EXPECT_EQ(model.document().strokes().size(), 2U);
    EXPECT_EQ(textOf(documentIn(journal.file())), textOf(model.document()));
    ASSERT_TRUE(QFile::exists(kept)) << kept.toStdString();
    EXPECT_EQ(support::content_of(kept.toStdString()), content);
    EXPECT_FALSE(QFile::exists(file)) << "it would be offered again";
}

TEST_F(SketchJournals, WaitForAProgramThatTidiesUp)
{
    const std::string other = folder.file("a.sketch.new", "half made");
    const int descriptor = open(other.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(descriptor, LOCK_EX), 0);
    std::thread tidying([descriptor, &other] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        unlink(other.c_str());
        close(descriptor);
    });
    JournalFile file;
    EXPECT_TRUE(file.begin(path("a.sketch"), "content\n")) << file.problem().toStdString();
    tidying.join();
    EXPECT_EQ(support::content_of(folder.path("a.sketch")), "content\n");
    EXPECT_FALSE(JournalFile::contentOfUnowned(path("a.sketch"))) << "it is owned";
    EXPECT_EQ(folder.names(), std::set<std::string>{"a.sketch"});
}

TEST_F(SketchJournals, HaveAnotherViewInOneLine)
{
    SketchModel model;
    const SketchJournal journal(model, path());
    for (int i = 0; i < 3; ++i)
        model.addInk(inkAt(i), {kLine});
    const std::string before = support::content_of(journal.file().toStdString());
    Sheet sheet;
    sheet.width = 640;
    model.changeSheet(sheet, {0.7, 0, 0, 0.7, 1.0 / 3, -20});
    const std::string after = support::content_of(journal.file().toStdString());
    EXPECT_EQ(after.substr(before.size()), journal_sheet(sheet, {0.7, 0, 0, 0.7, 1.0 / 3, -20}));
    EXPECT_EQ(textOf(documentIn(journal.file())), textOf(model.document()));
    EXPECT_EQ(read_journal(after).sheet.width, 640);
}

} // namespace
