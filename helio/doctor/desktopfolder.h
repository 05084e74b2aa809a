#pragma once

#include <QString>

#include "doctor/machine/machine.h"

namespace helio {

/// The folder of the desktop as plugin/config/parts/desktopfolder.bash finds it, which goes by the
/// user's name. Unlike there it is not made.
QString desktopFolder(doctor::Machine machine);

} // namespace helio
