#pragma once

#include "doctor/why/denied/pathwalk.h"

namespace doctor {

/// Judges the last component of a way, open as @p descriptor: its rights, and what else the kernel
/// asks there. Fills the obstacle and the decision of @p passage.
void judgeEnding(Passage &passage, int index, int descriptor, Access access,
                 const Credentials &who);

} // namespace doctor
