#include "helio/runtime/search/filedatabase.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "helio/runtime/processes/descriptor.h"
#include "helio/runtime/processes/spawn.h"
#include "helio/runtime/search/searchlocations.h"
#include "helio/runtime/search/unsearchedmounts.h"

namespace helio {

namespace {

/// Runs a script detached and at idle priority; its text and arguments follow.
constexpr std::array refreshWords = {"setsid", "--fork", "nice", "-n", "19", "ionice",
                                     "-t",     "-c",     "3",    "sh", "-c"};
constexpr std::array refreshTools = {"setsid", "nice", "ionice", "sh"};
constexpr std::array updaterNames = {"updatedb", "updatedb.plocate"};

// A file made a minute ago has to be found, and a refresh takes some seconds.
constexpr qint64 staleAfterMs = 45000;
constexpr int longestDetachMs = 5000;

/// The first descriptor after the standard streams.
constexpr int lockNumber = 3;

/// Other packages have an updatedb too; plocate cannot read their databases.
bool isUpdaterOfPlocate(const QString &program)
{
    const QString name = QFileInfo(QFileInfo(program).canonicalFilePath()).fileName();
    return !name.startsWith(QLatin1String("updatedb.")) ||
           name == QLatin1String("updatedb.plocate");
}

QString findUpdater()
{
    // Usually not in a user's PATH.
    const QStringList systemDirectories = {QStringLiteral("/usr/local/sbin"),
                                           QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};
    for (const char *updater : updaterNames) {
        const QLatin1String name(updater);
        QString program = QStandardPaths::findExecutable(name);
        if (program.isEmpty())
            program = QStandardPaths::findExecutable(name, systemDirectories);
        if (!program.isEmpty() && isUpdaterOfPlocate(program))
            return program;
    }
    return {};
}

bool makePrivateDirectory(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    const QByteArray name = QFile::encodeName(path);
    ::mkdir(name.constData(), S_IRWXU);
    return ::chmod(name.constData(), S_IRWXU) == 0;
}

int openPrivateFile(const QString &path, int flags = 0)
{
    return ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | flags,
                  S_IRUSR | S_IWUSR);
}

struct flock writeLock()
{
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return lock;
}

qint64 lastModified(const QString &path)
{
    const QFileInfo file(path);
    return file.exists() ? file.lastModified().toMSecsSinceEpoch() : -1;
}

} // namespace

FileDatabase::FileDatabase(const QString &root)
    : m_root(root), m_directory(searchDatabaseDirectory())
{
    const QByteArray hash = QCryptographicHash::hash(root.toUtf8(), QCryptographicHash::Sha1);
    m_name = QStringLiteral("files-") + QString::fromLatin1(hash.toHex().left(16));
}

bool FileDatabase::isRefreshable()
{
    return !findUpdater().isEmpty() &&
           std::all_of(refreshTools.begin(), refreshTools.end(), [](const char *tool) {
               return !QStandardPaths::findExecutable(QLatin1String(tool)).isEmpty();
           });
}

QString FileDatabase::path() const
{
    return m_directory + QLatin1Char('/') + m_name + QStringLiteral(".db");
}

QString FileDatabase::lockPath() const
{
    return m_directory + QLatin1Char('/') + m_name + QStringLiteral(".lock");
}

std::optional<FileDatabase::Version> FileDatabase::version() const
{
    struct stat status;
    if (::stat(QFile::encodeName(path()).constData(), &status) != 0)
        return {};
    constexpr qint64 nanosecondsPerSecond = 1000000000;
    return Version(status.st_ino,
                   status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec);
}

bool FileDatabase::isRefreshing() const
{
    const Descriptor lockFile(
        ::open(QFile::encodeName(lockPath()).constData(), O_RDONLY | O_CLOEXEC));
    struct flock lock = writeLock();
    return lockFile.isOpen() && ::fcntl(lockFile.number(), F_OFD_GETLK, &lock) == 0 &&
           lock.l_type != F_UNLCK;
}

bool FileDatabase::isStale() const
{
    const qint64 refreshStarted = lastModified(lockPath());
    const qint64 age = QDateTime::currentMSecsSinceEpoch() - refreshStarted;
    const bool failed = lastModified(path()) < refreshStarted;
    return refreshStarted < 0 || failed || age < 0 || age > staleAfterMs;
}

bool FileDatabase::startRefresh() const
{
    if (!isRefreshable() || !makePrivateDirectory(m_directory))
        return false;
    const Descriptor lockFile(openPrivateFile(lockPath()));
    if (!lockFile.isOpen())
        return false;
    // The lock belongs to the open file, which the refresh inherits, so the refresh holds it even
    // after this process has ended.
    struct flock lock = writeLock();
    if (::fcntl(lockFile.number(), F_OFD_SETLK, &lock) != 0)
        return true;
    ::futimens(lockFile.number(), nullptr);
    return startRefreshProgram(lockFile);
}

bool FileDatabase::startRefreshProgram(const Descriptor &lock) const
{
    QFile script(QStringLiteral(":/helio/search/refreshdatabase.sh"));
    const QString logPath = m_directory + QLatin1Char('/') + m_name + QStringLiteral(".log");
    const Descriptor nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    const Descriptor log(openPrivateFile(logPath, O_TRUNC));
    if (!script.open(QIODevice::ReadOnly) || !nothing.isOpen() || !log.isOpen())
        return false;
    QList<QByteArray> words(refreshWords.begin(), refreshWords.end());
    words += {script.readAll(), "refreshdatabase"};
    words += {QFile::encodeName(findUpdater()), QFile::encodeName(m_root),
              QFile::encodeName(path()), unsearchedFileSystems(), QFile::encodeName(m_directory)};
    const std::optional<pid_t> process =
        spawnProgram(words, QProcessEnvironment::systemEnvironment(),
                     {{nothing.number(), STDIN_FILENO},
                      {nothing.number(), STDOUT_FILENO},
                      {log.number(), STDERR_FILENO},
                      {lock.number(), lockNumber}});
    // Waits for setsid only, which has detached the refresh when it ends.
    return process && awaitProgram(*process, longestDetachMs).value_or(0) == 0;
}

} // namespace helio
