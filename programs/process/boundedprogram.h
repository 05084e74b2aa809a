#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QStringList>

namespace standin {

/// How a program ended, and the beginning of what it wrote.
struct ProgramEnd
{
    enum class Kind {
        NotStarted,
        TimedOut,
        Crashed,
        Exited
    };

    Kind kind = Kind::NotStarted;
    int status = 0; ///< of a program that has exited
    QByteArray output;
    QByteArray errors;
    QString startFault; ///< in Qt's words, of a program that was not started

    bool hasSucceeded() const { return kind == Kind::Exited && status == 0; }
};

/// Runs a program in a process group of its own, without input and core dumps. When its time is
/// over the whole group is ended, as it is when the program itself ends or this one is told to.
ProgramEnd runBounded(const QString &program, const QStringList &arguments,
                      const QProcessEnvironment &environment, int timeoutMs);

/// Ends the group of the program that runs now, if any. May be called from a signal handler.
void endRunningProgram();

/// What a program said last.
QString lastLine(const QByteArray &text);

} // namespace standin
