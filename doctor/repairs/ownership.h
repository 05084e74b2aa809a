#pragma once

#include <QString>

#include <optional>

#include <sys/stat.h>

#include "doctor/machine/machine.h"

namespace doctor {

/// What lstat(2) tells of @p path, which is one on the disk; nothing if it is not there.
std::optional<struct stat> stateOf(const QString &path);

/// Whether what stands at @p path, on the disk, is this user's to change: it is in the home
/// directory, or in a directory that only this user can change.
bool isOurs(const Machine &machine, const QString &path);

} // namespace doctor
