// What stays of the files that no reading has made sense of.
#include "sketch/app/journal_folder.h"

#include "tests/sketch_app/event_loop.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <initializer_list>
#include <string>

namespace {

using namespace sketch_app_test;

class DamagedJournals : public testing::Test {
protected:
    DamagedJournals()
    {
        needApplication();
        QDir().mkpath(path("earlier"));
    }

    QString path(const std::string& name = "") const { return QString::fromStdString(folder.path(name)); }
    // Last changed so many days ago.
    QString fileOf(const std::string& name, int days) const
    {
        QFile file(QString::fromStdString(folder.file(name, "no sketch")));
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        EXPECT_TRUE(
            file.setFileTime(QDateTime::currentDateTime().addDays(-days), QFileDevice::FileModificationTime));
        return file.fileName();
    }
    void leaveDamaged(std::initializer_list<int> daysAgo) const
    {
        for (const int days : daysAgo)
            fileOf("earlier/" + std::to_string(100 + days) + ".sketch.damaged", days);
    }
    QStringList damaged() const { return QDir(path("earlier")).entryList({"*.damaged"}, QDir::Files); }

    support::TemporaryFolder folder;
};

TEST_F(DamagedJournals, StayWhenTheyAreTheLastFiveHoweverOld)
{
    leaveDamaged({31, 33, 50, 60, 70, 80, 400});
    const JournalFolder journals(path());
    EXPECT_EQ(damaged(), (QStringList{"131.sketch.damaged", "133.sketch.damaged", "150.sketch.damaged",
                                      "160.sketch.damaged", "170.sketch.damaged"}));
}

TEST_F(DamagedJournals, StayForAMonthHoweverMany)
{
    leaveDamaged({1, 2, 3, 4, 5, 6, 29, 31});
    const JournalFolder journals(path());
    EXPECT_EQ(damaged(), (QStringList{"101.sketch.damaged", "102.sketch.damaged", "103.sketch.damaged",
                                      "104.sketch.damaged", "105.sketch.damaged", "106.sketch.damaged",
                                      "129.sketch.damaged"}));
}

TEST_F(DamagedJournals, GoWhenAnotherComesWhichStaysItself)
{
    const JournalFolder journals(path());
    leaveDamaged({40, 41, 42, 43, 44});
    const QString kept = journals.keepDamaged(fileOf("old.sketch", 90));
    EXPECT_TRUE(QFile::exists(kept));
    EXPECT_FALSE(QFile::exists(path("old.sketch")));
    EXPECT_EQ(damaged(), (QStringList{"140.sketch.damaged", "141.sketch.damaged", "142.sketch.damaged",
                                      "143.sketch.damaged", QFileInfo(kept).fileName()}));
    EXPECT_LT(QFileInfo(kept).lastModified().daysTo(QDateTime::currentDateTime()), 2)
        << "its month begins now";
}

TEST_F(DamagedJournals, LeaveOtherFilesAlone)
{
    fileOf("earlier/notes.damaged", 400);
    leaveDamaged({31, 33, 50, 60, 70, 80});
    const JournalFolder journals(path());
    EXPECT_TRUE(QFile::exists(path("earlier/notes.damaged")));
    EXPECT_EQ(damaged().size(), 6);
}

} // namespace
