// The program's log: a line for each thing that somebody may look for later.
//
// Shapes: "2026-11-03T14:05:09.123+01:00 [4711] text": local time, its distance from UTC, the process. A line
//         break within a text becomes a blank.
// Errors: none; a log that cannot be written is done without.
#pragma once

#include <QString>

class LogFile {
public:
    static constexpr qint64 kMostBytes = qint64{1024} * 1024;

    // mostBytes: an entry that would make the file longer begins a new one; the old one gets .1 behind its
    //            name, in place of the one before.
    explicit LogFile(QString path, qint64 mostBytes = kMostBytes);

    // vant/vant-sketch.log in XDG_STATE_HOME, or in ~/.local/state.
    static QString usualPath();

    void add(const QString& text) const;

private:
    QString m_path;
    qint64 m_mostBytes;
};
