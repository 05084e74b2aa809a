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
    "application/x-ms-shortcut",
    "application/x-mswinurl",
    "application/x-java",
    "application/x-java-jnlp-file",
    "application/javascript",
    "application/hta",
    "application/vnd.flatpak",
    "application/vnd.flatpak.ref",
    "application/vnd.flatpak.repo",
    "application/vnd.snap",
    "text/vbscript",
    "text/x-dbus-service",
    "text/x-systemd-unit",
};

/// Names of what desktops run through a helper (Java, Wine, PowerShell, package installers), in
/// lower case. A helper brings a type of its own, which is not known here.
constexpr std::array runnableSuffixes{
    "appimage",    "bat", "class", "cmd",  "com", "cpl", "flatpak", "flatpakref",
    "flatpakrepo", "hta", "jar",   "jnlp", "js",  "jse", "lnk",     "msi",
    "msp",         "pif", "ps1",   "psm1", "reg", "scr", "url",     "service",
    "snap",        "vbe", "vbs",   "wsf",  "wsh",
};

/// First lines of text files that desktops act on.
constexpr std::array runnableGroups{
    "[Desktop Entry]", "[InternetShortcut]", "[Flatpak Ref]",
    "[Flatpak Repo]",  "[D-BUS Service]",    "[Unit]",
};

bool isRunnable(const QMimeType &type)
{
    return std::any_of(runnableTypes.begin(), runnableTypes.end(), [&type](const char *runnable) {
        return type.inherits(QLatin1String(runnable));
    });
}

bool hasRunnableSuffix(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return std::any_of(
        runnableSuffixes.begin(), runnableSuffixes.end(),
        [&suffix](const char *runnable) { return suffix == QLatin1String(runnable); });
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

/// Whether binary content starts like a program or a shortcut to one.
bool hasProgramSignature(const QByteArray &start)
{
    // In order: a script, Linux, Windows, Java, a Windows shortcut, a snap package.
    const std::array signatures{QByteArray("#!"),
                                QByteArray("\x7f"
                                           "ELF"),
                                QByteArray("MZ"),
                                QByteArray("\xca\xfe\xba\xbe"),
                                QByteArray("L\0\0\0\1\x14\2\0", 8),
                                QByteArray("hsqs")};
    return std::any_of(
               signatures.begin(), signatures.end(),
               [&start](const QByteArray &signature) { return start.startsWith(signature); }) ||
           (start.startsWith("PK\3\4") && start.contains("META-INF/MANIFEST.MF"));
}

/// Whether text content starts like a desktop entry or the like.
bool startsWithRunnableGroup(const QByteArray &start)
{
    const QList<QByteArray> lines = start.split('\n');
    const auto firstLine = std::find_if(lines.begin(), lines.end(), [](const QByteArray &line) {
        return !line.trimmed().isEmpty() && !line.startsWith('#') && !line.startsWith(';');
    });
    return firstLine != lines.end() && std::find(runnableGroups.begin(), runnableGroups.end(),
                                                 firstLine->trimmed()) != runnableGroups.end();
}

/// Whether the content starts like something that desktops run.
bool startsLikeProgram(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray start = file.read(4096);
    return hasProgramSignature(start) || startsWithRunnableGroup(start) ||
           start.contains("<jnlp") || start.toLower().contains("<hta:application");
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
    if (isRunnable(type) || hasRunnableSuffix(QFileInfo(path).canonicalFilePath()) ||
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
        return errno == ENOENT && !hasRunnableSuffix(path) && !isRunnable(typeByName(path));
    if (S_ISDIR(status.st_mode))
        return true;
    return S_ISREG(status.st_mode) && !hasRunnableSuffix(path) && isSafeFile(path);
}
