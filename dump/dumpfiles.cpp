#include "dump/dumpfiles.h"

#include <QFile>
#include <QRegularExpression>

#include <optional>

#include <sys/stat.h>
#include <unistd.h>

#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

/// The last dot matches any character, as in the suite's own list of dumps.
constexpr char dumpNames[] = "(tbl|vyr|shw|vyrpdf|vyroffice)_\\d+.dmp";
constexpr QRegularExpression::PatternOptions dumpNameOptions =
    QRegularExpression::DotMatchesEverythingOption | QRegularExpression::UseUnicodePropertiesOption;
constexpr qint32 freshnessSeconds = 1800;

/// In milliseconds, as of the file system; nothing if the file cannot be read.
std::optional<qint64> modificationTime(const QByteArray &path)
{
    struct stat status = {};
    if (::access(path.constData(), R_OK) != 0 || ::stat(path.constData(), &status) != 0)
        return std::nullopt;
    return qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
}

} // namespace

QString dumpDirectory()
{
    return suiteTemporaryDirectory() + QLatin1String("/dump");
}

bool isDumpName(const QString &name)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QLatin1String(dumpNames)), dumpNameOptions);
    return pattern.match(name).hasMatch();
}

bool containsDumpName(const QString &name)
{
    static const QRegularExpression pattern(QLatin1String(dumpNames), dumpNameOptions);
    return pattern.match(name).hasMatch();
}

QString newestDumpPath()
{
    const QString directory = dumpDirectory() + QLatin1Char('/');
    const QByteArray prefix = QFile::encodeName(directory);
    // Names first: the directory may hold very many files, and each new one may lead to another
    // call.
    QString newest;
    qint64 newestTime = 0;
    for (const QByteArray &name : plainFiles(dumpDirectory())) {
        const QString text = QFile::decodeName(name);
        if (!isDumpName(text))
            continue;
        const auto time = modificationTime(prefix + name);
        // Of the same time the first by name counts.
        if (time &&
            (newest.isEmpty() || *time > newestTime || (*time == newestTime && text < newest))) {
            newest = text;
            newestTime = *time;
        }
    }
    return newest.isEmpty() ? QString() : directory + newest;
}

bool hasRecentStamp(const QDateTime &created, const QDateTime &now)
{
    // The past is negative, so old dumps count, too: the crash view offers them. The difference has
    // 32 bits. An unknown time counts as now.
    return static_cast<qint32>(now.secsTo(created)) < freshnessSeconds;
}

} // namespace OfficeAssiant
