#pragma once

#include <QString>
#include <QStringList>

namespace OfficeAssiant {

class KInfoHelp;

/// What the user wants to send.
struct FeedbackRequest
{
    QString archivePath; ///< as chosen; the archive's suffix is appended
    QString type;
    QString description;
    QStringList files; ///< sample and attachments; empty entries are skipped
    bool withSystemReport = false;
    bool withSuiteSettings = false;
    bool withDumps = false;
};

/// The archiving script's arguments. What is too long for one argument is left out, and the
/// description says so. @p isReportWritten: whether there is a system report.
QStringList archiveArguments(const FeedbackRequest &request, bool isReportWritten);

/// Writes the system report with @p info if it is wanted, then starts to build the archive.
void startArchive(const FeedbackRequest &request, KInfoHelp &info);

} // namespace OfficeAssiant
