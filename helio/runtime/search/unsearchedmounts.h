#pragma once

#include <QByteArray>
#include <QSet>

namespace helio {

/// The file system types that are not searched, separated by spaces: network file systems, which
/// may be slow or gone, and those that hold no files of the user's.
QByteArray unsearchedFileSystems();

/// The mount points of file systems of those types. Reads /proc/self/mounts; empty if it cannot.
QSet<QByteArray> unsearchedMountPoints();

} // namespace helio
