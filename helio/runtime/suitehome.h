#pragma once

#include "host/khelioexport.h"

namespace helio {

/// Makes the suite's directory of the current user if it is missing, as the suite itself does at
/// its first start. A directory that the configuration names is left to whoever named it.
HELIO_EXPORT void makeDefaultSuiteHome();

} // namespace helio
