#pragma once

#include <QString>
#include <QStringList>

#include <functional>

#include "doctor/doctor.h"

namespace doctor {
class Journal;
}

namespace helio {

/// How a repair has ended.
struct RepairOutcome
{
    enum class Result {
        Repaired,
        Unchanged, ///< it had nothing to change, or did not help and was taken back
        Refused,
        Failed,
        Planned,
    };

    QString check;
    QString repair;
    Result result = Result::Refused;
    /// The journal's number, 0 if it is not in there.
    int journal = 0;
    QString reason;
    /// What an interrupted repair before had left, and what stayed as it was.
    QStringList notes;
};

/// The findings that one plan repairs.
struct Repaired
{
    QVector<doctor::Finding> findings;
    /// What else the same check had found: that may stay.
    QVector<doctor::Finding> others;
};

/// What a look after a repair has shown.
struct Verification
{
    enum class State {
        Gone,
        Remains,
        Unknown, ///< the look has failed
    };

    State state = State::Gone;
    /// For people; may be empty unless the state is unknown.
    QString reason;
};
using Verify = std::function<Verification()>;

/// Applies the plan and verifies it. A repair that has not helped is taken back.
RepairOutcome verifiedRepair(doctor::Journal &journal, const doctor::Plan &plan,
                             const Verify &verify);

/// The same for findings of a check, which runs again.
RepairOutcome verifiedRepair(const doctor::Doctor &doctor, doctor::Journal &journal,
                             const doctor::Plan &plan, const Repaired &repaired,
                             const QString &locale);

} // namespace helio
