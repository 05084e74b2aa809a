#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

class QObject;

namespace OfficeAssiant {

/// Runs a shell command line (popen(3)) and gives all its standard output, decoded from the
/// locale's encoding, without one trailing line feed. Empty when it cannot be started; the exit
/// status is not looked at.
QString runCommand(const QString &command);

/// Runs a shell command line while SIGCHLD has its default action, so that a handler of the host
/// does not take the child's exit status, and gives all its standard output as it is. Nothing
/// when it cannot be started; SIGCHLD keeps the default action then.
std::optional<QByteArray> readCommandOutput(const QString &command);

/// Runs a shell command line and does not wait for it; what it prints is thrown away. The event
/// loop collects the ended child for as long as @p owner lives.
void startCommand(const QString &command, QObject *owner);

} // namespace OfficeAssiant
