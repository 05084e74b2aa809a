#pragma once

#include <QByteArray>
#include <QString>

namespace OfficeAssiant {

/// The value of the first entry in the environment that starts with @p name and a "=", as glibc's
/// getenv(3) finds it. The name itself may contain a "=", which other C libraries refuse. Empty if
/// there is no such entry.
QByteArray environmentValue(const QByteArray &name);

/// The input method that XMODIFIERS names, in lower case: what follows "@im=" at its beginning.
QString xModifiersInputMethod();

/// The input method that QT_IM_MODULE names, in lower case.
QString qtInputMethod();

} // namespace OfficeAssiant
