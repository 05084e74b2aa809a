#pragma once

#include <QJsonArray>
#include <QJsonObject>

namespace OfficeAssiant {

/// The ten processes that use the most processor time, in the form of the page's tables: one object
/// whose members "1", "2", … are the lines "pid user memory% cpu% command" of top(1).
QJsonArray heaviestProcessesByCpu();

/// The same for memory.
QJsonArray heaviestProcessesByMemory();

/// The machine's memory (free(1)): "percentage" in use and "all" in GiB, as text with six
/// significant digits.
QJsonObject memoryUse();

/// memoryUse() of the text "total used", in KiB.
QJsonObject memoryUseOf(const QString &figures);

} // namespace OfficeAssiant
