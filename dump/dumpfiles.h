#pragma once

#include <QDateTime>
#include <QString>

namespace OfficeAssiant {

/// The directory into which the suite writes its crash dumps.
QString dumpDirectory();

bool isDumpName(const QString &name);
/// Whether part of @p name is the name of a crash dump.
bool containsDumpName(const QString &name);

/// The path of the newest crash dump by modification time; empty if there is none. A name that is
/// invalid in the locale's encoding has U+FFFD there, and the path leads nowhere.
QString newestDumpPath();

/// Whether a file with that creation time counts as recent at the time @p now: any time in the past
/// does, and any less than half an hour in the future.
bool hasRecentStamp(const QDateTime &created, const QDateTime &now);

} // namespace OfficeAssiant
