#include "feedback/feedbackarchive.h"

#include <QDir>
#include <QFile>
#include <QRegExp>

#include "dump/dumpfiles.h"
#include "host/krt.h"
#include "info/kinfohelp.h"
#include "plugin/config/scriptstaging.h"
#include "plugin/config/suitefiles.h"

namespace OfficeAssiant {

namespace {

constexpr char archiveScript[] = "archivepackage.sh";
constexpr char reportName[] = "/sysinfo.txt";
constexpr QLatin1Char listSeparator(';');
/// The kernel refuses longer arguments (MAX_ARG_STRLEN includes the zero byte).
constexpr int longestArgument = 128 * 1024 - 1;

QString flagWord(bool flag)
{
    return flag ? QStringLiteral("true") : QStringLiteral("false");
}

QString fileList(const QStringList &files)
{
    QString list;
    for (const QString &file : files) {
        if (!file.isEmpty())
            list += listSeparator + file;
    }
    return list;
}

/// The beginning of @p text that fits in one argument; a longer argument would prevent the archive.
QString fittingArgument(QString text)
{
    constexpr int mostBytesOfOneCharacter = 4;
    for (;;) {
        const int excess = QFile::encodeName(text).size() - longestArgument;
        if (excess <= 0)
            return text;
        text.chop((excess + mostBytesOfOneCharacter - 1) / mostBytesOfOneCharacter);
        if (text.at(text.size() - 1).isHighSurrogate())
            text.chop(1);
    }
}

/// The dumps and other files of a crash: a name has to match in part only. Ends before the list
/// gets too long for one argument, which would prevent the archive.
QString dumpList()
{
    const QString directory = dumpDirectory();
    const QRegExp pattern = dumpFilePattern();
    const QStringList files = QDir(directory).entryList(QDir::Files, QDir::Unsorted);
    QString list;
    int length = 0;
    for (const QString &file : files) {
        if (pattern.indexIn(file) < 0)
            continue;
        const QString entry = listSeparator + directory + QLatin1Char('/') + file;
        length += QFile::encodeName(entry).size();
        if (length > longestArgument)
            break;
        list += entry;
    }
    return list;
}

} // namespace

QStringList archiveArguments(const FeedbackRequest &request, bool isReportWritten)
{
    return {request.archivePath,
            request.type,
            fittingArgument(request.description),
            fileList(request.files),
            flagWord(isReportWritten),
            flagWord(request.withSuiteSettings),
            flagWord(request.withDumps),
            request.withDumps ? dumpList() : QString(),
            krt::dirs::resources(QStringLiteral(""), nullptr)};
}

void startArchive(const FeedbackRequest &request, KInfoHelp &info)
{
    const QString script = stagedScript(QLatin1String(archiveScript));
    const bool isReportWritten = makeSuiteTemporaryDirectory() && request.withSystemReport;
    if (isReportWritten)
        info.writeSysInfoReport(suiteTemporaryDirectory() + QLatin1String(reportName),
                                ReportSections());
    krt::ksafe::KProcess::StartDetach(script, archiveArguments(request, isReportWritten), QString(),
                                      nullptr);
}

} // namespace OfficeAssiant
