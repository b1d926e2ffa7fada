// Keeps the sketch safe while it is drawn: every change goes to a file as it is made, and outlives a crash.
//
// Shapes: a file a sketch in a folder of the user's data, a line a change, in the form of
//         sketch/core/journal_text.h; a step of many changes is one line. A half-written last line is passed
//         over. A stroke that is being drawn is there but for its last quarter of a second. The file is made
//         with the first stroke. What its program owns is locked, until that ends however it ends.
// Errors: a file that cannot be written is told once (failed()), and tried again with the next change, every two
//         seconds, and at the sketch's end.
#pragma once

#include "sketch/app/journal_folder.h"
#include "sketch/app/sketch_model.h"

#include <QObject>
#include <QString>

#include <memory>
#include <vector>

class SketchJournal : public QObject {
    Q_OBJECT

public:
    static constexpr int kMostEarlier = JournalFolder::kMostEarlier;

    // folder: where the files lie; made when it is missing.
    SketchJournal(SketchModel& model, const QString& folder, QObject* parent = nullptr);
    ~SketchJournal() override; // waits until what was written has reached the disk

    // QStandardPaths::AppDataLocation/sketches
    static QString usualFolder();

    using Left = JournalFolder::Left;
    // Sketches that no running program owns, with at least one stroke, the latest first.
    std::vector<Left> left() const;
    // Those that were put away: by discard(), by another sketch in their place, by the program's end when they
    // were safe. The latest first, kMostEarlier at most.
    std::vector<Left> earlier() const;

    // Puts such a sketch into the model, and goes on in its file. The sketch before is put away. False when it
    // cannot be read, or another program has it; it stays then.
    bool recover(const QString& file);
    // The user does not want it: it is put away.
    void discard(const QString& file);
    // The sketch is safe elsewhere (saved, or sent): its file is put away at the program's orderly end. Else it
    // is left, and offered at the next start.
    void setSafe(bool safe);

    // Of the sketch that is being drawn; empty before its first stroke.
    QString file() const;

signals:
    void failed(const QString& problem);
    void mended(); // what had failed is in the file now
    // Parts of the recovered file made no sense, and so many strokes came back; the file as it was is kept here.
    void wasDamaged(const QString& kept, qint64 strokes);
    void putAway(const QString& file); // another sketch has come in the place of this one, which has strokes

private:
    class Private;
    std::unique_ptr<Private> d;
};
