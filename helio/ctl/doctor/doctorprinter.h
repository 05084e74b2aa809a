#pragma once

#include <QString>

#include "doctor/doctor.h"
#include "suites/installation.h"

namespace doctor {
struct JournalEntry;
struct JournalResult;
} // namespace doctor

namespace helio {
struct RepairOutcome;
}

namespace ctl {

/// Prints what the doctor says.
class DoctorPrinter
{
public:
    virtual ~DoctorPrinter() = default;
    virtual void printCheck(const doctor::CheckDefinition &check,
                            const doctor::CheckResult &result) = 0;
    virtual void printListed(const doctor::CheckDefinition &check) = 0;
    /// @param isChosen it is the one that is looked after
    virtual void printSuite(const suites::Installation &installation, bool isChosen) = 0;
    virtual void printProblem(const doctor::FileProblem &problem) = 0;
    virtual void printChange(const QString &repair, const doctor::Change &change) = 0;
    virtual void printRepair(const helio::RepairOutcome &outcome) = 0;
    virtual void printEntry(const doctor::JournalEntry &entry) = 0;
    virtual void printUndone(int journal, const doctor::JournalResult &result) = 0;
    /// What an earlier, interrupted repair had left and what became of it.
    virtual void printNote(const QString &note) = 0;
    virtual void printSummary(int checks, int findings, int failed) = 0;
    /// Whether the user wants what was printed last. False if nobody can be asked.
    virtual bool asks(const QString &question) = 0;
};

} // namespace ctl
