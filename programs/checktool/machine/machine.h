#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace standin {

/// The machine that is checked, as far as checks depend on where things are.
struct Machine
{
    QProcessEnvironment environment;
    QString home;
    QString suiteHome;          ///< the suite's directory of the user
    QString officeDirectory;    ///< the suite's programs and libraries
    QString temporaryDirectory; ///< where programs put temporary files
    QString probeProgram;       ///< tries out what may hang or crash
    int probeMs = 8000;         ///< how long it may take
    QString root;               ///< stands before the system's own paths; empty is the real one

    /// The machine and the user that run this program.
    static Machine current();

    QString variable(const char *name) const;
};

} // namespace standin
