#include "plugin/config/scriptstaging.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <new>

#include <fcntl.h>
#include <unistd.h>

#include "plugin/config/directorylock.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char embeddedScript[] = ":/config/%1";
constexpr char installedScripts[] = "/addons/vyrassistanttool/officeassistant/resource/config/";

constexpr QFile::Permissions runnableByGroup = QFile::ReadOwner | QFile::ExeOwner |
                                               QFile::ReadUser | QFile::ExeUser | QFile::ReadGroup |
                                               QFile::ExeGroup;

/// How long another program may take to remove the staged files.
constexpr int longestRemovalMs = 5000;

std::mutex stagingGuard;

/// Shared while this process may run staged scripts: whoever gets the exclusive lock is the last
/// one to use them and removes them. Never destroyed: threads may still stage at program exit.
DirectoryLock &stagingLock()
{
    alignas(DirectoryLock) static std::byte place[sizeof(DirectoryLock)];
    static auto *lock = new (place) DirectoryLock;
    return *lock;
}

void shareStagingDirectory(const QString &directory)
{
    const std::lock_guard guard(stagingGuard);
    if (!stagingLock().isHeldOn(directory))
        stagingLock() = DirectoryLock(directory, DirectoryLock::Shared, longestRemovalMs);
}

/// Writes @p content to a new file beside @p target and returns its name; empty on failure. The
/// file is closed: a script that is open for writing cannot be started.
QByteArray writePart(const QByteArray &target, const QByteArray &content)
{
    QByteArray name = target + ".XXXXXX";
    QFile part;
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor < 0 || !part.open(descriptor, QFile::WriteOnly, QFile::AutoCloseHandle))
        return {};
    const bool isWritten = part.write(content) == content.size() && part.flush() &&
                           part.setPermissions(runnableByGroup);
    if (isWritten)
        return name;
    ::unlink(name.constData());
    return {};
}

/// Copies @p resource to @p target, which appears whole or not at all. True too if another program
/// has made the target meanwhile.
bool placeCopy(const QString &resource, const QString &target)
{
    QFile source(resource);
    if (!source.open(QFile::ReadOnly))
        return false;
    const QByteArray name = QFile::encodeName(target);
    const QByteArray part = writePart(name, source.readAll());
    if (part.isEmpty())
        return false;
    bool isPlaced = ::link(part.constData(), name.constData()) == 0 || errno == EEXIST;
    // Some file systems have no links.
    if (!isPlaced)
        isPlaced = std::rename(part.constData(), name.constData()) == 0;
    ::unlink(part.constData());
    return isPlaced;
}

} // namespace

QString scriptStagingDirectory()
{
    return suiteTemporaryDirectory() + QStringLiteral("/officeassis_script");
}

QString stagedScript(const QString &name)
{
    QString installed =
        QCoreApplication::applicationDirPath() + QLatin1String(installedScripts) + name;
    if (QFileInfo::exists(installed))
        return installed;
    return stageResource(QLatin1String(embeddedScript).arg(name), name, QString());
}

QString stageResource(const QString &resource, const QString &name, const QString &targetDirectory)
{
    if (!QFile::exists(resource))
        return {};
    QString directory = targetDirectory;
    if (directory.isEmpty()) {
        directory = scriptStagingDirectory();
        makeSuiteTemporaryDirectory();
        QDir().mkdir(directory);
        shareStagingDirectory(directory);
    }
    const QString target = QStringLiteral("%1/%2").arg(directory, name);
    // A copy from an earlier run is used unchanged.
    if (!QFile::exists(target) && !placeCopy(resource, target))
        return {};
    return QFile::setPermissions(target, runnableByGroup) ? target : QString();
}

void removeStagedScripts()
{
    QDir directory(scriptStagingDirectory());
    if (!directory.exists())
        return;
    const std::lock_guard guard(stagingGuard);
    DirectoryLock &lock = stagingLock();
    if (lock.isHeldOn(directory.path()))
        lock.makeExclusive();
    else
        lock = DirectoryLock(directory.path(), DirectoryLock::Exclusive, 0);
    if (!lock.isRefused()) {
        const QStringList files = directory.entryList(QDir::Files);
        for (const QString &file : files)
            directory.remove(file);
    }
    lock = DirectoryLock();
}

} // namespace OfficeAssiant
