#pragma once

#include <QString>

namespace ctl {

/// Whether a process of this user runs a script from @p directory, by itself or through an
/// interpreter.
bool isScriptRunningFrom(const QString &directory);

/// Processes events until no staged script and no program that the library waits for is left
/// running, 30 s at most. The staged files go when this process ends, and a script that has not
/// been read yet would be lost with them. What other threads have reported by then has been
/// delivered. Gives how much is left of that time, in ms.
int waitForLeftoverWork();

} // namespace ctl
