#pragma once

#include <QString>

#include <optional>

namespace OfficeAssiant {

/// The text of a log file, read as UTF-8 up to its first zero byte and with line feeds as line
/// ends. Nothing when it cannot be opened, is a pipe, or holds more than 512 MiB before that byte,
/// which is as much as the base64 of a text can carry.
std::optional<QString> readLogText(const QString &path);

} // namespace OfficeAssiant
