#include "sketch/app/editor_connection.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace {

// A turn of the event loop takes no more than this, so that nobody else waits long.
constexpr std::size_t kChunkBytes = std::size_t{64} * 1024;

#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

template <class Call>
ssize_t unlessInterrupted(Call call)
{
    ssize_t result = 0;
    do
        result = call();
    while (result < 0 && errno == EINTR);
    return result;
}

bool wouldBlock() { return errno == EAGAIN || errno == EWOULDBLOCK; }

QString errorText(int error) { return QString::fromLocal8Bit(std::strerror(error)); }

void setResetOnClose(int descriptor, bool resets)
{
    const linger value{resets ? 1 : 0, 0};
    setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &value, sizeof value);
}

void prepare(int descriptor)
{
    fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    fcntl(descriptor, F_SETFD, fcntl(descriptor, F_GETFD) | FD_CLOEXEC);
#ifdef SO_NOSIGPIPE
    const int on = 1;
    setsockopt(descriptor, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
    setResetOnClose(descriptor, true);
}

// What it began with, so that one sees who called; no more of it, as what follows may be private.
QString beginningOf(std::string_view bytes)
{
    constexpr std::size_t kMost = 8;
    QString text;
    for (const char c : bytes.substr(0, kMost)) {
        if (c <= ' ' || c > '~')
            break;
        text += QLatin1Char(c);
    }
    return text.isEmpty() ? QStringLiteral("a byte that is no text") : QStringLiteral("\"%1\"").arg(text);
}

} // namespace

EditorConnection::EditorConnection(int descriptor, const Limits& limits, QObject* parent)
    : QObject(parent), m_descriptor(descriptor), m_limits(limits), m_own(vnt::program::own_end(descriptor)),
      m_peer(vnt::program::peer_end(descriptor)), m_readable(descriptor, QSocketNotifier::Read),
      m_writable(descriptor, QSocketNotifier::Write)
{
    prepare(descriptor);
    m_writable.setEnabled(false);
    m_clock.setSingleShot(true);
    connect(&m_readable, &QSocketNotifier::activated, this, &EditorConnection::readOnce);
    connect(&m_writable, &QSocketNotifier::activated, this, &EditorConnection::write);
    connect(&m_clock, &QTimer::timeout, this, &EditorConnection::timeUp);
    m_clock.start(limits.requestMilliseconds);
}

EditorConnection::~EditorConnection() { closeDescriptor(); }

QString EditorConnection::name() const { return QString::fromStdString(vnt::program::text_of(m_peer)); }

// --------------------------------------------------------------------------------------------------- reading

bool EditorConnection::readOnce()
{
    std::array<char, kChunkBytes> chunk;
    if (m_stage == Stage::closed)
        return false;
    const ssize_t got = unlessInterrupted([&] { return recv(m_descriptor, chunk.data(), chunk.size(), 0); });
    if (got < 0 && wouldBlock())
        return false;
    if (got < 0)
        lose(errorText(errno));
    else if (got == 0)
        sendingEnded();
    else if (m_stage == Stage::asking)
        take({chunk.data(), static_cast<std::size_t>(got)});
    else
        passOver(static_cast<std::size_t>(got));
    return got > 0;
}

void EditorConnection::take(std::string_view bytes)
{
    const std::string_view part = bytes.substr(0, bytes.find('\n'));
    if (!begins(part))
        return;
    if (m_line.size() + static_cast<qint64>(part.size()) > m_limits.mostRequestBytes) {
        refuse(QStringLiteral("its line is longer than %1 bytes").arg(m_limits.mostRequestBytes));
        return;
    }
    append(part);
    if (part.size() == bytes.size()) {
        emit grew();
        return;
    }
    m_clock.stop();
    m_stage = Stage::waiting;
    emit asked(std::exchange(m_line, {}));
    passOver(bytes.size() - part.size() - 1);
}

// Whether what came may still become a request. It is known by its first byte, so no more of it is kept.
bool EditorConnection::begins(std::string_view bytes)
{
    if (m_hasBegun)
        return true;
    const std::size_t first = bytes.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return true;
    m_hasBegun = true;
    m_isForeign = bytes[first] != '<';
    if (m_isForeign)
        refuse(QStringLiteral("it is no editor's request: it begins with ") +
               beginningOf(bytes.substr(first)));
    return !m_isForeign;
}

