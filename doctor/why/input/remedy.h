#pragma once

#include "doctor/model/plan.h"
#include "doctor/why/input/input.h"

namespace doctor {

/// Gives the variable that a report is about the value that it should have.
struct InputRemedy
{
    /// Of the user's files, or one command for the administrator.
    QVector<Change> changes;
    /// The line as it will be.
    Setting line;
    bool isOwn = true;
};

/// Changes the one line that set the variable, or adds one where none does. Nothing where that line
/// is not known, or the cause is no variable.
std::optional<InputRemedy> remedyFor(const Machine &machine, const InputReport &report);

/// Whether the session will read the line as the remedy wants it. What runs keeps the old value.
bool isInForce(const Machine &machine, const InputReport &report, const InputRemedy &remedy);

} // namespace doctor
