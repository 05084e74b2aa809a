#pragma once

#include <QString>

class QObject;

namespace ctl {

/// Makes programs whose parent ends children of this process, so that it finds all that it has
/// started, and collects those that have ended for as long as @p owner lives.
void adoptLeftovers(QObject *owner);

/// Whether a program that this process has started runs a script in @p directory, directly or by an
/// interpreter.
bool isScriptRunningFrom(const QString &directory);

/// Processes events until no staged script and no program that the library waits for is running,
/// for at most 30 s, or 2 s after a termination signal: the staged files are removed when this
/// process ends, and a script that has not been read yet would be lost. Also delivers what other
/// threads have reported by then. Returns the rest of that time in milliseconds.
int waitForLeftoverWork();

/// Sends a signal to the programs that a command waits for and to the staged scripts that run, not
/// to a viewer or recorder that was opened. May be called from any thread.
void endStartedWork(int signal);

} // namespace ctl
