#pragma once

#include "host/khelioexport.h"

namespace helio {

/// Reads and writes text as UTF-8 where the environment names no locale; otherwise file names
/// beyond ASCII would be lost. To be called first in main().
HELIO_EXPORT void assumeUtf8WithoutLocale();

} // namespace helio
