// One file of a journal: lines are added to it, and it can be made anew.
//
// Owner:  the program that has it open; its lock goes with the program, however that ends.
// Errors: false, and problem() says why; what was whole in the file before stays.
#pragma once

#include <QByteArray>
#include <QString>
#include <QThreadPool>

#include <optional>

class JournalFile {
public:
    JournalFile();
    ~JournalFile(); // waits for the disk
    JournalFile(const JournalFile&) = delete;
    JournalFile& operator=(const JournalFile&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }
    QString path() const { return m_path; }
    QString problem() const { return m_problem; }
    qint64 size() const { return m_size; }

    // Makes content the file's content, whole or not at all, and goes on behind it. What was open before is let
    // go. A file that it replaces goes when the disk has the new one.
    bool begin(const QString& path, const QByteArray& content);
    // The bytes are the system's when this returns: no end of this program loses them.
    bool append(const QByteArray& lines);
    // Has the disk take what was written, on another thread: no end of the machine loses it then.
    void syncSoon();
    bool syncNow(); // waits for it
    void close();

    // What a file holds that nobody owns. None when it is owned, or cannot be read.
    static std::optional<QByteArray> contentOfUnowned(const QString& path);
    static void removeUnowned(const QString& path);

private:
    int m_descriptor = -1;
    QString m_path;
    QString m_problem;
    qint64 m_size = 0; // of its whole lines
    QThreadPool m_syncing;
};
