#pragma once

#include <QByteArray>
#include <QSet>

namespace helio {

/// The types of the file systems that a search does not enter, separated by blanks: those of the
/// network, which may be slow or gone, and those without files of the user's.
QByteArray unsearchedFileSystems();

/// Where file systems of those types are mounted. Reads /proc/self/mounts.
QSet<QByteArray> unsearchedMountPoints();

} // namespace helio
