// Whose a port of this machine is, for the words that say why one cannot listen on it.
//
// Errors: what the system does not tell is left empty; nobody is named on a guess.
#pragma once

#include <QString>

#include <optional>

struct PortOwner {
    QString program;    // its name; empty when it is not told, as of another user's program
    qint64 process = 0; // its number, with its name
    QString user;       // whose it is: a name, or a number that has none
    bool isOwnUser = false;
};

// The listener that a connection to 127.0.0.1:port would reach. proc: the folder that tells; tests have their
// own.
std::optional<PortOwner> portOwner(quint16 port, const QString& proc = QStringLiteral("/proc"));
