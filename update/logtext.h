#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The text of a log file, read as UTF-8 up to its first zero byte, with line feeds as line ends.
/// Nothing if it cannot be opened, is a pipe, or has more than @p largestText bytes before that
/// byte: the base64 of much more than 512 MiB does not fit in a QString.
std::optional<QString> readLogText(const QString &path,
                                   qint64 largestText = qint64(512) * 1024 * 1024);

} // namespace OfficeAssiant
