#pragma once

#include "helio/ctl/doctor/doctorprinter.h"

namespace ctl {

/// One compact JSON object a line, flushed at once; docs/doctor.md describes the lines.
class JsonPrinter final : public DoctorPrinter
{
public:
    explicit JsonPrinter(QString locale) : m_locale(std::move(locale)) {}

    void printCheck(const doctor::CheckDefinition &check,
                    const doctor::CheckResult &result) override;
    void printListed(const doctor::CheckDefinition &check) override;
    void printSuite(const suites::Installation &installation, bool isChosen) override;
    void printProblem(const doctor::FileProblem &problem) override;
    void printChange(const QString &repair, const doctor::Change &change) override;
    void printRepair(const helio::RepairOutcome &outcome) override;
    void printEntry(const doctor::JournalEntry &entry) override;
    void printUndone(int journal, const doctor::JournalResult &result) override;
    void printNote(const QString &note) override;
    void printSummary(int checks, int findings, int failed) override;
    bool asks(const QString &) override { return false; }

private:
    QString m_locale;
};

} // namespace ctl
