#include "plugin/config/directorylock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace OfficeAssiant {

namespace {

constexpr int retryIntervalMs = 5;

} // namespace

DirectoryLock::DirectoryLock(const QString &directory, Kind kind, int longestWaitMs)
    : m_descriptor(
          ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    acquire(kind == Shared ? LOCK_SH : LOCK_EX, longestWaitMs);
}

DirectoryLock::~DirectoryLock()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

DirectoryLock &DirectoryLock::operator=(DirectoryLock &&other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_isRefused, other.m_isRefused);
    return *this;
}

bool DirectoryLock::isHeldOn(const QString &directory) const
{
    struct stat locked = {};
    struct stat current = {};
    return m_descriptor >= 0 && ::fstat(m_descriptor, &locked) == 0 &&
           ::stat(QFile::encodeName(directory).constData(), &current) == 0 &&
           locked.st_dev == current.st_dev && locked.st_ino == current.st_ino;
}

void DirectoryLock::makeExclusive()
{
    acquire(LOCK_EX, 0);
}

void DirectoryLock::acquire(int operation, int longestWaitMs)
{
    const QDeadlineTimer deadline(longestWaitMs);
    while (m_descriptor >= 0 && ::flock(m_descriptor, operation | LOCK_NB) != 0) {
        m_isRefused = errno == EWOULDBLOCK && deadline.hasExpired();
        if (m_isRefused || (errno != EWOULDBLOCK && errno != EINTR)) {
            ::close(std::exchange(m_descriptor, -1));
            return;
        }
        QThread::msleep(retryIntervalMs);
    }
}

} // namespace OfficeAssiant
