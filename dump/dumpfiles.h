#pragma once

#include <QDateTime>
#include <QRegExp>
#include <QString>

namespace OfficeAssiant {

/// The directory into which the suite writes its crash dumps.
QString dumpDirectory();

/// What the names of crash dumps look like.
QRegExp dumpFilePattern();

/// The path of the newest crash dump by modification time; null when there is none.
QString newestDumpPath();

/// Whether a file with that creation time counts as recent at the time @p now: one from the past
/// does, however old it is, and one whose clock is up to half an hour ahead.
bool hasRecentStamp(const QDateTime &created, const QDateTime &now);

} // namespace OfficeAssiant
