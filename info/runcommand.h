#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class QObject;

namespace OfficeAssiant {

/// Runs a shell command line (popen(3)) and returns its standard output, decoded from the
/// locale's encoding, without one trailing line feed. Empty if it cannot be started; the exit
/// status is ignored.
QString runCommand(const QString &command);

/// Runs a shell command line and returns its standard output unchanged. SIGCHLD has its default
/// action meanwhile, so that a handler of the host does not take the child's exit status. Nothing
/// if it cannot be started; SIGCHLD keeps the default action then.
std::optional<QByteArray> readCommandOutput(const QString &command);

/// Starts a shell command line and discards its output. The event loop collects the ended child for
/// as long as @p owner lives.
void startCommand(const QString &command, QObject *owner);

} // namespace OfficeAssiant
