#include "sketch/app/sketch_journal.h"

#include "sketch/app/journal_file.h"
#include "sketch/core/journal_text.h"
#include "sketch/core/recognition.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QTimer>

#include <string>
#include <string_view>
#include <utility>

using namespace vnt::sketch;

namespace {

// The disk has what was drawn this long ago, even when the machine stops.
constexpr int kSyncMilliseconds = 1000;

// What was undone or changed since stands in the file as well. It is made anew when it is this much longer than
// it needs to be, and nothing is drawn for a moment.
constexpr qint64 kMostNeedlessBytes = qint64{8} * 1024 * 1024;
constexpr int kIdleMilliseconds = 2000;

// Of a stroke that is being drawn: what comes in this time, or so many points, are in the file; a crash loses no
// more.
constexpr int kInkMilliseconds = 250;
constexpr std::size_t kMostUnwrittenPoints = 64;

JournalReading readingOf(const QByteArray& text)
{
    return read_journal(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

QByteArray bytesOf(const std::string& text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

// What was still being drawn gets the readings that it would have had.
std::vector<StrokePtr> strokesOf(const JournalReading& reading)
{
    std::vector<StrokePtr> strokes = reading.document.strokes();
    if (reading.unfinished != 0) {
        Stroke stroke = *strokes.back();
        stroke.readings = recognise(stroke.ink);
        strokes.back() = std::make_shared<const Stroke>(std::move(stroke));
    }
    return strokes;
}

} // namespace

class SketchJournal::Private {
public:
    Private(SketchJournal& journal, SketchModel& drawn, const QString& where);

    void follow(SketchModel& model);
    void add(const std::string& change);
    void endStep();
    void growInk(const Ink& more, const Ink& rest);
    void writeInk();
    void endInk();
    void forgetInk();
    bool isBegun() const { return file.isOpen() || !unwritten.isEmpty(); }
    void queue(const std::string& line);
    void syncAndRestSoon();
    void begin(const QString& path); // with the sketch as it is
    bool write();
    bool writeOrBegin();
    void afterAWhile();
    void letGo();
    void endSketch();
    void keepDamaged(const QString& path, const JournalReading& reading);
    QByteArray wholeSketch() const;
    void tell(bool isWritten);

    SketchJournal& q;
    SketchModel& model;
    JournalFolder folder;
    JournalFile file;
    QString target;                // where the sketch lies, or will as soon as it can be written
    QByteArray unwritten;          // what the file lacks of the sketch, after a failure
    bool isUnwrittenWhole = false; // all of a file, that is; else lines for its end
    std::string step;              // the changes so far of the one that is under way
    bool isInStep = false;
    Ink ink;                    // of the stroke that is being drawn
    Ink inkRest;                // that it would end with
    Ink inkRestWritten;         // that it would have ended with when it was written last
    std::size_t inkWritten = 0; // points of ink that are written
    bool isInkWritten = false;  // some of it, or of its rest, is
    QTimer inkTimer;
    QTimer syncTimer;
    QTimer idleTimer;
    qint64 sizeWhenBegun = 0;
    bool isSafe = false;
    bool isRecovering = false;
    bool isTold = false;
};

SketchJournal::Private::Private(SketchJournal& journal, SketchModel& drawn, const QString& where)
    : q(journal), model(drawn), folder(where)
{
    for (QTimer* timer : {&syncTimer, &idleTimer, &inkTimer})
        timer->setSingleShot(true);
    syncTimer.setInterval(kSyncMilliseconds);
    idleTimer.setInterval(kIdleMilliseconds);
    inkTimer.setInterval(kInkMilliseconds);
    QObject::connect(&syncTimer, &QTimer::timeout, &q, [this] { file.syncSoon(); });
    QObject::connect(&idleTimer, &QTimer::timeout, &q, [this] { afterAWhile(); });
    QObject::connect(&inkTimer, &QTimer::timeout, &q, [this] { writeInk(); });
    follow(drawn);
}

void SketchJournal::Private::follow(SketchModel& drawn)
{
    QObject::connect(&drawn, &SketchModel::stepBegan, &q, [this] { isInStep = true; });
    QObject::connect(&drawn, &SketchModel::stepEnded, &q, [this] { endStep(); });
    QObject::connect(&drawn, &SketchModel::inserted, &q, [this](std::size_t index, const StrokePtr& stroke) {
        add(journal_insert(index, *stroke));
    });
    QObject::connect(&drawn, &SketchModel::taken, &q,
                     [this](const StrokePtr& stroke) { add(journal_take(stroke->id)); });
    QObject::connect(&drawn, &SketchModel::replaced, &q,
                     [this](const StrokePtr&, const StrokePtr& after) { add(journal_replace(*after)); });
    QObject::connect(&drawn, &SketchModel::sheetChanged, &q,
                     [this](const Affine& map) { add(journal_sheet(model.sheet(), map, model.isPlaced())); });
    QObject::connect(&drawn, &SketchModel::placedChanged, &q,
                     [this] { add(journal_sheet(model.sheet(), {}, model.isPlaced())); });
    QObject::connect(&drawn, &SketchModel::inkGrew, &q,
                     [this](const Ink& more, const Ink& rest) { growInk(more, rest); });
    QObject::connect(&drawn, &SketchModel::inkEnded, &q, [this] { endInk(); });
    QObject::connect(&drawn, &SketchModel::wasReset, &q, [this] { endSketch(); });
}

QByteArray SketchJournal::Private::wholeSketch() const
{
    std::string text = journal_head() + journal_sheet(model.sheet(), {}, model.isPlaced());
    const auto& strokes = model.document().strokes();
    for (std::size_t i = 0; i < strokes.size(); ++i)
        text += journal_insert(i, *strokes[i]);
    if (isInkWritten)
        text += journal_draw({ink.begin(), ink.begin() + static_cast<std::ptrdiff_t>(inkWritten)},
                             inkRestWritten);
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
        folder.make();
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

void SketchJournal::Private::queue(const std::string& line)
{
    isUnwrittenWhole = isUnwrittenWhole && !unwritten.isEmpty();
    unwritten += bytesOf(line);
}

void SketchJournal::Private::syncAndRestSoon()
{
    if (!syncTimer.isActive())
        syncTimer.start();
    idleTimer.start();
}

void SketchJournal::Private::add(const std::string& change)
{
    if (isInStep) {
        step += change;
        return;
    }
    if (isRecovering || (!isBegun() && model.document().strokes().empty()))
        return;
    if (isBegun()) {
        queue(change);
        writeOrBegin();
    } else {
        begin(folder.newFile());
    }
    syncAndRestSoon();
}

void SketchJournal::Private::endStep()
{
    isInStep = false;
    if (!step.empty())
        add(journal_together(std::exchange(step, {})));
}

void SketchJournal::Private::growInk(const Ink& more, const Ink& rest)
{
    ink.insert(ink.end(), more.begin(), more.end());
    inkRest = rest;
    if (ink.size() - inkWritten >= kMostUnwrittenPoints)
        writeInk();
    else if (!inkTimer.isActive())
        inkTimer.start();
}

// A failure is no reason to write the whole sketch anew, several times in a second.
void SketchJournal::Private::writeInk()
{
    inkTimer.stop();
    const Ink more(ink.begin() + static_cast<std::ptrdiff_t>(inkWritten), ink.end());
    inkWritten = ink.size();
    inkRestWritten = inkRest;
    isInkWritten = true;
    if (isBegun()) {
        const bool isWholeToWrite = isUnwrittenWhole && !unwritten.isEmpty();
        queue(journal_draw(more, inkRest));
        if (!isWholeToWrite)
            write();
    } else {
        begin(folder.newFile());
    }
    syncAndRestSoon();
}

void SketchJournal::Private::endInk()
{
    const bool wasWritten = isInkWritten;
    forgetInk();
    if (wasWritten)
        add(journal_lift());
}

void SketchJournal::Private::forgetInk()
{
    inkTimer.stop();
    ink.clear();
    inkRest.clear();
    inkWritten = 0;
    isInkWritten = false;
}

// The sketch before is put away: another comes in its place. The model may have that already.
void SketchJournal::Private::letGo()
{
    isSafe = false;
    forgetInk();
    write();
    unwritten.clear();
    target.clear();
    if (!file.isOpen())
        return;
    const QString path = file.path();
    file.syncSoon();
    file.close();
    const QString now = folder.putAway(path);
    if (!now.isEmpty())
        emit q.putAway(now);
}

void SketchJournal::Private::endSketch()
{
    if (isRecovering)
        return;
    letGo();
    if (!model.document().strokes().empty())
        begin(folder.newFile());
}

// The only copy is not moved.
void SketchJournal::Private::keepDamaged(const QString& path, const JournalReading& reading)
{
    QString kept;
    if (unwritten.isEmpty() && file.syncNow())
        kept = folder.keepDamaged(path);
    emit q.wasDamaged(kept.isEmpty() ? path : kept, static_cast<qint64>(reading.document.strokes().size()));
}

SketchJournal::SketchJournal(SketchModel& model, const QString& folder, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(*this, model, folder))
{
}

SketchJournal::~SketchJournal()
{
    blockSignals(true); // whoever would be told may be gone
    if (!d->ink.empty())
        d->writeInk();
    const bool isWorthNothing = (d->isSafe || d->model.document().strokes().empty()) && !d->isInkWritten;
    if (d->file.isOpen() || !isWorthNothing)
        d->writeOrBegin();
    const QString path = d->file.path();
    if (path.isEmpty())
        return;
    d->file.syncSoon();
    d->file.close();
    if (isWorthNothing)
        d->folder.putAway(path);
}

QString SketchJournal::usualFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/sketches");
}

std::vector<SketchJournal::Left> SketchJournal::left() const { return d->folder.left(); }

std::vector<SketchJournal::Left> SketchJournal::earlier() const { return d->folder.earlier(); }

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
    d->model.reset(strokesOf(reading), reading.placed);
    d->isRecovering = false;
    const bool isDamaged = reading.skipped > 0;
    const QString path = isDamaged ? d->folder.newFile() : d->folder.fileNamed(QFileInfo(file).fileName());
    d->begin(path);
    const bool isElsewhere = QFileInfo(file).canonicalFilePath() != QFileInfo(path).canonicalFilePath();
    if (isDamaged)
        d->keepDamaged(file, reading);
    else if (isElsewhere && d->file.path() == path && d->file.syncNow())
        QFile::remove(file);
    return true;
}

void SketchJournal::discard(const QString& file) { d->folder.putAway(file); }

void SketchJournal::setSafe(bool safe) { d->isSafe = safe; }

QString SketchJournal::file() const { return d->file.path(); }
