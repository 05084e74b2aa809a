#include "dump/dumpfiles.h"

#include <QDirIterator>
#include <QFileInfo>

#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

/// The last dot stands for any character, as in the suite's own list of dumps.
constexpr char dumpNames[] = "(tbl|vyr|shw|vyrpdf|vyroffice)_\\d+.dmp";
constexpr qint32 freshnessSeconds = 1800;

/// Whether @p file is to be preferred: the newer one, or of two of the same time the first by name.
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
    // One pass that looks at the name first: the directory may hold very many files, and the
    // caller may be asked again for each that is added.
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
    // The distance is counted towards the stamp, so that the past is negative, and as 32 bits:
    // the crash view offers old dumps too. An unknown stamp counts as now.
    return static_cast<qint32>(now.secsTo(created)) < freshnessSeconds;
}

} // namespace OfficeAssiant
