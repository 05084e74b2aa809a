#pragma once

#include <QString>
#include <QStringList>

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

/// Applies the plan and checks again. A repair after which something that it is for is still there
/// is taken back.
RepairOutcome verifiedRepair(const doctor::Doctor &doctor, doctor::Journal &journal,
                             const doctor::Plan &plan, const Repaired &repaired,
                             const QString &locale);

} // namespace helio
