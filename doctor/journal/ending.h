#pragma once

#include <QtGlobal>

#include <chrono>

#include "doctor/journal/tree/problem.h"

namespace doctor {

/// A process, and when it was started as in /proc/PID/stat: numbers of processes are used again.
struct ProcessId
{
    qint64 number = 0;
    quint64 start = 0;
};

/// Whether it is one that may be ended: not this program, nor the first process, nor without a
/// start.
Problem checkedForEnding(const ProcessId &process);

/// Asks the process to end, and ends it if it has not after @p patience. No problem if it has ended
/// already, and no signal to another process that has its number now.
Problem endProcess(const ProcessId &process, std::chrono::milliseconds patience);

} // namespace doctor
