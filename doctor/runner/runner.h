#pragma once

#include <functional>

#include "doctor/format/checkdefinition.h"

namespace doctor {

/// How a check has ended.
struct CheckResult
{
    enum class Outcome {
        Ok,
        Found,
        Failed,
        Skipped
    };

    QString check;
    Outcome outcome = Outcome::Ok;
    double seconds = 0;
    /// Why it failed or was skipped; for people.
    QString reason;
    QVector<Finding> findings;
};

/// Called on the thread that asked, in the order in which checks end. False stops: what has not
/// begun is then left out.
using ResultHandler = std::function<bool(const CheckResult &)>;

/// One check, on this thread; its limit bounds what can be stopped.
CheckResult runCheck(const CheckDefinition &check, const Machine &machine, Facts &facts,
                     const QString &locale);

/// Runs all checks, several at a time, and returns when each has ended or was given up. One that
/// takes longer than its limit is given up half a second after it and reported as failed; its
/// thread is left behind if the kernel does not let it go.
void runChecks(const QVector<CheckDefinition> &checks, const Machine &machine,
               const QString &locale, const ResultHandler &handle);

} // namespace doctor
