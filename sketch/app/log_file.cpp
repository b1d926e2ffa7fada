#include "sketch/app/log_file.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

LogFile::LogFile(QString path, qint64 mostBytes) : m_path(std::move(path)), m_mostBytes(mostBytes) {}

QString LogFile::usualPath()
{
    const QString asked = qEnvironmentVariable("XDG_STATE_HOME");
    const QString folder = QDir::isAbsolutePath(asked) ? asked : QDir::homePath() + "/.local/state";
    return folder + QStringLiteral("/vant/vant-sketch.log");
}

void LogFile::add(const QString& text) const
{
    const QDateTime now = QDateTime::currentDateTime();
    const QString time = now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs);
    const QByteArray line =
        QStringLiteral("%1 [%2] %3\n")
            .arg(time, QString::number(QCoreApplication::applicationPid()), text.simplified())
            .toUtf8();
    QDir().mkpath(QFileInfo(m_path).path());
    if (QFileInfo(m_path).size() + line.size() > m_mostBytes) {
        QFile::remove(m_path + ".1");
        QFile::rename(m_path, m_path + ".1");
    }
    QFile file(m_path);
    if (file.open(QIODevice::Append | QIODevice::Unbuffered)) {
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.write(line);
    }
}
