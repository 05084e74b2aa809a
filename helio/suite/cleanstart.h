#pragma once

#include "suites/installation.h"

namespace helio {

/// Starts the suite with a temporary profile, which goes when it ends. The user's own profile is
/// not touched. Returns why that is not possible; empty if it was started.
QString startClean(const suites::Installation &installation);

} // namespace helio
