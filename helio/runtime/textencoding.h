#pragma once

#include "host/khelioexport.h"

namespace helio {

/// Uses UTF-8 where the environment sets no locale, so that file names beyond ASCII are not
/// damaged. Call it first in main().
HELIO_EXPORT void assumeUtf8WithoutLocale();

} // namespace helio
