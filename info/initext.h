#pragma once

#include <QString>
#include <QVariant>

namespace OfficeAssiant {

/// The text, up to its first NUL, of a value that QSettings read from another program's INI file.
/// Without a codec QSettings turns every raw byte into a character; if these bytes are valid text
/// in the locale's encoding, they are decoded as such.
QString decodedIniText(const QVariant &value);

} // namespace OfficeAssiant
