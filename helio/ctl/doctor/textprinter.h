#pragma once

#include "helio/ctl/doctor/doctorprinter.h"

namespace ctl {

/// Lines for people, in colours on a terminal.
class TextPrinter final : public DoctorPrinter
{
public:
    TextPrinter(QString locale, bool colours) : m_locale(std::move(locale)), m_colours(colours) {}

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
    bool asks(const QString &question) override;

private:
    enum Colour {
        Plain = 0,
        Red = 31,
        Green = 32,
        Yellow = 33
    };

    QString coloured(const QString &text, Colour colour) const;
    void printFinding(const doctor::Finding &finding) const;
    void printDiff(const QString &diff) const;

    QString m_locale;
    bool m_colours;
};

} // namespace ctl
