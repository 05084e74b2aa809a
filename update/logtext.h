#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The text of a log file, read as UTF-8 up to its first zero byte, with line feeds as line ends.
/// Of more than @p largestText bytes only the first are read: any local user may have written it.
/// Nothing if it cannot be opened or is a pipe.
std::optional<QString> readLogText(const QString &path,
                                   qint64 largestText = qint64(16) * 1024 * 1024);

} // namespace OfficeAssiant
