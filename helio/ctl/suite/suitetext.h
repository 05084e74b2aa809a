#pragma once

#include <QString>

#include "suites/state/state.h"

namespace ctl {

/// The state of a suite for people, a line each.
QString suiteText(const suites::State &state);

} // namespace ctl
