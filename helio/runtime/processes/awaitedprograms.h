#pragma once

#include "host/khelioexport.h"

namespace helio {

/// How many programs the host is running for a caller that waits for their end
/// (krt::ksafe::KProcess::Execute).
HELIO_EXPORT int awaitedProgramCount();

/// Ends those programs, and each that is started later, once @p graceMs have passed, so that the
/// callers go on. For use when the host process ends.
HELIO_EXPORT void endAwaitedPrograms(int graceMs = 0);

} // namespace helio
