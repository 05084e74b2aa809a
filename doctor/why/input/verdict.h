#pragma once

#include "doctor/why/input/input.h"

namespace doctor {

/// Finds the first cause in what was read; sets cause, text, variable, what it should be, and the
/// plug-in.
void decide(const Machine &machine, InputReport &report);

} // namespace doctor
