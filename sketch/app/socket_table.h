// The system's table of TCP sockets, which tells what a socket cannot be asked: who holds its other end.
//
// Shapes: a table is the text of /proc/net/tcp or tcp6; addresses stand in it as the words of memory in
//         hexadecimal, in the machine's byte order. An IPv4 address within IPv6 comes out as an IPv4 address.
// Errors: rows that are not understood are passed over; a system without the table gives none.
#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QString>

#include <optional>
#include <vector>

struct SocketEnd {
    QHostAddress address;
    quint16 port = 0;
    bool operator==(const SocketEnd&) const = default;
};

struct SocketRow {
    SocketEnd local;
    SocketEnd remote;
    bool listens = false;
    quint32 user = 0;
    quint64 inode = 0; // 0 when no process holds it any more
};

std::vector<SocketRow> socketRows(const QByteArray& table);

// Both tables of the program's own network. proc: where they are; tests have their own.
std::optional<std::vector<SocketRow>> systemSockets(const QString& proc = QStringLiteral("/proc"));
