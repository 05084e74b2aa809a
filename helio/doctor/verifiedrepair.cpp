#include "helio/doctor/verifiedrepair.h"

#include <algorithm>

#include "doctor/journal/journal.h"
#include "texts/texts.h"

namespace helio {

namespace {

bool isSamePlace(const doctor::Finding &one, const doctor::Finding &other)
{
    const auto path = [](const doctor::Finding &finding) {
        return finding.where.isEmpty() ? QString() : finding.where.first().path;
    };
    return path(one) == path(other);
}

/// Whether a finding of the second look is what the repair was for. Several findings may be in one
/// file: those known before that the repair is not for do not count.
bool remains(const doctor::Finding &now, const Repaired &repaired)
{
    const auto isSameText = [&now](const doctor::Finding &known) { return known.text == now.text; };
    const auto isThere = [&now](const doctor::Finding &known) { return isSamePlace(known, now); };
    return std::none_of(repaired.others.begin(), repaired.others.end(), isSameText) &&
           std::any_of(repaired.findings.begin(), repaired.findings.end(), isThere);
}

/// Whether the repair has helped; @p unverified says why that is not known.
bool isGone(const doctor::Doctor &doctor, const QString &check, const Repaired &repaired,
            const QString &locale, QString &unverified)
{
    bool isThere = false;
    doctor.run({check}, locale, [&](const doctor::CheckResult &result) {
        if (result.outcome == doctor::CheckResult::Outcome::Failed)
            unverified = result.reason;
        isThere = std::any_of(result.findings.begin(), result.findings.end(),
                              [&](const doctor::Finding &now) { return remains(now, repaired); });
        return true;
    });
    return !isThere && unverified.isEmpty();
}

} // namespace

RepairOutcome verifiedRepair(const doctor::Doctor &doctor, doctor::Journal &journal,
                             const doctor::Plan &plan, const Repaired &repaired,
                             const QString &locale)
{
    using Outcome = doctor::JournalResult::Outcome;
    using Result = RepairOutcome::Result;
    const doctor::JournalResult applied = journal.apply(plan);
    RepairOutcome outcome{plan.check,     plan.repair,    Result::Failed,
                          applied.number, applied.reason, applied.notes};
    if (applied.outcome != Outcome::Applied) {
        outcome.result = applied.outcome == Outcome::Refused ? Result::Refused : Result::Failed;
        return outcome;
    }
    QString unverified;
    if (isGone(doctor, plan.check, repaired, locale, unverified)) {
        outcome.result = Result::Repaired;
        return outcome;
    }
    const doctor::JournalResult undone = journal.undo(applied.number);
    const bool isUndone = undone.outcome == Outcome::Undone;
    outcome.result = unverified.isEmpty() && isUndone ? Result::Unchanged : Result::Failed;
    outcome.reason =
        !isUndone ? undone.reason
        : unverified.isEmpty()
            ? texts::tr("the finding was still there, so it was taken back")
            : texts::tr("it could not be checked, so it was taken back: %1").arg(unverified);
    return outcome;
}

} // namespace helio
