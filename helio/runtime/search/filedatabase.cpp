#include "helio/runtime/search/filedatabase.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "helio/runtime/search/searchlocations.h"
#include "helio/runtime/search/unsearchedmounts.h"

namespace helio {

namespace {

const QString refreshScript = QStringLiteral(":/helio/search/refreshdatabase.sh");
const QStringList refreshWords = {
    QStringLiteral("--fork"), QStringLiteral("nice"), QStringLiteral("-n"), QStringLiteral("19"),
    QStringLiteral("ionice"), QStringLiteral("-t"),   QStringLiteral("-c"), QStringLiteral("3"),
    QStringLiteral("sh"),     QStringLiteral("-c"),
};
const QString detacher = QStringLiteral("setsid");
const QStringList refreshTools = {detacher, QStringLiteral("nice"), QStringLiteral("ionice"),
                                  QStringLiteral("sh")};
const QStringList updaterNames = {QStringLiteral("updatedb"), QStringLiteral("updatedb.plocate")};
const QStringList systemProgramDirectories = {QStringLiteral("/usr/local/sbin"),
                                              QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};

// A file made a minute ago is to be found, and a refresh takes its time.
constexpr qint64 staleAfterMs = 45000;
constexpr int longestProgramStartMs = 5000;

/// Starts a program that inherits a file descriptor.
class InheritingProcess : public QProcess
{
public:
    explicit InheritingProcess(int descriptor) : m_descriptor(descriptor) {}

protected:
    void setupChildProcess() override { ::fcntl(m_descriptor, F_SETFD, 0); }

private:
    int m_descriptor;
};

/// Other packages have an updatedb too, whose databases plocate does not read.
bool isUpdaterOfPlocate(const QString &program)
{
    const QString name = QFileInfo(QFileInfo(program).canonicalFilePath()).fileName();
    return !name.startsWith(QLatin1String("updatedb.")) ||
           name == QLatin1String("updatedb.plocate");
}

QString findUpdater()
{
    for (const QString &name : updaterNames) {
        QString program = QStandardPaths::findExecutable(name);
        if (program.isEmpty())
            program = QStandardPaths::findExecutable(name, systemProgramDirectories);
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
           std::all_of(refreshTools.begin(), refreshTools.end(), [](const QString &tool) {
               return !QStandardPaths::findExecutable(tool).isEmpty();
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
    const int descriptor = ::open(QFile::encodeName(lockPath()).constData(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct flock lock = writeLock();
    const bool isLocked = ::fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    ::close(descriptor);
    return isLocked;
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
    if (!makePrivateDirectory(m_directory))
        return false;
    const int descriptor = ::open(QFile::encodeName(lockPath()).constData(),
                                  O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    // The lock belongs to the open file, which the refresh inherits: it ends with the refresh,
    // and not with this process.
    struct flock lock = writeLock();
    bool underWay = true;
    if (::fcntl(descriptor, F_OFD_SETLK, &lock) == 0) {
        ::futimens(descriptor, nullptr);
        underWay = startRefreshProgram(descriptor);
    }
    ::close(descriptor);
    return underWay;
}

bool FileDatabase::startRefreshProgram(int lockDescriptor) const
{
    QFile script(refreshScript);
    if (!script.open(QIODevice::ReadOnly))
        return false;
    InheritingProcess process(lockDescriptor);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(m_directory + QLatin1Char('/') + m_name + QStringLiteral(".log"));
    process.setWorkingDirectory(QStringLiteral("/"));
    process.start(detacher, refreshWords + QStringList{QString::fromUtf8(script.readAll()),
                                                       QStringLiteral("refreshdatabase"),
                                                       findUpdater(), m_root, path(),
                                                       QString::fromLatin1(unsearchedFileSystems()),
                                                       m_directory});
    return process.waitForFinished(longestProgramStartMs) && process.exitCode() == 0 &&
           process.exitStatus() == QProcess::NormalExit;
}

} // namespace helio
