#pragma once

#include <QString>
#include <QVariant>

namespace OfficeAssiant {

/// The text, up to its first NUL, of a value that QSettings read as raw bytes from another
/// program's INI file, decoded from the locale's encoding.
QString localIniText(const QVariant &value);

/// The same, but bytes that are not valid text in that encoding stay as QSettings read them.
QString readableIniText(const QVariant &value);

} // namespace OfficeAssiant
