#pragma once

#include <QString>

#include <sys/statvfs.h>

namespace standin {

class Findings;

/// Says how much room the disk of a directory has, for bytes and for files. @p name is what the
/// directory is for.
void reportDisk(const QString &name, const QString &path, const struct statvfs &disk,
                Findings &findings);

} // namespace standin
