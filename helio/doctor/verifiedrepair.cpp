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

Verification checkedAgain(const doctor::Doctor &doctor, const QString &check,
                          const Repaired &repaired, const QString &locale)
{
    using State = Verification::State;
    Verification verification;
    doctor.run({check}, locale, [&](const doctor::CheckResult &result) {
        if (result.outcome == doctor::CheckResult::Outcome::Failed)
            verification = {State::Unknown, result.reason};
        else if (std::any_of(result.findings.begin(), result.findings.end(),
                             [&](const doctor::Finding &now) { return remains(now, repaired); }))
            verification.state = State::Remains;
        return true;
    });
    return verification;
}

QString reasonOf(const Verification &verification)
{
    if (verification.state == Verification::State::Unknown)
        return texts::tr("it could not be checked, so it was taken back: %1")
            .arg(verification.reason);
    return verification.reason.isEmpty()
               ? texts::tr("the finding was still there, so it was taken back")
               : verification.reason;
}

} // namespace

RepairOutcome verifiedRepair(doctor::Journal &journal, const doctor::Plan &plan,
                             const Verify &verify)
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
    const Verification verification = verify();
    if (verification.state == Verification::State::Gone) {
        outcome.result = Result::Repaired;
        outcome.reason = verification.reason;
        return outcome;
    }
    const doctor::JournalResult undone = journal.undo(applied.number);
    const bool isUndone = undone.outcome == Outcome::Undone;
    const bool isKnown = verification.state == Verification::State::Remains;
    outcome.result = isKnown && isUndone ? Result::Unchanged : Result::Failed;
    outcome.reason = isUndone ? reasonOf(verification) : undone.reason;
    return outcome;
}

RepairOutcome verifiedRepair(const doctor::Doctor &doctor, doctor::Journal &journal,
                             const doctor::Plan &plan, const Repaired &repaired,
                             const QString &locale)
{
    return verifiedRepair(journal, plan,
                          [&] { return checkedAgain(doctor, plan.check, repaired, locale); });
}

} // namespace helio
