#include "sketch/app/sketch_journal.h"

#include "sketch/app/journal_file.h"
#include "sketch/core/journal_text.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <string>

using namespace vnt::sketch;

namespace {

const QString kPattern = QStringLiteral("*.sketch");

// The disk has what was drawn this long ago, even when the machine stops.
constexpr int kSyncMilliseconds = 1000;

// What was undone or changed since stands in the file as well. It is made anew when it is this much longer than
// it needs to be, and nothing is drawn for a moment.
constexpr qint64 kMostNeedlessBytes = 8 * 1024 * 1024;
constexpr int kIdleMilliseconds = 2000;

QString newName()
{
    return QDateTime::currentDateTime().toString("yyyyMMdd-hhmmss-zzz-") +
           QString::number(QRandomGenerator::global()->generate(), 16) + ".sketch";
}

QFileInfoList latestFirst(const QString& folder)
{
    QFileInfoList all = QDir(folder).entryInfoList({kPattern}, QDir::Files);
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
    return read_journal(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

QByteArray bytesOf(const std::string& text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

} // namespace

class SketchJournal::Private {
public:
    Private(SketchJournal& journal, SketchModel& drawn, QString where);

    void add(const std::string& line);
    void begin(const QString& path); // with the sketch as it is
    bool write();
    bool writeOrBegin();
    void afterAWhile();
    void letGo();
    void endSketch();
    QString putAway(const QString& path) const; // where it is then; empty when it was not worth it
    void dropOldest(const QString& butNot) const;
    void keepDamaged(const QString& path, const JournalReading& reading);
    void tidy() const;
    QString earlierFolder() const { return folder + "/earlier"; }
    QByteArray wholeSketch() const;
    std::vector<Left> readable(const QString& where) const;
    void tell(bool isWritten);

    SketchJournal& q;
    SketchModel& model;
    QString folder;
    JournalFile file;
    QString target;                // where the sketch lies, or will as soon as it can be written
    QByteArray unwritten;          // what the file lacks of the sketch, after a failure
    bool isUnwrittenWhole = false; // all of a file, that is; else lines for its end
    QTimer syncTimer;
    QTimer idleTimer;
    qint64 sizeWhenBegun = 0;
    bool isSafe = false;
    bool isRecovering = false;
    bool isTold = false;
};

SketchJournal::Private::Private(SketchJournal& journal, SketchModel& drawn, QString where)
    : q(journal), model(drawn), folder(QDir::cleanPath(where))
{
    syncTimer.setSingleShot(true);
    syncTimer.setInterval(kSyncMilliseconds);
    idleTimer.setSingleShot(true);
    idleTimer.setInterval(kIdleMilliseconds);
    QObject::connect(&syncTimer, &QTimer::timeout, &q, [this] { file.syncSoon(); });
    QObject::connect(&idleTimer, &QTimer::timeout, &q, [this] { afterAWhile(); });
    QDir().mkpath(earlierFolder());
    tidy();
}

QByteArray SketchJournal::Private::wholeSketch() const
{
    std::string text = journal_head() + journal_sheet(model.sheet());
    const auto& strokes = model.document().strokes();
    for (std::size_t i = 0; i < strokes.size(); ++i)
        text += journal_insert(i, *strokes[i]);
    return bytesOf(text);
}

void SketchJournal::Private::tell(bool isWritten)
{
    if (!isWritten && !isTold)
        emit q.failed(file.problem());
    if (isWritten && isTold)
        emit q.mended();
    isTold = !isWritten;
}

void SketchJournal::Private::begin(const QString& path)
{
    target = path;
    unwritten = wholeSketch();
    isUnwrittenWhole = true;
    write();
}

// Makes up for what could not be written before, as well.
bool SketchJournal::Private::write()
{
    if (unwritten.isEmpty())
        return true;
    if (isUnwrittenWhole)
        QDir().mkpath(folder);
    const bool isWritten = isUnwrittenWhole ? file.begin(target, unwritten) : file.append(unwritten);
    if (isWritten && isUnwrittenWhole)
        sizeWhenBegun = file.size();
    if (isWritten)
        unwritten.clear();
    else
        idleTimer.start(); // the disk may have room again, even if nothing is drawn any more
    tell(isWritten);
    return isWritten;
}

// Where a file takes nothing more, another in its place may; so while the model has the sketch.
bool SketchJournal::Private::writeOrBegin()
{
    if (write())
        return true;
    const bool isShort = unwritten.size() <= kMostNeedlessBytes;
    if (isUnwrittenWhole && isShort)
        return false;
    const QByteArray lines = unwritten;
    const bool wereWhole = isUnwrittenWhole;
    begin(target);
    if (unwritten.isEmpty())
        return true;
    if (isShort && !wereWhole) { // there may be room for them before there is for a second file
        unwritten = lines;
        isUnwrittenWhole = false;
    }
    return false;
}

void SketchJournal::Private::afterAWhile()
{
    const bool isLong = file.isOpen() && file.size() > 2 * sizeWhenBegun + kMostNeedlessBytes;
    // Where there is no room for a second file, the long one is as good.
    if (writeOrBegin() && isLong && file.begin(target, wholeSketch()))
        sizeWhenBegun = file.size();
}

void SketchJournal::Private::add(const std::string& line)
{
    const bool isBegun = file.isOpen() || !unwritten.isEmpty();
    if (isRecovering || (!isBegun && model.document().strokes().empty()))
        return;
    if (isBegun) {
        isUnwrittenWhole = isUnwrittenWhole && !unwritten.isEmpty();
        unwritten += bytesOf(line);
        writeOrBegin();
    } else {
        begin(folder + "/" + newName());
    }
    if (!syncTimer.isActive())
        syncTimer.start();
    idleTimer.start();
}

// The sketch before is put away: another comes in its place. The model may have that already.
void SketchJournal::Private::letGo()
{
    isSafe = false;
    write();
    unwritten.clear();
    target.clear();
    if (!file.isOpen())
        return;
    const QString path = file.path();
    file.syncSoon();
    file.close();
    const QString now = putAway(path);
    if (!now.isEmpty())
        emit q.putAway(now);
}

void SketchJournal::Private::endSketch()
{
    if (isRecovering)
        return;
    letGo();
    if (!model.document().strokes().empty())
        begin(folder + "/" + newName());
}

// A sketch without strokes is worth no place among the earlier ones.
QString SketchJournal::Private::putAway(const QString& path) const
{
    const auto content = JournalFile::contentOfUnowned(path);
    if (!content)
        return {};
    const JournalReading reading = readingOf(*content);
    if (reading.known && reading.whole && reading.document.strokes().empty()) {
        QFile::remove(path);
        return {};
    }
    QDir().mkpath(earlierFolder());
    QString to = earlierFolder() + "/" + QFileInfo(path).fileName();
    if (QFile::exists(to))
        to = earlierFolder() + "/" + newName();
    touch(path);
    if (!move(path, to))
        return {};
    dropOldest(to);
    return to;
}

void SketchJournal::Private::dropOldest(const QString& butNot) const
{
    int kept = 1;
    for (const QFileInfo& info : latestFirst(earlierFolder())) {
        if (info.fileName() != QFileInfo(butNot).fileName() && ++kept > kMostEarlier)
            QFile::remove(info.filePath());
    }
}

// What no reading has made sense of stays, under a name that no sketch takes from it.
void SketchJournal::Private::keepDamaged(const QString& path, const JournalReading& reading)
{
    QString kept = earlierFolder() + "/" + newName() + ".damaged";
    QDir().mkpath(earlierFolder());
    if (!unwritten.isEmpty() || !file.syncNow() || !move(path, kept))
        kept = path; // the only copy
    emit q.wasDamaged(kept, static_cast<qint64>(reading.document.strokes().size()));
}

// What crashes have left: files half made, and sketches in which all was undone.
void SketchJournal::Private::tidy() const
{
    for (const QFileInfo& info : QDir(folder).entryInfoList({kPattern + ".new"}, QDir::Files))
        JournalFile::removeUnowned(info.filePath());
    for (const QFileInfo& info : latestFirst(folder)) {
        const auto content = JournalFile::contentOfUnowned(info.filePath());
        if (content && readingOf(*content).document.strokes().empty() && readingOf(*content).known)
            putAway(info.filePath());
    }
}

std::vector<SketchJournal::Left> SketchJournal::Private::readable(const QString& where) const
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

SketchJournal::SketchJournal(SketchModel& model, QString folder, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(*this, model, std::move(folder)))
{
    connect(&model, &SketchModel::inserted, this,
            [this](std::size_t index, const StrokePtr& stroke) { d->add(journal_insert(index, *stroke)); });
    connect(&model, &SketchModel::taken, this,
            [this](const StrokePtr& stroke) { d->add(journal_take(stroke->id)); });
    connect(&model, &SketchModel::replaced, this,
            [this](const StrokePtr&, const StrokePtr& after) { d->add(journal_replace(*after)); });
    connect(&model, &SketchModel::sheetChanged, this,
            [this](const Affine& map) { d->add(journal_sheet(d->model.sheet(), map)); });
    connect(&model, &SketchModel::wasReset, this, [this] { d->endSketch(); });
}

SketchJournal::~SketchJournal()
{
    blockSignals(true); // whoever would be told may be gone
    const bool isWorthNothing = d->isSafe || d->model.document().strokes().empty();
    if (d->file.isOpen() || !isWorthNothing)
        d->writeOrBegin();
    const QString path = d->file.path();
    if (path.isEmpty())
        return;
    d->file.syncSoon();
    d->file.close();
    if (isWorthNothing)
        d->putAway(path);
}

QString SketchJournal::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/sketches");
}

std::vector<SketchJournal::Left> SketchJournal::left() const { return d->readable(d->folder); }

std::vector<SketchJournal::Left> SketchJournal::earlier() const { return d->readable(d->earlierFolder()); }

bool SketchJournal::recover(const QString& file)
{
    const auto content = JournalFile::contentOfUnowned(file);
    if (!content)
        return false;
    const JournalReading reading = readingOf(*content);
    if (!reading.known)
        return false;
    d->letGo();
    d->isRecovering = true;
    d->model.setSheet(reading.sheet);
    d->model.reset(reading.document.strokes());
    d->isRecovering = false;
    const bool isDamaged = reading.skipped > 0;
    const QString path = d->folder + "/" + (isDamaged ? newName() : QFileInfo(file).fileName());
    d->begin(path);
    const bool isElsewhere = QFileInfo(file).canonicalFilePath() != QFileInfo(path).canonicalFilePath();
    if (isDamaged)
        d->keepDamaged(file, reading);
    else if (isElsewhere && d->file.path() == path && d->file.syncNow())
        QFile::remove(file);
    return true;
}

void SketchJournal::discard(const QString& file) { d->putAway(file); }

void SketchJournal::setSafe(bool safe) { d->isSafe = safe; }

QString SketchJournal::file() const { return d->file.path(); }
