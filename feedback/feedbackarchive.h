#pragma once

#include <QString>
#include <QStringList>

namespace OfficeAssiant {

class KInfoHelp;

/// What the user wants to send.
struct FeedbackRequest
{
    QString archivePath; ///< as chosen; the archive's suffix is added to it
    QString type;
    QString description; ///< cut off where the script cannot be given all of it
    QStringList files;   ///< sample and attachments; empty ones are left out
    bool withSystemReport = false;
    bool withSuiteSettings = false;
    bool withDumps = false;
};

/// The archiving script's arguments. @p isReportWritten says whether the system report is there.
QStringList archiveArguments(const FeedbackRequest &request, bool isReportWritten);

/// Starts to build the archive, after writing the system report with @p info where it is wanted.
void startArchive(const FeedbackRequest &request, KInfoHelp &info);

} // namespace OfficeAssiant
