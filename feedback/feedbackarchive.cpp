#include "feedback/feedbackarchive.h"

#include <QFile>

#include <algorithm>

#include <unistd.h>

#include "dump/dumpfiles.h"
#include "host/krt.h"
#include "info/kinfohelp.h"
#include "plugin/config/scriptstaging.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char archiveScript[] = "archivepackage.sh";
constexpr char reportName[] = "/sysinfo.txt";
constexpr char leftOutNote[] = " [too long for the archive, left out: %1]";
constexpr QLatin1Char listSeparator(';');
QString flagWord(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

/// What the kernel takes as one argument (32 pages with the zero byte), as long as all arguments
/// together leave room for the environment.
int longestArgument()
{
    constexpr long mostPages = 32;
    constexpr long shareOfAll = 8;
    return static_cast<int>(
        std::min(mostPages * ::sysconf(_SC_PAGESIZE), ::sysconf(_SC_ARG_MAX) / shareOfAll) - 1);
}

/// How much longer than @p longest bytes an argument is.
int excessOf(const QString &text, int longest)
{
    return QFile::encodeName(text).size() - longest;
}

/// The beginning of @p text in at most @p longest bytes.
QString cutText(QString text, int longest)
{
    constexpr int mostBytesOfOneCharacter = 4;
    for (;;) {
        const int excess = excessOf(text, longest);
        if (excess <= 0)
            return text;
        text.chop((excess + mostBytesOfOneCharacter - 1) / mostBytesOfOneCharacter);
        if (text.at(text.size() - 1).isHighSurrogate())
            text.chop(1);
    }
}

/// Each name behind a separator, as far as they fit in one argument; a longer one would prevent the
/// archive. Counts in @p leftOut those that do not.
QString nameList(const QStringList &names, int &leftOut)
{
    QString list;
    int room = longestArgument();
    for (const QString &name : names) {
        if (name.isEmpty())
            continue;
        const QString entry = listSeparator + name;
        const int length = QFile::encodeName(entry).size();
        if (length > room) {
            ++leftOut;
            continue;
        }
        room -= length;
        list += entry;
    }
    return list;
}

/// The dumps and other files of a crash: a name has to match in part only.
QStringList dumps()
{
    const QString directory = dumpDirectory();
    QStringList paths;
    for (const QByteArray &name : plainFiles(directory)) {
        const QString text = QFile::decodeName(name);
        if (containsDumpName(text))
            paths.append(directory + QLatin1Char('/') + text);
    }
    // Names that are invalid in the locale's encoding may read alike; the script finds them all.
    paths.removeDuplicates();
    return paths;
}

/// The description with a note of what does not fit in the arguments.
QString notedDescription(const QString &description, QStringList leftOut)
{
    if (excessOf(description, longestArgument()) > 0)
        leftOut.prepend(QStringLiteral("the rest of this text"));
    if (leftOut.isEmpty())
        return description;
    const QString note = QLatin1String(leftOutNote).arg(leftOut.join(QStringLiteral(", ")));
    return cutText(description, longestArgument() - note.size()) + note;
}

} // namespace

QStringList archiveArguments(const FeedbackRequest &request, bool isReportWritten)
{
    const QString type = cutText(request.type, longestArgument());
    int filesLeftOut = 0;
    const QString files = nameList(request.files, filesLeftOut);
    int dumpsLeftOut = 0;
    const QString dumpFiles = request.withDumps ? nameList(dumps(), dumpsLeftOut) : QString();
    QStringList leftOut;
    if (type != request.type)
        leftOut.append(QStringLiteral("the rest of the type"));
    if (filesLeftOut > 0)
        leftOut.append(QStringLiteral("attached files: %1").arg(filesLeftOut));
    if (dumpsLeftOut > 0)
        leftOut.append(QStringLiteral("dump files: %1").arg(dumpsLeftOut));
    return {request.archivePath,
            type,
            notedDescription(request.description, leftOut),
            files,
            flagWord(isReportWritten),
            flagWord(request.withSuiteSettings),
            flagWord(request.withDumps),
            dumpFiles,
            krt::dirs::resources(QStringLiteral(""), nullptr)};
}

void startArchive(const FeedbackRequest &request, KInfoHelp &info)
{
    const QString script = stagedScript(QLatin1String(archiveScript));
    const bool isReportWritten = makeSuiteTemporaryDirectory() && request.withSystemReport;
    if (isReportWritten) {
        const QString report = suiteTemporaryDirectory() + QLatin1String(reportName);
        // One of an earlier version may be readable by others.
        QFile::setPermissions(report, QFile::ReadOwner | QFile::WriteOwner);
        info.writeSysInfoReport(report, ReportSections());
    }
    krt::ksafe::KProcess::StartDetach(script, archiveArguments(request, isReportWritten), QString(),
                                      nullptr);
}

} // namespace OfficeAssiant
