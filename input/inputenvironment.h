#pragma once

#include <QByteArray>
#include <QString>

namespace OfficeAssiant {

/// The value that getenv(3) of glibc gives for @p name, also where the name holds a "=": that of
/// the first entry of the environment that starts with the name and a "=". Other C libraries
/// refuse such a name. Empty when there is no such entry.
QByteArray environmentValue(const QByteArray &name);

/// The input method that XMODIFIERS names, in lower case: what follows "@im=" at its beginning.
QString xModifiersInputMethod();

/// The input method that QT_IM_MODULE names, in lower case.
QString qtInputMethod();

} // namespace OfficeAssiant
