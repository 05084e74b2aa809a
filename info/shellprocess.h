#pragma once

#include <QByteArray>
#include <QDeadlineTimer>

#include <optional>

#include <sys/types.h>

namespace OfficeAssiant {

/// What of a command line's process is kept apart from ours.
enum class Apart {
    Group,  ///< so that all of its programs can be ended at once
    Session ///< so that it goes on when this process and its terminal end
};

/// Starts a command line with `sh -c`. It reads nothing and prints to @p output, or to /dev/null
/// if that is -1. Nothing if it cannot be started.
std::optional<pid_t> startShell(const QByteArray &command, Apart apart, int output = -1);

/// Whether a child has ended, or ends before the deadline. It is collected then.
bool hasEnded(pid_t child, QDeadlineTimer deadline = {});

/// Runs a command line in a process group of its own and returns what it prints. When the deadline
/// expires first, kills the group and returns what was read until then. Nothing if it cannot be
/// started.
std::optional<QByteArray> outputOfShell(const QByteArray &command, QDeadlineTimer deadline);

} // namespace OfficeAssiant
