#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QStringList>

namespace programs {

/// How a program ended, and the beginning of its output.
struct ProgramEnd
{
    enum class Kind {
        NotStarted,
        TimedOut,
        Crashed,
        Exited
    };

    Kind kind = Kind::NotStarted;
    int status = 0; ///< exit status, if it exited
    QByteArray output;
    QByteArray errors;
    QString startFault; ///< why it was not started, as Qt says

    bool hasSucceeded() const { return kind == Kind::Exited && status == 0; }
};

/// Runs a program in a process group of its own, without input and core dumps. The whole group is
/// killed when the time is over, when the program exits, or when a signal ends this process.
ProgramEnd runBounded(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &environment, int timeoutMs);

/// Kills the group of the running program, if any. Safe in a signal handler.
void endRunningProgram();

/// The last line of @p text.
QString lastLine(const QByteArray &text);

} // namespace programs
