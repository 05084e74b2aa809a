#pragma once

#include <QUrl>

namespace OfficeAssiant {

/// Where the installed HTML page @p name is.
QUrl pageFile(const QString &name);

} // namespace OfficeAssiant
