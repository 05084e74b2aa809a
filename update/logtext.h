#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The text of a log file, read as UTF-8 up to its first zero byte and with line feeds as line
/// ends. Nothing when it cannot be opened, is a pipe, or holds more than @p largestText bytes
/// before that byte; the base64 of much more than 512 MiB is more than a text can hold.
std::optional<QString> readLogText(const QString &path,
                                   qint64 largestText = qint64(512) * 1024 * 1024);

} // namespace OfficeAssiant
