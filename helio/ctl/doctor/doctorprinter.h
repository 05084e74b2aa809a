#pragma once

#include <QString>
#include <QStringList>

#include "doctor/doctor.h"

namespace doctor {
struct JournalEntry;
struct JournalResult;
} // namespace doctor

namespace ctl {

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
};

/// Prints what the doctor says.
class DoctorPrinter
{
public:
    virtual ~DoctorPrinter() = default;
    virtual void printCheck(const doctor::CheckDefinition &check,
                            const doctor::CheckResult &result) = 0;
    virtual void printListed(const doctor::CheckDefinition &check) = 0;
    virtual void printProblem(const doctor::FileProblem &problem) = 0;
    virtual void printChange(const QString &repair, const doctor::Change &change) = 0;
    virtual void printRepair(const RepairOutcome &outcome) = 0;
    virtual void printEntry(const doctor::JournalEntry &entry) = 0;
    virtual void printUndone(int journal, const doctor::JournalResult &result) = 0;
    /// What an earlier, interrupted repair had left and what became of it.
    virtual void printNote(const QString &note) = 0;
    virtual void printSummary(int checks, int findings, int failed) = 0;
    /// Whether the user wants what was printed last. False if nobody can be asked.
    virtual bool asks(const QString &question) = 0;
};

/// "write", "create" and so on, as in the JSON lines.
QString nameOf(doctor::Change::Kind kind);
/// "ok", "finding", "failed" or "skipped".
QString nameOf(doctor::CheckResult::Outcome outcome);
/// "bad", "warning" or "note".
QString nameOf(doctor::State state);
/// The content's change as a diff; empty for changes without content.
QString diffOf(const doctor::Change &change);
/// The command as a line for sh.
QString commandLineOf(const doctor::Change &change);

} // namespace ctl
