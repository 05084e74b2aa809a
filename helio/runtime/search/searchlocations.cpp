#include "helio/runtime/search/searchlocations.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

#include "helio/runtime/configuration.h"

namespace {

QString withHome(const QString &path)
{
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/")))
        return QDir::homePath() + path.mid(1);
    return path;
}

QStringList existingDirectories(const QStringList &paths)
{
    QStringList directories;
    for (const QString &path : paths) {
        const QFileInfo directory(withHome(path.trimmed()));
        if (directory.isAbsolute() && directory.isDir())
            directories.append(directory.canonicalFilePath());
    }
    directories.removeDuplicates();
    return directories;
}

} // namespace

QStringList helio::searchRoots()
{
    const QString configured = setting(QStringLiteral("searchRoots"), QStringLiteral("~"));
    const QStringList directories = existingDirectories(configured.split(QLatin1Char(',')));
    QStringList roots;
    std::copy_if(directories.begin(), directories.end(), std::back_inserter(roots),
                 [&directories](const QString &directory) {
                     return std::none_of(directories.begin(), directories.end(),
                                         [&directory](const QString &other) {
                                             return liesBelow(directory, other);
                                         });
                 });
    return roots;
}

QString helio::searchDatabaseDirectory()
{
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    const QString canonicalCache = QFileInfo(cache).canonicalFilePath();
    return (canonicalCache.isEmpty() ? cache : canonicalCache) +
           QStringLiteral("/orvane-office-assistant");
}

bool helio::liesBelow(const QString &path, const QString &directory)
{
    if (directory == QLatin1String("/"))
        return path != directory;
    return path.startsWith(directory + QLatin1Char('/'));
}
