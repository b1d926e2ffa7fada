#include "sketch/app/journal_folder.h"

#include "sketch/app/journal_file.h"
#include "sketch/core/journal_text.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string_view>

using vnt::sketch::JournalReading;

namespace {

const QString kPattern = QStringLiteral("*.sketch");
const QString kDamaged = QStringLiteral(".damaged");

QString newName()
{
    return QDateTime::currentDateTime().toString("yyyyMMdd-hhmmss-zzz-") +
           QString::number(QRandomGenerator::global()->generate(), 16) + ".sketch";
}

QFileInfoList latestFirst(const QString& folder, const QString& pattern = kPattern)
{
    QFileInfoList all = QDir(folder).entryInfoList({pattern}, QDir::Files);
    // Qt's own order by time knows whole seconds.
    std::stable_sort(all.begin(), all.end(), [](const QFileInfo& a, const QFileInfo& b) {
        return a.lastModified() > b.lastModified();
    });
    return all;
}

// What is put away is the latest of all, however long ago it was drawn.
void touch(const QString& path)
{
    timespec now = {}; // the system's own is the same for all of some milliseconds
    ::clock_gettime(CLOCK_REALTIME, &now);
    const timespec times[] = {now, now};
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0);
}

bool move(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

JournalReading readingOf(const QByteArray& text)
{
    return vnt::sketch::read_journal(
        std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

} // namespace

JournalFolder::JournalFolder(const QString& path) : m_path(QDir::cleanPath(path))
{
    QDir().mkpath(earlierPath());
    tidy();
}

void JournalFolder::make() const { QDir().mkpath(m_path); }

QString JournalFolder::newFile() const { return fileNamed(newName()); }

// A sketch without strokes is worth no place among the earlier ones.
QString JournalFolder::putAway(const QString& file) const
{
    const auto content = JournalFile::contentOfUnowned(file);
    if (!content)
        return {};
    const JournalReading reading = readingOf(*content);
    if (reading.known && reading.whole && reading.document.strokes().empty()) {
        QFile::remove(file);
        return {};
    }
    QDir().mkpath(earlierPath());
    QString to = earlierPath() + "/" + QFileInfo(file).fileName();
    if (QFile::exists(to))
        to = earlierPath() + "/" + newName();
    touch(file);
    if (!move(file, to))
        return {};
    dropOldest(to);
    return to;
}

void JournalFolder::dropOldest(const QString& butNot) const
{
    int kept = 1;
    for (const QFileInfo& info : latestFirst(earlierPath())) {
        if (info.fileName() != QFileInfo(butNot).fileName() && ++kept > kMostEarlier)
            QFile::remove(info.filePath());
    }
}

QString JournalFolder::keepDamaged(const QString& file) const
{
    QString kept = earlierPath() + "/" + newName() + kDamaged;
    QDir().mkpath(earlierPath());
    touch(file);
    if (!move(file, kept))
        return {};
    dropOldDamaged(kept);
    return kept;
}

void JournalFolder::dropOldDamaged(const QString& butNot) const
{
    const QDateTime oldest = QDateTime::currentDateTime().addDays(-kDamagedDays);
    int kept = butNot.isEmpty() ? 0 : 1;
    for (const QFileInfo& info : latestFirst(earlierPath(), kPattern + kDamaged)) {
        if (info.fileName() != QFileInfo(butNot).fileName() && ++kept > kLeastDamaged &&
            info.lastModified() < oldest)
            QFile::remove(info.filePath());
    }
}

void JournalFolder::tidy() const
{
    for (const QFileInfo& info : QDir(m_path).entryInfoList({kPattern + ".new"}, QDir::Files))
        JournalFile::removeUnowned(info.filePath());
    for (const QFileInfo& info : latestFirst(m_path)) {
        const auto content = JournalFile::contentOfUnowned(info.filePath());
        if (!content)
            continue;
        const JournalReading reading = readingOf(*content);
        if (reading.document.strokes().empty() && reading.known)
            putAway(info.filePath());
    }
    dropOldDamaged();
}

std::vector<JournalFolder::Left> JournalFolder::readable(const QString& where) const
{
    std::vector<Left> found;
    for (const QFileInfo& info : latestFirst(where)) {
        const auto content = JournalFile::contentOfUnowned(info.filePath());
        if (!content)
            continue;
        const JournalReading reading = readingOf(*content);
        const auto strokes = static_cast<qint64>(reading.document.strokes().size());
        if (reading.known && strokes > 0)
            found.push_back(
                {info.filePath(), strokes, QLocale().toString(info.lastModified(), QLocale::ShortFormat)});
    }
    return found;
}
