#include "sketch/app/socket_table.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr qsizetype kWordDigits = 8;
constexpr quint32 kListens = 0x0A;

// The fields of a row, of which there are more.
enum Field : qsizetype { kLocal = 1, kRemote = 2, kState = 3, kUser = 7, kInode = 9 };

std::optional<QHostAddress> addressOf(const QByteArray& digits)
{
    std::array<quint32, 4> words{}; // as they lie in memory: the most significant byte first
    const qsizetype count = digits.size() / kWordDigits;
    if (digits.size() % kWordDigits != 0 || (count != 1 && count != 4))
        return std::nullopt;
    for (qsizetype i = 0; i < count; ++i) {
        bool isNumber = false;
        words[static_cast<std::size_t>(i)] = digits.mid(i * kWordDigits, kWordDigits).toUInt(&isNumber, 16);
        if (!isNumber)
            return std::nullopt;
    }
    if (count == 1)
        return QHostAddress(qFromBigEndian(words[0]));
    Q_IPV6ADDR bytes;
    std::memcpy(&bytes, words.data(), sizeof bytes);
    const QHostAddress address(bytes);
    bool isMapped = false;
    const quint32 mapped = address.toIPv4Address(&isMapped);
    // Qt takes IPv6's any address for IPv4's.
    return isMapped && address != QHostAddress(QHostAddress::AnyIPv6) ? QHostAddress(mapped) : address;
}

std::optional<SocketEnd> endOf(const QByteArray& field)
{
    const qsizetype colon = field.indexOf(':');
    if (colon < 0)
        return std::nullopt;
    bool isNumber = false;
    const quint16 port = field.mid(colon + 1).toUShort(&isNumber, 16);
    const std::optional<QHostAddress> address = addressOf(field.left(colon));
    return isNumber && address ? std::optional(SocketEnd{*address, port}) : std::nullopt;
}

std::optional<SocketRow> rowOf(const QByteArray& line)
{
    const QList<QByteArray> fields = line.simplified().split(' ');
    if (fields.size() <= kInode)
        return std::nullopt;
    bool isState = false;
    bool isUser = false;
    bool isInode = false;
    const quint32 state = fields[kState].toUInt(&isState, 16);
    const std::optional<SocketEnd> local = endOf(fields[kLocal]);
    const std::optional<SocketEnd> remote = endOf(fields[kRemote]);
    const quint32 user = fields[kUser].toUInt(&isUser);
    const quint64 inode = fields[kInode].toULongLong(&isInode);
    if (!local || !remote || !isState || !isUser || !isInode)
        return std::nullopt;
    return SocketRow{*local, *remote, state == kListens, user, inode};
}

} // namespace

std::vector<SocketRow> socketRows(const QByteArray& table)
{
    std::vector<SocketRow> rows;
    for (const QByteArray& line : table.split('\n')) {
        if (std::optional<SocketRow> row = rowOf(line))
            rows.push_back(std::move(*row));
    }
    return rows;
}

std::optional<std::vector<SocketRow>> systemSockets(const QString& proc)
{
    QFile table(proc + QStringLiteral("/net/tcp"));
    if (!table.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray text = table.readAll();
    QFile table6(proc + QStringLiteral("/net/tcp6")); // not there on a system without IPv6
    if (table6.open(QIODevice::ReadOnly))
        text += table6.readAll();
    return socketRows(text);
}
