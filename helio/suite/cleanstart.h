#pragma once

#include "suites/installation.h"

namespace helio {

/// Where temporary profiles can be, which the suite has to be able to write to.
QString folderOfProfiles(const suites::Installation &installation);

/// Starts the suite with the profile below @p folder.
QStringList commandWithProfile(const suites::Installation &installation, const QString &folder);

/// Starts the suite with a temporary profile, which goes when it ends. The user's own profile is
/// not touched. Returns why that is not possible; empty if it was started.
QString startClean(const suites::Installation &installation);

} // namespace helio
