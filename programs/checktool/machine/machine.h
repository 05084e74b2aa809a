#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace programs {

/// The checked machine: its environment and directories.
struct Machine
{
    QProcessEnvironment environment;
    QString home;
    QString suiteHome;          ///< the user's directory of the suite
    QString officeDirectory;    ///< programs and libraries of the suite
    QString temporaryDirectory; ///< where programs put temporary files
    QString probeProgram;       ///< runs what may hang or crash
    int probeMs = 8000;         ///< its time limit
    QString root;               ///< prefix of system paths; empty on a real machine

    /// The machine and user that run this program.
    static Machine current();

    QString variable(const char *name) const;
};

} // namespace programs
