#pragma once

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>

#include <optional>
#include <vector>

#include <sys/types.h>

namespace helio {

/// A descriptor of this process that a new program gets under a number of its own.
struct InheritedDescriptor
{
    int ours;
    int theirs;
};

/// Starts a program that is found in PATH; nothing when it cannot be started. Of this process's
/// descriptors it gets the standard streams and what @p descriptors says. Unlike a fork, this takes
/// the same time however large the process is, and the other threads do not feel it.
std::optional<pid_t> spawnProgram(const QList<QByteArray> &words,
                                  const QProcessEnvironment &environment,
                                  const std::vector<InheritedDescriptor> &descriptors);

/// Waits for the end of a program, with a bound in milliseconds or -1 for none; kills it when that
/// is over. Gives its exit status: -1 when a signal ended it, nothing when the process
/// ignores the end of its children.
std::optional<int> awaitProgram(pid_t process, int timeoutMs = -1);

} // namespace helio
