#pragma once

#include <QByteArray>
#include <QList>
#include <QProcessEnvironment>

#include <optional>
#include <vector>

#include <sys/types.h>

namespace helio {

/// A descriptor of this process, and its number in the new program.
struct InheritedDescriptor
{
    int ours;
    int theirs;
};

/// Starts a program, which is looked up in PATH; nothing if it cannot be started. The program
/// inherits @p descriptors and the standard streams, nothing else.
///
/// The file search starts its programs this way and not with QProcess, which cannot pass on further
/// descriptors (a refresh inherits its lock) and forks: that takes longer the larger this process
/// is, and delays its other threads.
std::optional<pid_t> spawnProgram(const QList<QByteArray> &words,
                                  const QProcessEnvironment &environment,
                                  const std::vector<InheritedDescriptor> &descriptors);

/// Waits until a program has ended, and kills it after @p timeoutMs (-1: waits without a bound).
/// Returns its exit status: -1 if a signal ended it, nothing if this process ignores SIGCHLD.
std::optional<int> awaitProgram(pid_t process, int timeoutMs = -1);

} // namespace helio
