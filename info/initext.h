#pragma once

#include <QString>
#include <QVariant>

namespace OfficeAssiant {

/// The text of a value that QSettings read from an INI file that another program wrote, up to its
/// first NUL. Without a codec QSettings makes one character of every raw byte; where those bytes
/// are text in the locale's encoding, they are decoded as such.
QString decodedIniText(const QVariant &value);

} // namespace OfficeAssiant
