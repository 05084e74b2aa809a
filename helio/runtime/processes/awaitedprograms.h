#pragma once

#include "host/khelioexport.h"

namespace helio {

/// The number of programs whose end a caller is waiting for (krt::ksafe::KProcess::Execute).
HELIO_EXPORT int awaitedProgramCount();

/// Kills those programs, and any that is started later, after @p graceMs, so that their callers
/// return. Call it when the shell ends.
HELIO_EXPORT void endAwaitedPrograms(int graceMs = 0);

} // namespace helio
