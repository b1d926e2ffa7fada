#include "sketch/app/journal_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

bool try_lock(const QFile& file) { return ::flock(file.handle(), LOCK_EX | LOCK_NB) == 0; }

// Whether the open file is the one at the path still: it may have been replaced before it was locked.
bool is_at(const QFile& file, const QString& path)
{
    struct stat opened = {};
    struct stat there = {};
    return ::fstat(file.handle(), &opened) == 0 && ::stat(QFile::encodeName(path).constData(), &there) == 0 &&
           opened.st_dev == there.st_dev && opened.st_ino == there.st_ino;
}

} // namespace

JournalFile::JournalFile() { m_syncing.setMaxThreadCount(1); }

JournalFile::~JournalFile()
{
    close();
    m_syncing.waitForDone();
}

bool JournalFile::begin(const QString& path, const QByteArray& content)
{
    const QString temporary = path + ".new";
    auto file = std::make_unique<QFile>(temporary);
    const bool isWritten = file->open(QIODevice::WriteOnly | QIODevice::Unbuffered,
                                      QFile::ReadOwner | QFile::WriteOwner) && // for this user alone
                           file->write(content) == content.size();
    if (isWritten)
        try_lock(*file); // a file system without locks is done without
    // Not QFile::rename, which never replaces a file.
    if (!isWritten ||
        std::rename(QFile::encodeName(temporary).constData(), QFile::encodeName(path).constData()) != 0) {
        m_problem = isWritten ? qt_error_string() : file->errorString();
        file->close();
        QFile::remove(temporary);
        return false;
    }
    m_file = std::move(file);
    m_path = path;
    m_size = content.size();
    m_problem.clear();
    syncSoon();
    return true;
}

bool JournalFile::append(const QByteArray& lines)
{
    if (m_file->write(lines) == lines.size()) {
        m_size += lines.size();
        return true;
    }
    m_problem = m_file->errorString();
    if (m_file->resize(m_size)) // half a line would hide those behind it
        m_file->seek(m_size);
    return false;
}

void JournalFile::syncSoon()
{
    const int descriptor = m_file ? ::fcntl(m_file->handle(), F_DUPFD_CLOEXEC, 0) : -1;
    if (descriptor < 0)
        return;
    m_syncing.start([descriptor] {
        ::fsync(descriptor);
        ::close(descriptor);
    });
}

void JournalFile::close()
{
    if (m_file)
        ::flock(m_file->handle(), LOCK_UN); // a copy of the descriptor may still wait for the disk
    m_file.reset();
    m_path.clear();
    m_size = 0;
}

std::optional<QByteArray> JournalFile::contentOfUnowned(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (!try_lock(file) && errno == EWOULDBLOCK)
        return std::nullopt;
    if (!is_at(file, path))
        return std::nullopt;
    return file.readAll();
}
