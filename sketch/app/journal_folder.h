// Where the journals of sketches lie: those that were left, and those that were put away.
//
// Shapes: a file a sketch, NAME.sketch; in the folder "earlier" of it those that were put away, and as
//         NAME.sketch.damaged what no reading has made sense of.
// Errors: what cannot be read, moved or removed stays where it is.
#pragma once

#include <QString>

#include <vector>

class JournalFolder {
public:
    static constexpr int kMostEarlier = 20;
    // Of damaged files so many stay in any case, and the others as long.
    static constexpr int kLeastDamaged = 5;
    static constexpr int kDamagedDays = 30;

    struct Left {
        QString file;
        qint64 strokes = 0;
        QString lastChange; // as the user reads dates and times
    };

    // Made when it is missing, and rid of what crashes have left: files half made, and sketches in which all
    // was undone.
    explicit JournalFolder(const QString& path);

    void make() const; // it may have gone since
    QString newFile() const;
    QString fileNamed(const QString& name) const { return m_path + "/" + name; }
    // Sketches that no running program owns, with at least one stroke, the latest first.
    std::vector<Left> left() const { return readable(m_path); }
    std::vector<Left> earlier() const { return readable(earlierPath()); }
    // Where it is then; empty when it was not worth it.
    QString putAway(const QString& file) const;
    // Under a name that no sketch takes from it. Where it is then; empty when it could not be moved.
    QString keepDamaged(const QString& file) const;

private:
    QString earlierPath() const { return m_path + "/earlier"; }
    std::vector<Left> readable(const QString& where) const;
    void dropOldest(const QString& butNot) const;
    void dropOldDamaged(const QString& butNot = {}) const;
    void tidy() const;

    QString m_path;
};
