#include "sketch/app/port_owner.h"

#include "tools/program/socket_table.h"

#include <QFile>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <system_error>

namespace {

namespace fs = std::filesystem;

constexpr qsizetype kMostCommand = 15; // what the system keeps of a program's name

QString userName(quint32 user)
{
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 16384> text{};
    if (getpwuid_r(user, &entry, text.data(), text.size(), &found) == 0 && found != nullptr)
        return QString::fromLocal8Bit(found->pw_name);
    return QString::number(user);
}

bool holdsSocket(const fs::path& process, const std::string& socket)
{
    std::error_code error;
    for (fs::directory_iterator entry(process / "fd", error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unread; // closed meanwhile
        if (fs::read_symlink(entry->path(), unread) == socket)
            return true;
    }
    return false;
}

qint64 processWithSocket(const QString& proc, quint64 inode)
{
    const std::string socket = "socket:[" + std::to_string(inode) + "]";
    qint64 lowest = 0; // a socket that was handed on is its maker's, who came first
    std::error_code error;
    for (fs::directory_iterator entry(proc.toStdString(), error), end; !error && entry != end;
         entry.increment(error)) {
        bool isNumber = false;
        const qint64 process =
            QString::fromStdString(entry->path().filename().string()).toLongLong(&isNumber);
        if (isNumber && (lowest == 0 || process < lowest) && holdsSocket(entry->path(), socket))
            lowest = process;
    }
    return lowest;
}

// The name under which it was started, so that a script has its own; the program's file where that is cut
// short.
QString programName(const QString& proc, qint64 process)
{
    const QString folder = proc + QLatin1Char('/') + QString::number(process);
    QFile file(folder + QStringLiteral("/comm"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString command = QString::fromLocal8Bit(file.readAll()).trimmed();
    std::error_code error;
    const fs::path program = fs::read_symlink((folder + QStringLiteral("/exe")).toStdString(), error);
    const QString whole = QString::fromStdString(program.filename().string());
    return command.toLocal8Bit().size() == kMostCommand && whole.startsWith(command) ? whole : command;
}

} // namespace

std::optional<PortOwner> portOwner(quint16 port, const QString& proc)
{
    const auto rows = vnt::program::system_sockets(proc.toStdString()).rows;
    const auto row = std::find_if(rows.begin(), rows.end(), [port](const auto& one) {
        return one.listens && one.local.port == port && vnt::program::takes_loopback(one.local);
    });
    if (row == rows.end())
        return std::nullopt;
    PortOwner owner;
    owner.user = userName(row->user);
    owner.isOwnUser = row->user == getuid();
    const qint64 process = processWithSocket(proc, row->inode);
    owner.program = process > 0 ? programName(proc, process) : QString();
    owner.process = owner.program.isEmpty() ? 0 : process;
    return owner;
}
