#include "sketch/app/link_server.h"

#include "sketch/app/editor_connection.h"
#include "sketch/app/port_owner.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QTcpServer>
#include <QTimer>

#include <algorithm>
#include <deque>
#include <functional>
#include <utility>
#include <vector>

namespace {

const QByteArray kEmptyFigure = QByteArrayLiteral("<vant></vant>");

// Answered connections that have not closed yet. One more, and the oldest is closed.
constexpr std::size_t kMostClosing = 16;
// For the other ends to close when all have their answers; they need no more than to wake up.
constexpr int kLastCloseMilliseconds = 500;
// Until connections are taken again after the system had none to give (too many open files, say).
constexpr int kAcceptAgainMilliseconds = 500;

// Hands over the descriptors of connections as they are: Qt's own sockets take an end of sending for an end
// of all.
class Gate : public QTcpServer {
public:
    std::function<void(int descriptor)> onConnection;

protected:
    void incomingConnection(qintptr descriptor) override { onConnection(static_cast<int>(descriptor)); }
};

QString whoOwns(const PortOwner& owner)
{
    if (!owner.program.isEmpty())
        return LinkServer::tr("%1 (process %2)").arg(owner.program).arg(owner.process);
    if (!owner.isOwnUser)
        return LinkServer::tr("a program of the user %1").arg(owner.user);
    return LinkServer::tr("another program");
}

QString busyPort(quint16 port)
{
    const std::optional<PortOwner> owner = portOwner(port);
    return LinkServer::tr("Port %1 is in use by %2, so no editor can reach this program. "
                          "End that program, then try again.")
        .arg(port)
        .arg(owner ? whoOwns(*owner) : LinkServer::tr("another program"));
}

// What others sent may stand in a line, so no control character and no endless text gets through.
QString asLogLine(QString line)
{
    constexpr qsizetype kMost = 300;
    if (line.size() > kMost)
        line = line.left(kMost) + QStringLiteral("...");
    for (QChar& c : line) {
        if (!c.isPrint())
            c = QLatin1Char(' ');
    }
    return line;
}

} // namespace

class LinkServer::Private {
public:
    explicit Private(LinkServer& owner);

    bool listen(quint16 port);
    bool answer(const QByteArray& line);
    void shutDown();

    int othersWaiting() const { return std::max(0, static_cast<int>(m_waiting.size()) - 1); }
    bool isSending() const;
    QDateTime waitingSince() const { return m_waiting.empty() ? QDateTime() : m_waiting.front().since; }

    QTcpServer& gate() { return m_gate; }
    State state = State::closed;
    QString problem;
    int requestMilliseconds = kRequestMilliseconds;

private:
    struct Asked {
        EditorConnection* connection = nullptr;
        vnt::sketch::Request request;
        QDateTime since;
    };
    using Connections = std::vector<EditorConnection*>;

    void welcome(int descriptor);
    void onGrew();
    void onAsked(EditorConnection* connection, const QByteArray& line);
    void onRefused(EditorConnection* connection, const QString& why);
    void onLeft(EditorConnection* connection, const QString& how);
    void onHandedOver(EditorConnection* connection);
    void onClosed(EditorConnection* connection);

    bool hasTurn(const EditorConnection* connection) const;
    void enqueue(EditorConnection* connection, const vnt::sketch::Request& request);
    void passTurn(State withoutAnother, void (LinkServer::*how)());
    void announceTurn();
    // Off its list, and on its way out, with an empty figure if it may be an editor.
    void letGo(EditorConnection* connection);
    void toClosing(EditorConnection* connection);
    void settle();
    void log(const QString& line) { emit q.logged(asLogLine(line)); }

    LinkServer& q;
    Gate m_gate;
    Connections m_asking;        // the oldest first
    std::deque<Asked> m_waiting; // the first has its turn
    Connections m_closing;       // the oldest first
    bool m_isEnding = false;
};

LinkServer::Private::Private(LinkServer& owner) : q(owner)
{
    m_gate.onConnection = [this](int descriptor) { welcome(descriptor); };
    QObject::connect(&m_gate, &QTcpServer::acceptError, &q, [this] {
        log(QStringLiteral("a connection could not be taken: ") + m_gate.errorString());
        QTimer::singleShot(kAcceptAgainMilliseconds, &m_gate, &QTcpServer::resumeAccepting);
    });
}

bool LinkServer::Private::listen(quint16 port)
{
    if (m_gate.isListening())
        return true;
    problem.clear();
    if (m_gate.listen(QHostAddress::LocalHost, port)) {
        state = State::idle;
        log(QStringLiteral("listens on 127.0.0.1:%1").arg(m_gate.serverPort()));
    } else {
        problem = m_gate.serverError() == QAbstractSocket::AddressInUseError
                      ? busyPort(port)
                      : tr("No editor can reach this program: it cannot listen on 127.0.0.1:%1 (%2).")
                            .arg(port)
                            .arg(m_gate.errorString());
        log(problem);
    }
    emit q.stateChanged();
    return m_gate.isListening();
}

