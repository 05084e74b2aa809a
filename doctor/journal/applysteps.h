#pragma once

#include <QVector>

#include "doctor/journal/tree/problem.h"
#include "doctor/journal/tree/treestep.h"
#include "doctor/model/plan.h"

namespace doctor {

/// The steps that carry out @p plan, in its order; changes that are already as planned have none.
/// Only reads. A problem if the tree is not as it was when the plan was made, or the plan cannot be
/// carried out.
Problem stepsToApply(const Plan &plan, QVector<TreeStep> &steps);

/// A name for a step's temporary files that nobody can guess.
QByteArray temporaryName();

} // namespace doctor
