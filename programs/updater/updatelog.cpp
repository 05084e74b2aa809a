#include "programs/updater/updatelog.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

namespace programs {

namespace {

/// All users write to the log that the updater view shows.
constexpr mode_t logMode = 0666;

QString withoutControls(QString text)
{
    for (QChar &letter : text) {
        if (letter.category() == QChar::Other_Control)
            letter = QLatin1Char(' ');
    }
    return text;
}

} // namespace

UpdateLog::UpdateLog(const QString &path)
{
    m_descriptor = openSafely(QFile::encodeName(path));
    if (m_descriptor < 0) {
        fail(QString::fromLocal8Bit(std::strerror(errno)));
    } else if (!isOwnKind()) {
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}

UpdateLog::~UpdateLog()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool UpdateLog::append(const QString &line)
{
    if (!isOpen())
        return false;
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const QByteArray text = QStringLiteral("%1 [%2] %3\n")
                                .arg(stamp)
                                .arg(QCoreApplication::applicationPid())
                                .arg(withoutControls(line))
                                .toUtf8();
    // In one write: other updaters may append at the same time.
    const ssize_t written = ::write(m_descriptor, text.constData(), size_t(text.size()));
    if (written == text.size())
        return true;
    return fail(written < 0 ? QString::fromLocal8Bit(std::strerror(errno))
                            : QStringLiteral("the disk is full"));
}

/// Opens an existing file without O_CREAT: kernels refuse that flag for other users' files in a
/// sticky directory.
int UpdateLog::openSafely(const QByteArray &path)
{
    constexpr int flags = O_WRONLY | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    int descriptor = ::open(path.constData(), flags);
    if (descriptor >= 0 || errno != ENOENT)
        return descriptor;
    descriptor = ::open(path.constData(), flags | O_CREAT | O_EXCL, logMode);
    if (descriptor >= 0)
        ::fchmod(descriptor, logMode);
    else if (errno == EEXIST)
        descriptor = ::open(path.constData(), flags);
    return descriptor;
}

bool UpdateLog::isOwnKind()
{
    struct stat status = {};
    if (::fstat(m_descriptor, &status) != 0)
        return fail(QString::fromLocal8Bit(std::strerror(errno)));
    if (!S_ISREG(status.st_mode) || status.st_nlink != 1)
        return fail(QStringLiteral("it is not a plain file of its own"));
    if (status.st_size > largestSize && ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0)
        return ::ftruncate(m_descriptor, 0) == 0 ||
               fail(QString::fromLocal8Bit(std::strerror(errno)));
    return true;
}

bool UpdateLog::fail(const QString &reason)
{
    m_error = reason;
    return false;
}

} // namespace programs
