#pragma once

#include <QString>

namespace ctl {

/// Whether a process of this user runs a script in @p directory, directly or by an interpreter.
bool isScriptRunningFrom(const QString &directory);

/// Processes events until no staged script and no program that the library waits for is running,
/// for at most 30 s: the staged files are removed when this process ends, and a script that has not
/// been read yet would be lost. Also delivers what other threads have reported by then. Returns
/// the rest of the 30 s in milliseconds.
int waitForLeftoverWork();

} // namespace ctl