// The buffer doubles, but never beyond the longest request.
void EditorConnection::append(std::string_view bytes)
{
    const qsizetype size = m_line.size() + static_cast<qsizetype>(bytes.size());
    if (size > m_line.capacity())
        m_line.reserve(std::max(size, std::min<qsizetype>(2 * m_line.capacity(), m_limits.mostRequestBytes)));
    m_line.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

void EditorConnection::passOver(std::size_t bytes)
{
    m_passedOver += static_cast<qint64>(bytes);
    if (m_stage == Stage::waiting && m_passedOver > kMostPassedOver)
        leave(QStringLiteral("it sends on and on behind its request"));
}

void EditorConnection::sendingEnded()
{
    m_peerSentAll = true;
    m_readable.setEnabled(false); // it would say so for ever
    if (m_stage == Stage::closing)
        close();
    else if (m_stage == Stage::waiting)
        lookForPeer();
    else if (m_stage == Stage::asking)
        refuse(m_hasBegun ? QStringLiteral("it ended within its request")
                          : QStringLiteral("it ended without a request"));
}

// The end of a connection's sending looks the same whether the editor still waits or is gone.
void EditorConnection::lookForPeer()
{
    const auto rows = vnt::program::system_sockets().rows;
    const bool isHeld = std::any_of(rows.begin(), rows.end(), [this](const auto& row) {
        return row.local == m_peer && row.remote == m_own && row.inode != 0;
    });
    if (isHeld)
        m_clock.start(kLookMilliseconds);
    else
        leave(QStringLiteral("it closed the connection"));
}

// --------------------------------------------------------------------------------------------------- writing

bool EditorConnection::answer(const QByteArray& line)
{
    if (m_stage != Stage::asking && m_stage != Stage::waiting)
        return false;
    m_line = {};
    m_answer = line + '\n';
    m_stage = Stage::answering;
    m_clock.start(kAnswerMilliseconds);
    write();
    return !m_isTold;
}

void EditorConnection::dismiss()
{
    if (m_stage != Stage::asking && m_stage != Stage::waiting)
        return;
    m_line = {};
    finishSending();
    if (m_peerSentAll)
        close();
}

void EditorConnection::write()
{
    while (m_stage == Stage::answering && m_sent < m_answer.size()) {
        const ssize_t sent = unlessInterrupted([this] {
            return send(m_descriptor, m_answer.constData() + m_sent,
                        static_cast<std::size_t>(m_answer.size() - m_sent), kSendFlags);
        });
        if (sent < 0 && wouldBlock()) {
            m_writable.setEnabled(true);
            return;
        }
        if (sent < 0) {
            lose(errorText(errno));
            return;
        }
        m_sent += sent;
        m_clock.start(kAnswerMilliseconds);
    }
    if (m_stage != Stage::answering)
        return;
    finishSending();
    emit handedOver();
    if (m_peerSentAll)
        close();
}

void EditorConnection::finishSending()
{
    m_writable.setEnabled(false);
    m_answer = {};
    m_stage = Stage::closing;
    setResetOnClose(m_descriptor, false); // a reset could overtake the answer
    shutdown(m_descriptor, SHUT_WR);
    m_clock.start(kCloseMilliseconds);
}

// ------------------------------------------------------------------------------------------------------- end

void EditorConnection::timeUp()
{
    if (m_stage == Stage::asking) {
        // What came while the program was busy, or the machine slept, came in time.
        while (m_stage == Stage::asking && readOnce()) {
        }
        if (m_stage == Stage::asking)
            refuse(QStringLiteral("%1 came of its request within %2 s")
                       .arg(m_hasBegun ? QStringLiteral("only a part") : QStringLiteral("nothing"))
                       .arg(m_limits.requestMilliseconds / 1000.0));
    } else if (m_stage == Stage::waiting) {
        lookForPeer();
    } else if (m_stage == Stage::answering) {
        lose(QStringLiteral("it took nothing of its answer for %1 s").arg(kAnswerMilliseconds / 1000));
    } else {
        close();
    }
}

void EditorConnection::refuse(const QString& why)
{
    m_line = {};
    if (!std::exchange(m_isTold, true))
        emit refused(why);
}

void EditorConnection::leave(const QString& how)
{
    if (!std::exchange(m_isTold, true))
        emit left(how);
}

void EditorConnection::lose(const QString& how)
{
    const bool isAnswered = m_stage == Stage::closing;
    closeDescriptor();
    if (!isAnswered)
        leave(how);
    emit closed();
}

void EditorConnection::close()
{
    if (m_stage == Stage::closed)
        return;
    closeDescriptor();
    emit closed();
}

void EditorConnection::closeDescriptor()
{
    if (m_stage == Stage::closed)
        return;
    m_stage = Stage::closed;
    m_clock.stop();
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(std::exchange(m_descriptor, -1));
    m_line = {};
    m_answer = {};
}

pollfd EditorConnection::awaited() const
{
    const int events = (m_stage == Stage::answering ? POLLOUT : 0) | (m_peerSentAll ? 0 : POLLIN);
    return {m_descriptor, static_cast<short>(events), 0};
}

void EditorConnection::proceed()
{
    write();
    if (!m_peerSentAll)
        readOnce();
}
