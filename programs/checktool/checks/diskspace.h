#pragma once

#include <QString>

#include <sys/statvfs.h>

namespace programs {

class Findings;

/// Reports the free space and free files of the disk with the directory @p path. @p name says what
/// the directory is for.
void reportDisk(const QString &name, const QString &path, const struct statvfs &disk,
                Findings &findings);

} // namespace programs
