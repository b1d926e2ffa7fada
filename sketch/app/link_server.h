// The sketch application's end of the link: listens where the editor connects, tells of its request, answers
// it.
//
// Shapes: docs/protocol.md has both documents. One editor at a time has its turn; others wait for theirs, in
//         the order in which they came. Whoever sends no request in time, too much, or something else than a
//         request is dropped with a line in the log, and never gets a turn.
// When:   a turn lasts until the whole answer has been handed to the system. Whoever is dropped and may be an
//         editor is answered with an empty figure first, as nothing else ends its wait.
// Errors: told in words, by problem() and logged(); nothing an editor does ends the program. If the program
//         dies, every editor's connection is reset, which ends its wait too.
#pragma once

#include "sketch/core/request.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <memory>

class LinkServer : public QObject {
    Q_OBJECT

public:
    enum class State {
        closed,        // does not listen; problem() says why, if it was meant to
        idle,          // waits for an editor
        editorWaiting, // an editor has asked, since waitingSince()
        sent,          // answered; no other editor has asked since
        editorGone,    // the editor went away without its answer; no other has asked since
    };

    static constexpr quint16 kPort = 4910;
    static constexpr qint64 kMostRequestBytes = qint64{16} * 1024 * 1024;
    static constexpr int kRequestMilliseconds = 10000; // for a connection to send its request
    // Connections that have not asked yet, and editors that have: more than a machine's user makes. The
    // oldest that has not asked makes room for a new one; an editor too many is turned away.
    static constexpr int kMostAsking = 16;
    static constexpr int kMostWaiting = 16;
    // Of requests that are on their way. Beyond, the longest is dropped.
    static constexpr qint64 kMostBytesTogether = 2 * kMostRequestBytes;
    static constexpr int kShutDownMilliseconds = 2000; // at most

    explicit LinkServer(QObject* parent = nullptr);
    ~LinkServer() override;

    // On 127.0.0.1 alone. False when it cannot; problem() then says why, and whose the port is if that is
    // known. port 0: any free one (for tests); port() tells which.
    bool listen(quint16 port = kPort);
    quint16 port() const;
    QString problem() const;
    void setRequestTime(int milliseconds);

    State state() const;
    QDateTime waitingSince() const; // of the editor whose turn it is
    int othersWaiting() const;      // editors that have asked, and wait for their turn
    bool isSending() const;         // an answer is on its way into the system: a large one to a slow editor

    // The answer to the editor whose turn it is: one line without its line feed. False when none waits, or
    // when it turns out to have left. The next editor has its turn when the line has been handed to the
    // system.
    bool answer(const QByteArray& line);
    bool cancel(); // answers with an empty figure
    // Answers every waiting editor with an empty figure, waits (a moment) until that, and an answer before it,
    // is on its way, and listens no more.
    void shutDown();

signals:
    void stateChanged();
    void othersWaitingChanged();
    void requested(const vnt::sketch::Request& request); // an editor has its turn
    void editorLeft();                // the one that had its turn, without its whole answer
    void answered();                  // the whole line has been handed to the system; also within shutDown()
    void logged(const QString& line); // for the log; one line, no secrets

private:
    class Private;
    std::unique_ptr<Private> d;
};
