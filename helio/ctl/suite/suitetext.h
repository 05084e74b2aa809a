#pragma once

#include <QString>

#include "helio/suite/starttime.h"
#include "suites/state/state.h"

namespace ctl {

/// The state of a suite for people, a line each.
QString suiteText(const suites::State &state);
/// How long it takes to start, and what the profile's part of it is.
QString startTimesText(const helio::StartTimes &times);

} // namespace ctl