// ----------------------------------------------------------------------------------------------- connections

void LinkServer::Private::welcome(int descriptor)
{
    if (m_asking.size() >= kMostAsking)
        onRefused(m_asking.front(),
                  QStringLiteral("%1 newer ones have not asked yet either").arg(kMostAsking));
    auto* const connection = new EditorConnection(descriptor, {requestMilliseconds, kMostRequestBytes}, &q);
    m_asking.push_back(connection);
    QObject::connect(connection, &EditorConnection::grew, &q, [this] { onGrew(); });
    QObject::connect(connection, &EditorConnection::asked, &q,
                     [=, this](const QByteArray& line) { onAsked(connection, line); });
    QObject::connect(connection, &EditorConnection::refused, &q,
                     [=, this](const QString& why) { onRefused(connection, why); });
    QObject::connect(connection, &EditorConnection::left, &q,
                     [=, this](const QString& how) { onLeft(connection, how); });
    QObject::connect(connection, &EditorConnection::handedOver, &q, [=, this] { onHandedOver(connection); });
    QObject::connect(connection, &EditorConnection::closed, &q, [=, this] { onClosed(connection); });
    connection->proceed(); // an editor's request is mostly there already, and then nobody can push it out
}

void LinkServer::Private::onGrew()
{
    qint64 bytes = 0;
    for (const EditorConnection* connection : m_asking)
        bytes += connection->bytesHeld();
    if (bytes <= kMostBytesTogether)
        return;
    onRefused(*std::max_element(
                  m_asking.begin(), m_asking.end(),
                  [](const auto* one, const auto* other) { return one->bytesHeld() < other->bytesHeld(); }),
              QStringLiteral("too much is sent at once, and most of it by this one"));
}

void LinkServer::Private::onAsked(EditorConnection* connection, const QByteArray& line)
{
    if (m_isEnding || m_waiting.size() >= kMostWaiting) {
        onRefused(connection, m_isEnding ? QStringLiteral("the program ends")
                                         : QStringLiteral("%1 editors wait already").arg(kMostWaiting));
        return;
    }
    const auto read = vnt::sketch::read_request({line.constData(), static_cast<std::size_t>(line.size())});
    if (const auto* wrong = std::get_if<vnt::sketch::Problem>(&read))
        onRefused(connection, QString::fromStdString(wrong->sentence));
    else
        enqueue(connection, std::get<vnt::sketch::Request>(read));
}

void LinkServer::Private::onRefused(EditorConnection* connection, const QString& why)
{
    log(QStringLiteral("%1 is refused: %2").arg(connection->name(), why));
    letGo(connection);
}

void LinkServer::Private::onLeft(EditorConnection* connection, const QString& how)
{
    log(QStringLiteral("%1 has left: %2").arg(connection->name(), how));
    const bool hadTurn = hasTurn(connection);
    const std::size_t removed =
        std::erase_if(m_waiting, [=](const Asked& one) { return one.connection == connection; });
    letGo(connection);
    if (hadTurn)
        passTurn(State::editorGone, &LinkServer::editorLeft);
    else if (removed > 0)
        emit q.othersWaitingChanged();
}

void LinkServer::Private::onHandedOver(EditorConnection* connection)
{
    if (!hasTurn(connection))
        return;
    log(QStringLiteral("%1 is answered").arg(connection->name()));
    m_waiting.pop_front();
    toClosing(connection);
    passTurn(State::sent, &LinkServer::answered);
}

void LinkServer::Private::onClosed(EditorConnection* connection)
{
    std::erase(m_asking, connection);
    std::erase(m_closing, connection);
    connection->deleteLater();
}

void LinkServer::Private::letGo(EditorConnection* connection)
{
    if (connection->stage() == EditorConnection::Stage::closed)
        return; // onClosed follows
    toClosing(connection);
    if (connection->mayBeEditor())
        connection->answer(kEmptyFigure);
    else
        connection->dismiss();
}

void LinkServer::Private::toClosing(EditorConnection* connection)
{
    std::erase(m_asking, connection);
    m_closing.push_back(connection);
    if (m_closing.size() > kMostClosing && !m_isEnding)
        m_closing.front()->close();
}

// ----------------------------------------------------------------------------------------------------- turns

bool LinkServer::Private::hasTurn(const EditorConnection* connection) const
{
    return !m_waiting.empty() && m_waiting.front().connection == connection;
}

bool LinkServer::Private::isSending() const
{
    return !m_waiting.empty() && m_waiting.front().connection->stage() == EditorConnection::Stage::answering;
}

