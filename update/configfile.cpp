#include "update/configfile.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "plugin/config/suitefiles.h"
#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

/// Each user's own: nobody else can remove what a kill left of it.
constexpr char workName[] = "/.office-assistant-update-%1";
/// In the work directory: the new content and, once the file itself is written, the earlier one.
constexpr char newName[] = "/new";
constexpr char earlierName[] = "/earlier";
constexpr char earlierPart[] = "/earlier.part";
constexpr int lockWait = 5000;
/// A writer needs far less. Longer, and a lock file that a kill left empty blocks the next run.
constexpr int staleLock = 1000;

/// Where the new content of a file is made, and the lock of those who write it.
struct Workplace
{
    explicit Workplace(const QString &target)
    {
        const QString beside = QFileInfo(target).path();
        const bool isBeside = QFileInfo(beside).isWritable();
        const QString elsewhere =
            makeSuiteTemporaryDirectory() ? suiteTemporaryDirectory() : QDir::homePath();
        directory =
            (isBeside ? beside : elsewhere) + QString::fromLatin1(workName).arg(::geteuid());
        // Beside the file, the lock is that of every QSettings.
        lock = (isBeside ? target : directory) + QLatin1String(".lock");
    }

    QString path(const char *name) const { return directory + QLatin1String(name); }

    QString directory;
    QString lock;
};

bool takeLock(QLockFile &lock)
{
    lock.setStaleLockTime(staleLock);
    return lock.tryLock(lockWait);
}

std::optional<QByteArray> contentOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

bool writeNewFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly) &&
           file.write(content) == content.size() && file.flush();
}

bool renameOver(const QString &from, const QString &to)
{
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// The content, with empty lines up to the length of the earlier one: whole before the file is cut.
QByteArray paddedTo(const QByteArray &earlier, const QByteArray &content)
{
    return content.leftJustified(earlier.size(), '\n');
}

bool writeAll(int file, const QByteArray &content)
{
    int done = 0;
    while (done < content.size()) {
        const ssize_t written =
            ::pwrite(file, content.constData() + done, size_t(content.size() - done), done);
        if (written < 0 && errno != EINTR)
            return false;
        done += static_cast<int>(std::max<ssize_t>(written, 0));
    }
    return true;
}

/// Writes over the earlier content of a file.
bool writeOver(const QString &path, const QByteArray &earlier, const QByteArray &content)
{
    const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool hasNoSpace =
        ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, std::max<qint64>(1, content.size())) != 0 &&
        (errno == ENOSPC || errno == EDQUOT);
    const bool isWritten = !hasNoSpace && writeAll(file, paddedTo(earlier, content)) &&
                           ::ftruncate(file, content.size()) == 0;
    ::close(file);
    return isWritten;
}

/// Whether each byte is the earlier or the new one of its place, but not all are of one.
bool isPartlyWritten(const QByteArray &current, const QByteArray &earlier,
                     const QByteArray &content)
{
    const auto [shorter, longer] = std::minmax({earlier.size(), content.size()});
    if (current == earlier || current == content || current.size() < shorter ||
        current.size() > longer)
        return false;
    const QByteArray padded = paddedTo(earlier, content);
    for (int at = 0; at < current.size(); ++at) {
        const bool isEarlier = at < earlier.size() && current.at(at) == earlier.at(at);
        if (!isEarlier && current.at(at) != padded.at(at))
            return false;
    }
    return true;
}

/// Whether nothing is left to do of a run that was killed.
bool finishEarlierRun(const QString &target, const Workplace &place)
{
    // Where others can write too, a link could lead to files that are not ours to remove.
    if (QFileInfo(place.directory).isSymLink())
        return false;
    const auto earlier = contentOf(place.path(earlierName));
    const auto content = contentOf(place.path(newName));
    const auto current = contentOf(target);
    if (earlier && content && current && isPartlyWritten(*current, *earlier, *content) &&
        !writeOver(target, *current, *earlier))
        return false;
    return QDir(place.directory).removeRecursively();
}

/// The content with a text stored in it, also as a file; nothing on a full disk.
std::optional<QByteArray> makeContent(const Workplace &place, const QByteArray &earlier,
                                      const ConfigText &text)
{
    const QString path = place.path(newName);
    if (::mkdir(QFile::encodeName(place.directory).constData(), S_IRWXU) != 0 ||
        !writeNewFile(path, earlier))
        return std::nullopt;
    {
        QSettings settings(path, qtversion::suiteIni());
        settings.beginGroup(text.group);
        settings.setValue(text.key, text.value);
    }
    return contentOf(path);
}

/// Gives the file the new content that lies in the workplace.
void replaceContent(const QFileInfo &target, const Workplace &place, const QByteArray &earlier,
                    const QByteArray &content)
{
    QFile::setPermissions(place.path(newName), target.permissions());
    if (!renameOver(place.path(newName), target.filePath()) &&
        writeNewFile(place.path(earlierPart), earlier) &&
        renameOver(place.path(earlierPart), place.path(earlierName)))
        writeOver(target.filePath(), earlier, content);
}

} // namespace

void storeText(const QString &file, const ConfigText &text)
{
    const QFileInfo target(QFileInfo(file).canonicalFilePath());
    if (!target.isFile() || !target.isWritable())
        return;
    const Workplace place(target.filePath());
    QLockFile lock(place.lock);
    if (!takeLock(lock) || !finishEarlierRun(target.filePath(), place))
        return;
    if (const auto earlier = contentOf(target.filePath())) {
        const auto content = makeContent(place, *earlier, text);
        if (content && *content != *earlier)
            replaceContent(target, place, *earlier, *content);
    }
    finishEarlierRun(target.filePath(), place);
}

void recoverConfig(const QString &file)
{
    const QString target = QFileInfo(file).canonicalFilePath();
    if (target.isEmpty())
        return;
    const Workplace place(target);
    if (!QFileInfo::exists(place.directory))
        return;
    QLockFile lock(place.lock);
    if (takeLock(lock))
        finishEarlierRun(target, place);
}

} // namespace OfficeAssiant
