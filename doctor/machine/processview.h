#pragma once

#include "doctor/machine/machine.h"

namespace doctor {

/// Whether a process of the user works with the user's home: one in a container, or started with
/// another home, has settings and documents of its own. One that has ended does not. True where
/// that cannot be told.
bool seesHome(const Machine &machine, qint64 process);

} // namespace doctor
