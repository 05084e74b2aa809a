#pragma once

#include "doctor/probes/probe.h"

namespace doctor {

/// What a check of a suite knows of the installation that is looked after; empty without one.
Values valuesOfSuite(const QString &suite, const Looking &looking);

} // namespace doctor
