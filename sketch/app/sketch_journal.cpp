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

#include <cstdio>
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
    return QDir(folder).entryInfoList({kPattern}, QDir::Files, QDir::Time);
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
    void begin(const QString& path); // also mends the file after a failure
    void afterAWhile();
    void letGo();
    void endSketch();
    void putAway(const QString& path) const;
    void tidy() const;
    QString earlierFolder() const { return folder + "/earlier"; }
    QByteArray wholeSketch() const;
    std::vector<Left> readable(const QString& where) const;
    void tell(bool isWritten);

    SketchJournal& q;
    SketchModel& model;
    QString folder;
    JournalFile file;
    QTimer syncTimer;
    QTimer idleTimer;
    qint64 sizeWhenBegun = 0;
    bool isSafe = false;
    bool isRecovering = false;
    bool isBroken = false; // the file lacks what was drawn since
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
    isBroken = !isWritten;
    if (!isWritten && !isTold)
        emit q.failed(file.problem());
    isTold = !isWritten;
}

void SketchJournal::Private::begin(const QString& path)
{
    QDir().mkpath(folder);
    tell(file.begin(path, wholeSketch()));
    sizeWhenBegun = file.size();
}

void SketchJournal::Private::afterAWhile()
{
    const bool isLong = file.size() > 2 * sizeWhenBegun + kMostNeedlessBytes;
    if (file.isOpen() && (isBroken || isLong))
        begin(file.path());
}

void SketchJournal::Private::add(const std::string& line)
{
    if (isRecovering || (!file.isOpen() && model.document().strokes().empty()))
        return;
    if (!file.isOpen() || isBroken)
        begin(file.isOpen() ? file.path() : folder + "/" + newName());
    else
        tell(file.append(bytesOf(line)));
    if (!syncTimer.isActive())
        syncTimer.start();
    idleTimer.start();
}

// The sketch before is put away: another comes in its place.
void SketchJournal::Private::letGo()
{
    isSafe = false;
    if (!file.isOpen())
        return;
    const QString path = file.path();
    file.syncSoon();
    file.close();
    putAway(path);
    const QString now = earlierFolder() + "/" + QFileInfo(path).fileName();
    if (QFile::exists(now))
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
void SketchJournal::Private::putAway(const QString& path) const
{
    const auto content = JournalFile::contentOfUnowned(path);
    if (!content)
        return;
    const JournalReading reading = readingOf(*content);
    if (reading.known && reading.whole && reading.document.strokes().empty()) {
        QFile::remove(path);
        return;
    }
    QDir().mkpath(earlierFolder());
    move(path, earlierFolder() + "/" + QFileInfo(path).fileName());
    const QFileInfoList all = latestFirst(earlierFolder());
    for (qsizetype i = kMostEarlier; i < all.size(); ++i)
        QFile::remove(all[i].filePath());
}

// What crashes have left: files half made, and sketches in which all was undone.
void SketchJournal::Private::tidy() const
{
    for (const QFileInfo& info : QDir(folder).entryInfoList({kPattern + ".new"}, QDir::Files)) {
        if (JournalFile::contentOfUnowned(info.filePath()))
            QFile::remove(info.filePath());
    }
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
    connect(&model, &SketchModel::sheetChanged, this, [this] { d->add(journal_sheet(d->model.sheet())); });
    connect(&model, &SketchModel::wasReset, this, [this] { d->endSketch(); });
}

SketchJournal::~SketchJournal()
{
    const QString path = d->file.path();
    if (path.isEmpty())
        return;
    const bool isWorthNothing = d->isSafe || d->model.document().strokes().empty();
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
    const QString path = d->folder + "/" + QFileInfo(file).fileName();
    d->begin(path);
    const bool isElsewhere = QFileInfo(file).canonicalFilePath() != QFileInfo(path).canonicalFilePath();
    if (d->file.path() == path && isElsewhere)
        QFile::remove(file);
    return true;
}

void SketchJournal::discard(const QString& file) { d->putAway(file); }

void SketchJournal::setSafe(bool safe) { d->isSafe = safe; }

QString SketchJournal::file() const { return d->file.path(); }
