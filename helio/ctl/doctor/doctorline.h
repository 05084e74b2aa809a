#pragma once

#include <QString>
#include <QStringList>

namespace ctl {

/// The parsed arguments of "assistantctl doctor".
struct DoctorLine
{
    enum Mode {
        Check,
        List,
        Choose,
        Fix,
        Undo,
        History,
        Lint,
        ShowText ///< help: print `text` and end
    };

    /// What is wrong with the arguments; empty if nothing is. Nothing else counts then.
    QString fault;
    Mode mode = Check;
    QString text;
    /// Ids of checks; all if empty.
    QStringList checks;
    /// The repair to take where a finding has several; the recommended one if empty.
    QString repair;
    /// The file to lint.
    QString file;
    /// The folder of the suite to choose.
    QString suite;
    /// The journal's number to undo; 0 is the latest.
    int journal = 0;
    bool json = false;
    bool yes = false;
    bool dryRun = false;
};

/// Parses what follows "doctor".
DoctorLine parseDoctorLine(const QStringList &arguments);

} // namespace ctl
