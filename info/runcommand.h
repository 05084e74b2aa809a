#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

#include <sys/types.h>

class QObject;

namespace OfficeAssiant {

/// How long a command may take. After that its process group is killed and what was read until then
/// is its output.
constexpr int longestCommandMs = 60000;

/// Runs a shell command line (`sh -c`) in a process group of its own, without input, and returns
/// its standard output, decoded from the locale's encoding, without one trailing line feed. Empty
/// if it cannot be started; the exit status is ignored.
QString runCommand(const QString &command, int longestMs = longestCommandMs);

/// Runs a shell command line and returns its standard output unchanged. SIGCHLD has its default
/// action meanwhile, so that a handler of the host does not take the child's exit status. Nothing
/// if it cannot be started; SIGCHLD keeps the default action then.
std::optional<QByteArray> readCommandOutput(const QString &command,
                                            int longestMs = longestCommandMs);

/// Starts a shell command line in a session of its own and discards its output. It may outlive this
/// process. The event loop collects the ended child for as long as @p owner lives. Returns its
/// number; nothing if it cannot be started.
std::optional<pid_t> startCommand(const QString &command, QObject *owner);

} // namespace OfficeAssiant
