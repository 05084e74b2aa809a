#pragma once

#include <QProcess>

#include <csignal>

#include <unistd.h>

#include "qtversion/qtversion.h"

namespace helio {

/// A program with its standard streams at /dev/null: it reads nothing of ours, and whoever reads
/// our output does not have to wait for its end. It has a process group of its own, so that its
/// own programs can be ended with it.
class QuietProcess : public qtversion::PreparedProcess
{
public:
    QuietProcess(const QString &program, const QStringList &arguments)
    {
        setProgram(program);
        setArguments(arguments);
        setStandardInputFile(nullDevice());
        setStandardOutputFile(nullDevice());
        setStandardErrorFile(nullDevice());
    }

    void killGroup() { ::kill(static_cast<pid_t>(-processId()), SIGKILL); }

protected:
    /// A detached program has a session of its own already.
    void prepare() override { ::setpgid(0, 0); }
};

} // namespace helio
