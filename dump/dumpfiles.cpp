#include "dump/dumpfiles.h"

#include <QDirIterator>
#include <QFileInfo>

#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

/// The last dot matches any character, as in the suite's own list of dumps.
constexpr char dumpNames[] = "(tbl|vyr|shw|vyrpdf|vyroffice)_\\d+.dmp";
constexpr qint32 freshnessSeconds = 1800;

/// Newer by time, or of the same time and first by name.
bool isNewer(const QFileInfo &file, const QFileInfo &other)
{
    const qint64 lead = other.lastModified().msecsTo(file.lastModified());
    return lead > 0 || (lead == 0 && file.fileName() < other.fileName());
}

} // namespace

QString dumpDirectory()
{
    return suiteTemporaryDirectory() + QLatin1String("/dump");
}

QRegExp dumpFilePattern()
{
    return QRegExp(QLatin1String(dumpNames));
}

QString newestDumpPath()
{
    const QString directory = dumpDirectory();
    const QRegExp pattern = dumpFilePattern();
    // One pass, names first: the directory may hold very many files, and each new one may lead to
    // another call.
    QDirIterator files(directory, QDir::Files);
    QFileInfo newest;
    while (files.hasNext()) {
        files.next();
        if (!pattern.exactMatch(files.fileName()))
            continue;
        const QFileInfo file = files.fileInfo();
        if (file.isReadable() && (newest.filePath().isEmpty() || isNewer(file, newest)))
            newest = file;
    }
    if (newest.filePath().isEmpty())
        return {};
    return directory + QLatin1Char('/') + newest.fileName();
}

bool hasRecentStamp(const QDateTime &created, const QDateTime &now)
{
    // The past is negative, so old dumps count, too: the crash view offers them. The difference has
    // 32 bits. An unknown time counts as now.
    return static_cast<qint32>(now.secsTo(created)) < freshnessSeconds;
}

} // namespace OfficeAssiant
