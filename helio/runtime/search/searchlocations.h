#pragma once

#include <QString>
#include <QStringList>

namespace helio {

/// The directories to search: the setting "searchRoots" (absolute paths separated by commas, "~"
/// for the user's home), else the user's home. Symbolic links are resolved; directories that do
/// not exist, or are inside another one, are left out.
QStringList searchRoots();

/// The directory of the search's databases: "orvane-office-assistant" in the user's cache
/// directory. It may not exist yet, and is not searched.
QString searchDatabaseDirectory();

/// Whether @p path is below @p directory. Both are absolute and have no trailing slash.
bool liesBelow(const QString &path, const QString &directory);

} // namespace helio
