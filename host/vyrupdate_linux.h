#pragma once

#include <QString>

#include "host/khelioexport.h"

/// The suite's updater library.
namespace vyrupdate_linux {

/// The path of the updater's configuration file (INI) for the updater installed in @p directory,
/// which ends with a slash.
HELIO_EXPORT QString getUpdateCfgPath(const QString &directory);

} // namespace vyrupdate_linux
