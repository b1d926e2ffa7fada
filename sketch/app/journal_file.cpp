#include "sketch/app/journal_file.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

// Another program that tidies up has a file for an instant.
constexpr int kLockMilliseconds = 1000;
constexpr int kLockPauseMilliseconds = 2;

int open_to_write(const QString& path)
{
    // For this user alone. Not emptied here: another program may have it.
    return ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
}

// A file system without locks is done without.
bool try_lock(int descriptor) { return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

// Whether the open file is the one at the path still: it may have been replaced before it was locked.
bool is_at(int descriptor, const QString& path)
{
    struct stat opened = {};
    struct stat there = {};
    return ::fstat(descriptor, &opened) == 0 && ::stat(QFile::encodeName(path).constData(), &there) == 0 &&
           opened.st_dev == there.st_dev && opened.st_ino == there.st_ino;
}

// The file at the path, made when it is missing, locked; negative, and errno says why.
int open_locked(const QString& path)
{
    const QDeadlineTimer limit(kLockMilliseconds);
    for (;;) {
        const int descriptor = open_to_write(path);
        if (descriptor < 0)
            return -1;
        if (try_lock(descriptor) && is_at(descriptor, path))
            return descriptor;
        ::close(descriptor);
        if (limit.hasExpired()) {
            errno = EWOULDBLOCK;
            return -1;
        }
        QThread::msleep(kLockPauseMilliseconds);
    }
}

// At the offset. False, and errno says why.
bool write_all(int descriptor, const QByteArray& bytes, qint64 offset)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const auto written = ::pwrite(descriptor, bytes.constData() + done,
                                      static_cast<std::size_t>(bytes.size() - done), offset + done);
        if (written < 0 && errno != EINTR)
            return false;
        if (written == 0) {
            errno = ENOSPC;
            return false;
        }
        done += written > 0 ? written : 0;
    }
    return true;
}

// Some file systems cannot sync; that is no loss which another try would mend.
bool sync(int descriptor) { return ::fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS; }

// The names in a folder, as after a file was moved.
bool sync_folder_of(const QString& path)
{
    const int folder =
        ::open(QFile::encodeName(QFileInfo(path).path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool is_done = folder >= 0 && sync(folder);
    if (folder >= 0)
        ::close(folder);
    return is_done;
}

bool replace(const QString& path, const QString& with, int descriptor)
{
    const QByteArray name = QFile::encodeName(path);
    // Else the machine's end could leave the new name with nothing in it, and the only good copy gone.
    if (::access(name.constData(), F_OK) == 0 && !sync(descriptor))
        return false;
    return std::rename(QFile::encodeName(with).constData(), name.constData()) == 0;
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
    const int descriptor = open_locked(temporary);
    if (descriptor < 0 || ::ftruncate(descriptor, 0) != 0 || !write_all(descriptor, content, 0) ||
        !replace(path, temporary, descriptor)) {
        m_problem = qt_error_string(errno);
        if (descriptor >= 0) {
            QFile::remove(temporary);
            ::close(descriptor);
        }
        return false;
    }
    close();
    m_descriptor = descriptor;
    m_path = path;
    m_size = content.size();
    m_problem.clear();
    syncSoon();
    return true;
}

bool JournalFile::append(const QByteArray& lines)
{
    if (write_all(m_descriptor, lines, m_size)) {
        m_size += lines.size();
        return true;
    }
    m_problem = qt_error_string(errno);
    // Half a line would hide those behind it; where it cannot be cut off, the next ones are written over it.
    [[maybe_unused]] const int cut = ::ftruncate(m_descriptor, m_size);
    return false;
}

void JournalFile::syncSoon()
{
    const int descriptor = isOpen() ? ::fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0) : -1;
    if (descriptor < 0)
        return;
    m_syncing.start([descriptor, path = m_path] {
        sync(descriptor);
        ::close(descriptor);
        sync_folder_of(path);
    });
}

bool JournalFile::syncNow() { return isOpen() && sync(m_descriptor) && sync_folder_of(m_path); }

void JournalFile::close()
{
    if (isOpen()) {
        ::flock(m_descriptor, LOCK_UN); // a copy of the descriptor may still wait for the disk
        ::close(m_descriptor);
    }
    m_descriptor = -1;
    m_path.clear();
    m_size = 0;
}

std::optional<QByteArray> JournalFile::contentOfUnowned(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !try_lock(file.handle()) || !is_at(file.handle(), path))
        return std::nullopt;
    return file.readAll();
}

void JournalFile::removeUnowned(const QString& path)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly) && try_lock(file.handle()) && is_at(file.handle(), path))
        QFile::remove(path); // while it is locked: nobody takes it in between
}
