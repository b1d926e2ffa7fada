#include "sketch/app/running_instance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QtEndian>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>

namespace {

// A message is this word, the size of the rest, both in 4 bytes with the most significant first, and then the
// token and the arguments in UTF-8, each but the last with a zero byte behind it.
constexpr quint32 kMagic = 0x766E7401; // the last byte is the form's version
constexpr qsizetype kHeadBytes = 8;
constexpr qsizetype kMostMessageBytes = qsizetype{1024} * 1024;
constexpr int kMessageMilliseconds = 5000; // for another start to send its whole message
constexpr int kMostAtOnce = 16;
constexpr int kAgainMilliseconds = 20; // between attempts: who has the lock may not listen yet, or no longer
constexpr char kTaken = '+';
constexpr const char* kTokenName = "XDG_ACTIVATION_TOKEN";

struct Message {
    QStringList arguments;
    QByteArray token;
};

QByteArray bytesOf(const Message& message)
{
    QByteArray content = message.token;
    for (const QString& argument : message.arguments)
        content += '\0' + argument.toUtf8();
    QByteArray bytes(kHeadBytes, '\0');
    qToBigEndian(kMagic, bytes.data());
    qToBigEndian(static_cast<quint32>(content.size()), bytes.data() + sizeof kMagic);
    return bytes + content;
}

enum class Reading { incomplete, whole, wrong };

Reading read(QLocalSocket& socket, Message& message)
{
    const QByteArray bytes = socket.peek(kMostMessageBytes);
    if (bytes.size() < kHeadBytes)
        return Reading::incomplete;
    const auto size = qFromBigEndian<quint32>(bytes.constData() + sizeof kMagic);
    if (qFromBigEndian<quint32>(bytes.constData()) != kMagic || size > kMostMessageBytes - kHeadBytes)
        return Reading::wrong;
    if (bytes.size() < kHeadBytes + size)
        return Reading::incomplete;
    QByteArrayList parts = bytes.mid(kHeadBytes, size).split('\0');
    message.token = parts.takeFirst();
    for (const QByteArray& part : parts)
        message.arguments.append(QString::fromUtf8(part));
    return Reading::whole;
}

// Of the session: a window that comes up on another display helps nobody.
QByteArray display()
{
    const QByteArray wayland = qgetenv("WAYLAND_DISPLAY");
    return wayland.isEmpty() ? qgetenv("DISPLAY") : wayland;
}

QString placeNamed(const QString& name)
{
    // The user's own folder: Qt gives none that others may write to.
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        return {};
    const QByteArray hash = QCryptographicHash::hash(display(), QCryptographicHash::Sha1).toHex().left(8);
    return folder + QLatin1Char('/') + name + QLatin1Char('-') + QString::fromLatin1(hash);
}

} // namespace

class RunningInstance::Private {
public:
    Private(RunningInstance& owner, const QString& name) : place(placeNamed(name)), q(owner) {}
    Private(const Private&) = delete;
    Private& operator=(const Private&) = delete;
    ~Private();

    bool tryLock();
    void listen();
    bool tryHandOver(const QByteArray& message, const QDeadlineTimer& limit) const;

    const QString place;
    int milliseconds = kHandOverMilliseconds;

private:
    void welcome();
    void take(QLocalSocket* other);

    RunningInstance& q;
    QLocalServer m_server;
    int m_lock = -1;
};

RunningInstance::Private::~Private()
{
    m_server.close(); // its file goes while the lock still keeps others from making theirs
    if (m_lock >= 0)
        ::close(m_lock);
}

// The lock file stays for ever: another start may just have opened it.
bool RunningInstance::Private::tryLock()
{
    const int lock = ::open(QFile::encodeName(place + QStringLiteral(".lock")).constData(),
                            O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (lock < 0)
        return false;
    if (flock(lock, LOCK_EX | LOCK_NB) != 0) {
        ::close(lock);
        return false;
    }
    m_lock = lock;
    return true;
}

void RunningInstance::Private::listen()
{
    QLocalServer::removeServer(place);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    m_server.setMaxPendingConnections(kMostAtOnce);
    QObject::connect(&m_server, &QLocalServer::newConnection, &q, [this] { welcome(); });
    if (!m_server.listen(place))
        qWarning("a second start will not find this one: %s", qUtf8Printable(m_server.errorString()));
}

void RunningInstance::Private::welcome()
{
    while (QLocalSocket* const other = m_server.nextPendingConnection()) {
        other->setReadBufferSize(kMostMessageBytes);
        QObject::connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
        QObject::connect(other, &QLocalSocket::readyRead, &q, [=, this] { take(other); });
        QTimer::singleShot(kMessageMilliseconds, other, [other] { other->abort(); });
        take(other);
    }
}

void RunningInstance::Private::take(QLocalSocket* other)
{
    Message message;
    const Reading reading = read(*other, message);
    if (reading == Reading::incomplete)
        return;
    other->disconnect(&q); // one message each
    if (reading == Reading::wrong) {
        other->abort();
        return;
    }
    other->write(&kTaken, 1);
    other->flush();
    other->disconnectFromServer();
    if (!message.token.isEmpty())
        qputenv(kTokenName, message.token);
    emit q.startedAgain(message.arguments);
}

bool RunningInstance::Private::tryHandOver(const QByteArray& message, const QDeadlineTimer& limit) const
{
    const auto left = [&limit] { return static_cast<int>(std::max<qint64>(1, limit.remainingTime())); };
    QLocalSocket running;
    running.connectToServer(place);
    if (!running.waitForConnected(left()))
        return false;
    running.write(message);
    while (running.bytesToWrite() > 0) {
        if (!running.waitForBytesWritten(left()))
            return false;
    }
    char taken = 0;
    return running.waitForReadyRead(left()) && running.getChar(&taken) && taken == kTaken;
}

RunningInstance::RunningInstance(const QString& name, QObject* parent)
    : QObject(parent), d(std::make_unique<Private>(*this, name))
{
}

RunningInstance::~RunningInstance() = default;

void RunningInstance::setHandOverTime(int milliseconds) { d->milliseconds = milliseconds; }

QString RunningInstance::meetingPlace() const { return d->place; }

bool RunningInstance::handedOver(const QStringList& arguments)
{
    if (d->place.isEmpty())
        return false;
    const QByteArray message = bytesOf({arguments, qgetenv(kTokenName)});
    const QDeadlineTimer limit(d->milliseconds);
    do {
        if (d->tryLock()) {
            d->listen();
            return false;
        }
        if (d->tryHandOver(message, limit))
            return true;
        QThread::msleep(kAgainMilliseconds);
    } while (!limit.hasExpired());
    return false;
}