void LinkServer::Private::enqueue(EditorConnection* connection, const vnt::sketch::Request& request)
{
    std::erase(m_asking, connection);
    m_waiting.push_back({connection, request, QDateTime::currentDateTime()});
    log(QStringLiteral("%1 asks for a figure").arg(connection->name()));
    if (m_waiting.size() > 1) {
        emit q.othersWaitingChanged();
        return;
    }
    announceTurn();
}

// The one before is off the list. All is as it will be before anybody hears of it: whoever hears may answer,
// or end everything, at once.
void LinkServer::Private::passTurn(State withoutAnother, void (LinkServer::*how)())
{
    state = m_waiting.empty() ? withoutAnother : State::editorWaiting;
    const EditorConnection* const next = m_waiting.empty() ? nullptr : m_waiting.front().connection;
    emit(q.*how)();
    if (next == nullptr) {
        emit q.stateChanged();
    } else {
        emit q.othersWaitingChanged();
        if (hasTurn(next))
            announceTurn();
    }
}

void LinkServer::Private::announceTurn()
{
    state = State::editorWaiting;
    const Asked asked = m_waiting.front();
    emit q.stateChanged();
    if (hasTurn(asked.connection) && !isSending())
        emit q.requested(asked.request);
}

bool LinkServer::Private::answer(const QByteArray& line)
{
    Q_ASSERT(!line.contains('\n'));
    if (m_waiting.empty() || isSending())
        return false;
    return m_waiting.front().connection->answer(line);
}

// ------------------------------------------------------------------------------------------------------- end

void LinkServer::Private::shutDown()
{
    if (!m_gate.isListening() || m_isEnding)
        return;
    m_isEnding = true;
    m_gate.waitForNewConnection(0); // all who have connected and were not taken yet: they are answered too
    m_gate.close();
    const int others = othersWaiting();
    bool isAnswered = false;
    QObject here; // hears of it within this call alone
    if (isSending())
        QObject::connect(m_waiting.front().connection, &EditorConnection::handedOver, &here,
                         [&] { isAnswered = true; });
    if (!m_waiting.empty())
        log(QStringLiteral("the program ends: waiting editors that get an empty figure: %1")
                .arg(m_waiting.size()));
    Connections all;
    for (const Asked& asked : std::exchange(m_waiting, {}))
        all.push_back(asked.connection);
    all.insert(all.end(), m_asking.begin(), m_asking.end());
    for (EditorConnection* connection : all)
        letGo(connection);
    settle();
    m_isEnding = false;
    state = State::closed;
    if (isAnswered)
        emit q.answered();
    if (others > 0)
        emit q.othersWaitingChanged();
    emit q.stateChanged();
}

// Without an event loop: the program may have none any more.
void LinkServer::Private::settle()
{
    const QDeadlineTimer sent(kShutDownMilliseconds);
    const QDeadlineTimer closed(kLastCloseMilliseconds);
    const auto goesOn = [&] {
        const bool isSending = std::any_of(m_closing.begin(), m_closing.end(), [](const auto* connection) {
            return connection->stage() == EditorConnection::Stage::answering;
        });
        return !m_closing.empty() && !(isSending ? sent : closed).hasExpired();
    };
    while (goesOn()) {
        std::vector<pollfd> awaited;
        for (const EditorConnection* connection : m_closing)
            awaited.push_back(connection->awaited());
        constexpr int kLookMilliseconds = 50; // at the time
        poll(awaited.data(), awaited.size(), kLookMilliseconds);
        for (EditorConnection* connection : Connections(m_closing))
            connection->proceed();
    }
    for (EditorConnection* connection : Connections(m_closing)) {
        if (connection->stage() == EditorConnection::Stage::answering)
            log(QStringLiteral("%1 did not take its answer in time").arg(connection->name()));
        connection->close();
    }
}

// -------------------------------------------------------------------------------------------------- interface

LinkServer::LinkServer(QObject* parent) : QObject(parent), d(std::make_unique<Private>(*this)) {}

LinkServer::~LinkServer() { d->shutDown(); }

bool LinkServer::listen(quint16 port) { return d->listen(port); }

quint16 LinkServer::port() const { return d->gate().serverPort(); }

QString LinkServer::problem() const { return d->problem; }

void LinkServer::setRequestTime(int milliseconds) { d->requestMilliseconds = milliseconds; }

LinkServer::State LinkServer::state() const { return d->state; }

QDateTime LinkServer::waitingSince() const { return d->waitingSince(); }

int LinkServer::othersWaiting() const { return d->othersWaiting(); }

bool LinkServer::isSending() const { return d->isSending(); }

bool LinkServer::answer(const QByteArray& line) { return d->answer(line); }

bool LinkServer::cancel() { return d->answer(kEmptyFigure); }

void LinkServer::shutDown() { d->shutDown(); }
