#pragma once

#include <QByteArray>

#include "doctor/machine/machine.h"

namespace helio {

/// The section "suite" of the system report: what is known of the installations and of the state
/// of the one that is looked after, in the form of the other sections.
QByteArray suiteSection(const doctor::Machine &machine);

} // namespace helio
