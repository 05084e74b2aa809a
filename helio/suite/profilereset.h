#pragma once

#include "doctor/machine/machine.h"
#include "doctor/model/plan.h"
#include "suites/state/state.h"

namespace helio {

/// Moves everything of the profile but the parts in @p keep to a folder beside it: the suite makes
/// it anew when it starts.
doctor::Plan resetPlan(const suites::State &state, const QStringList &keep,
                       const doctor::Machine &machine);

/// Brings back what the last reset has moved, also after the suite has made new files. Those move
/// to another folder beside it.
doctor::Plan restorePlan(const suites::State &state, const doctor::Machine &machine);

/// Why the profile cannot be changed now; empty if it can.
QString runningProblem(const suites::Installation &installation, const doctor::Machine &machine);

/// Whether everything that the plan moves has been moved.
bool isMade(const doctor::Plan &plan);

} // namespace helio
