// One connection to the link, from its first byte to its close.
//
// Shapes: a request is one line, and begins with an angle bracket; what follows the line is passed over.
// When:   an editor may close its sending side and still wait. Where the system tells that nobody holds its
//         end any more, or does not tell, an end of its sending means that it has left.
// Errors: a refusal or a loss is told once, with its reason; then only closed() follows.
#pragma once

#include "tools/program/socket_table.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <string_view>

#include <poll.h>

class EditorConnection : public QObject {
    Q_OBJECT

public:
    enum class Stage {
        asking,    // sends its request
        waiting,   // for its answer
        answering, // the answer is on its way into the system
        closing,   // all is sent; the other end has its time to read it and to close
        closed,
    };

    struct Limits {
        int requestMilliseconds = 0; // for the whole request
        qint64 mostRequestBytes = 0; // without its line feed
    };

    static constexpr int kAnswerMilliseconds = 10000; // without a byte of the answer taken
    static constexpr int kCloseMilliseconds = 2000;
    static constexpr int kLookMilliseconds = 200; // between looks whether a half-closed editor is still there
    static constexpr qint64 kMostPassedOver = qint64{1024} * 1024; // behind a request

    // Takes the descriptor over. If this program dies, the connection is reset, which ends an editor's wait:
    // an orderly close would not.
    EditorConnection(int descriptor, const Limits& limits, QObject* parent = nullptr);
    ~EditorConnection() override;

    Stage stage() const { return m_stage; }
    QString name() const; // of the other end, for the log
    qint64 bytesHeld() const { return m_line.capacity(); }
    // False once it has sent something with which no request begins.
    bool mayBeEditor() const { return !m_isForeign; }

    // Both in the stages asking and waiting; else they do nothing.
    // With a line feed, and closes. False when it was refused, has left, or turns out to have.
    bool answer(const QByteArray& line);
    void dismiss(); // closes without a word
    void close();   // at once, in every stage

    // For a program that waits without an event loop: what for, and what to do when it has come.
    pollfd awaited() const;
    void proceed();

signals:
    void grew(); // bytesHeld()
    void asked(const QByteArray& line);
    void refused(const QString& why); // to be answered or dismissed at once
    void left(const QString& how); // before its whole answer was handed over; to be answered where not closed
    void handedOver();             // the whole answer, to the system
    void closed();

private:
    bool readOnce(); // whether something came
    void take(std::string_view bytes);
    bool begins(std::string_view bytes);
    void append(std::string_view bytes);
    void passOver(std::size_t bytes);
    void sendingEnded();
    void lookForPeer();
    void write();
    void finishSending();
    void timeUp();
    void refuse(const QString& why);
    void leave(const QString& how);
    void lose(const QString& how);
    void closeDescriptor();

    int m_descriptor;
    Limits m_limits;
    vnt::program::SocketEnd m_own;
    vnt::program::SocketEnd m_peer;
    Stage m_stage = Stage::asking;
    QSocketNotifier m_readable;
    QSocketNotifier m_writable;
    QTimer m_clock; // of the present stage
    QByteArray m_line;
    QByteArray m_answer;
    qsizetype m_sent = 0;
    qint64 m_passedOver = 0;
    bool m_hasBegun = false; // something else than blanks has come
    bool m_isForeign = false;
    bool m_isTold = false; // refused or left
    bool m_peerSentAll = false;
};
