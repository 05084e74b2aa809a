#include "host/krt.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include <algorithm>
#include <array>
#include <cerrno>

#include <sys/stat.h>

namespace {

/// Types that desktops run instead of showing them. Derived types count too, which covers
/// scripts: shared-mime-info derives them from executables.
constexpr std::array runnableTypes{
    "application/x-executable",
    "application/x-sharedlib",
    "application/x-desktop",
    "application/x-pie-executable",
    "application/x-ms-dos-executable",
    "application/x-msdownload",
    "application/vnd.microsoft.portable-executable",
    "application/x-java-archive",
    "application/java-archive",
    "application/vnd.appimage",
    "application/x-iso9660-appimage",
    "application/x-msi",
    "application/vnd.flatpak.ref",
};

bool isRunnable(const QMimeType &type)
{
    return std::any_of(runnableTypes.begin(), runnableTypes.end(), [&type](const char *runnable) {
        return type.inherits(QLatin1String(runnable));
    });
}

QMimeType typeByName(const QString &path)
{
    return QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchExtension);
}

bool hasControlCharacter(const QString &path)
{
    return std::any_of(path.begin(), path.end(),
                       [](QChar c) { return c.category() == QChar::Other_Control; });
}

/// Whether the content starts like a program, a script or a desktop entry.
bool startsLikeProgram(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray start = file.read(4096);
    if (start.startsWith("#!") ||
        start.startsWith("\x7f"
                         "ELF") ||
        start.startsWith("MZ"))
        return true;
    const QList<QByteArray> lines = start.split('\n');
    const auto firstLine = std::find_if(lines.begin(), lines.end(), [](const QByteArray &line) {
        return !line.trimmed().isEmpty() && !line.startsWith('#');
    });
    return firstLine != lines.end() && firstLine->trimmed() == "[Desktop Entry]";
}

/// Whether a type says so little that the desktop goes by the execute bit.
bool isUndecided(const QMimeType &type)
{
    return type.isDefault() || type.inherits(QStringLiteral("text/plain")) ||
           type.name() == QLatin1String("application/x-zerosize");
}

bool isSafeFile(const QString &path)
{
    const QMimeDatabase database;
    const QMimeType type = database.mimeTypeForFile(path);
    if (isRunnable(type) ||
        isRunnable(database.mimeTypeForFile(path, QMimeDatabase::MatchContent)) ||
        startsLikeProgram(path))
        return false;
    return !(isUndecided(type) && QFileInfo(path).isExecutable());
}

} // namespace

bool krt::ksafe::KProcess::checkLocalFileSafe(const QString &path)
{
    if (!path.startsWith(QLatin1Char('/')) || path.startsWith(QLatin1String("//")) ||
        hasControlCharacter(path))
        return false;
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return errno == ENOENT && !isRunnable(typeByName(path));
    if (S_ISDIR(status.st_mode))
        return true;
    return S_ISREG(status.st_mode) && isSafeFile(path);
}
