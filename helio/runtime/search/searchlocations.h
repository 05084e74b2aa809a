#pragma once

#include <QString>
#include <QStringList>

namespace helio {

/// The directories to search: the setting "searchRoots" (absolute paths separated by commas, "~"
/// for the user's home), else the user's home. Without symbolic links, without those that
/// do not exist or lie in another one.
QStringList searchRoots();

/// Where the databases of the search lie, private to the user: "orvane-office-assistant" in
/// the user's cache directory. It is not searched itself, nor is it necessarily there.
QString searchDatabaseDirectory();

/// Whether a path lies below a directory. Both are absolute and without trailing slash.
bool liesBelow(const QString &path, const QString &directory);

} // namespace helio
