#pragma once

#include <QByteArray>

#include "doctor/model/descriptor.h"
#include "doctor/why/denied/pathwalk.h"

namespace doctor {

/// Empty if it cannot be read.
QByteArray linkTarget(int directory, const QByteArray &name);

/// Opens a name only to look at it; a link as such. What is mounted on demand gets mounted.
Descriptor openedAt(int directory, const QByteArray &name);

/// Fills in all but the path. Returns 0 or an errno.
int inspect(int descriptor, Component &component);

} // namespace doctor
