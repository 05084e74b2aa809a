#pragma once

#include "host/khelioexport.h"

namespace helio {

/// Makes the suite's directory in the user's home if it is missing, as the suite does when it is
/// first started. A directory that the configuration names is never made.
HELIO_EXPORT void makeDefaultSuiteHome();

} // namespace helio
