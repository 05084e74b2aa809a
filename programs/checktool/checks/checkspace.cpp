#include <QDir>
#include <QFileInfo>
#include <QLocale>

#include <cerrno>
#include <cstring>

#include "programs/checktool/checks/checks.h"
#include "programs/checktool/checks/diskspace.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr qint64 mebibyte = qint64(1024) * 1024;
/// Below this, the next save is likely to fail.
constexpr qint64 tooFewBytes = 50 * mebibyte;
/// Recovery files and updates of the suite soon use up less than this.
constexpr qint64 fewBytes = 500 * mebibyte;
constexpr quint64 tooFewFiles = 1000;

/// The nearest existing parent directory, in which the missing ones would be created.
QString existing(const QString &directory)
{
    QFileInfo information(directory);
    while (!information.exists() && !information.isRoot())
        information = QFileInfo(information.absolutePath());
    return information.absoluteFilePath();
}

QString size(qint64 bytes)
{
    return QLocale().formattedDataSize(bytes);
}

void reportBytes(const QString &name, const QString &path, qint64 bytes, Findings &findings)
{
    const QString remedy =
        texts::tr("Delete or move files, empty the trash, or choose another disk.");
    if (bytes < tooFewBytes)
        findings.problem(
            texts::tr("%1 (%2) is nearly full: %3 are free.").arg(name, path, size(bytes)), remedy);
    else if (bytes < fewBytes)
        findings.note(texts::tr("%1 (%2) is filling up: %3 are free. %4")
                          .arg(name, path, size(bytes), remedy));
    else
        findings.fine(texts::tr("%1 (%2) has %3 free.").arg(name, path, size(bytes)));
}

void checkDirectory(const QString &name, const QString &wanted, Findings &findings)
{
    const QString path = existing(wanted);
    struct statvfs disk = {};
    if (::statvfs(QFile::encodeName(path).constData(), &disk) != 0) {
        findings.problem(texts::tr("%1 (%2) cannot be asked for its free space: %3.")
                             .arg(name, wanted, QString::fromLocal8Bit(std::strerror(errno))),
                         texts::tr("Look whether the disk is connected and the directory may be "
                                   "entered."));
        return;
    }
    reportDisk(name, wanted, disk, findings);
}

} // namespace

void reportDisk(const QString &name, const QString &path, const struct statvfs &disk,
                Findings &findings)
{
    if ((disk.f_flag & ST_RDONLY) != 0) {
        findings.problem(texts::tr("%1 (%2) is on a disk that can only be read.").arg(name, path),
                         texts::tr("Look for disk errors with “dmesg”, or mount the disk again for "
                                   "writing."));
        return;
    }
    reportBytes(name, path, qint64(disk.f_bavail) * qint64(disk.f_frsize), findings);
    // Some file systems do not count files.
    if (disk.f_files > 0 && disk.f_favail < tooFewFiles)
        findings.problem(texts::tr("%1 (%2) has room for %3 further files only, whatever their "
                                   "size.")
                             .arg(name, path, QString::number(disk.f_favail)),
                         texts::tr("Delete files that are no longer needed; many small ones "
                                   "count most."));
}

void checkSpace(const Machine &machine, const QString &, const QString &argument,
                Findings &findings)
{
    checkDirectory(texts::tr("The home directory"), machine.home, findings);
    checkDirectory(texts::tr("The temporary directory"), machine.temporaryDirectory, findings);
    checkDirectory(texts::tr("The suite's directory"), machine.suiteHome, findings);
    if (argument.isEmpty())
        return;
    if (QFileInfo(argument).isDir())
        checkDirectory(texts::tr("The directory asked for"), argument, findings);
    else
        findings.problem(texts::tr("There is no directory %1.").arg(argument),
                         texts::tr("Give the full path of a directory."));
}

} // namespace programs
