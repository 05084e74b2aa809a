#include "doctor/machine/processview.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <sys/stat.h>

#include "doctor/machine/filereading.h"

namespace doctor {

namespace {

constexpr qint64 largestEnvironment = 1 << 20;

bool statusOf(const QString &path, struct stat &status)
{
    return ::stat(QFile::encodeName(path).constData(), &status) == 0;
}

/// The home that it was started with; empty if that cannot be read.
QString homeOf(const QString &directory)
{
    const QByteArray environment =
        readFile(directory + QStringLiteral("/environ"), largestEnvironment)
            .content.value_or(QByteArray());
    for (const QByteArray &entry : environment.split('\0')) {
        if (entry.startsWith("HOME="))
            return QFile::decodeName(entry.mid(5));
    }
    return {};
}

} // namespace

bool seesHome(const Machine &machine, qint64 process)
{
    const QString directory = machine.located(QStringLiteral("/proc/%1").arg(process));
    const QString root = directory + QStringLiteral("/root");
    struct stat own;
    struct stat seen;
    // A Flatpak works with its own part of the home.
    if (!statusOf(machine.located(machine.home()), own) ||
        statusOf(root + QStringLiteral("/.flatpak-info"), seen))
        return true;
    const QString home = homeOf(directory);
    if (statusOf(root + (home.isEmpty() ? machine.home() : home), seen))
        return own.st_dev == seen.st_dev && own.st_ino == seen.st_ino;
    if (errno != ENOENT)
        return true;
    // One that has ended, but was not waited for, has no root any more.
    return !statusOf(root + QLatin1Char('/'), seen) && !QFileInfo(root).isSymLink();
}

} // namespace doctor
