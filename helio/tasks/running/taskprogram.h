#pragma once

#include <QByteArray>
#include <QProcessEnvironment>
#include <QStringList>

#include <functional>

#include "helio/tasks/running/taskrun.h"

namespace helio {

/// A program to run for a task, without a shell.
struct TaskProgram
{
    QString program;
    QStringList arguments;
    QByteArray input{};
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

/// How a task's program has ended.
struct ProgramResult
{
    bool isCancelled = false;
    /// Whether it came to its own end, with whatever status.
    bool hasExited = false;
    /// Why it did not end well, for people; empty if its status was 0.
    QString fault;
    QByteArray output;
};

/// Runs a program in a process group of its own, which ends with a cancelled run: SIGTERM, and
/// SIGKILL for what is left. It ends, too, with the thread that runs it.
ProgramResult runProgram(const TaskProgram &program, const std::function<bool()> &isCancelled);

/// A command's answer from a process of its own.
struct CommandResult
{
    bool isCancelled = false;
    /// Why there is no envelope, for people.
    QString fault;
    QJsonObject envelope;
};

/// Sends one command of the library in a process of the command line.
/// @p choices answer its dialogs
CommandResult sendCommand(const TaskRun &run, const QString &command, const QJsonObject &arguments,
                          const QStringList &choices = {});

/// Whether the command line is there, which most tasks need.
bool canSendCommands(const QString &programs);

} // namespace helio
