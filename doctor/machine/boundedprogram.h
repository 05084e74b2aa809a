#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

#include "doctor/machine/deadline.h"

namespace doctor {

/// What a program wrote, or why it did not end well.
struct ProgramOutput
{
    std::optional<QByteArray> output;
    QString problem;
};

/// The path of a program that may be run, among the system's directories only: a program in the
/// user's own directories is never taken for one of the system's. Empty if it is not there.
QString systemProgram(const QString &name);

/// Runs one of the programs that may be asked something, without a shell, input, home directory or
/// a translated language. It is killed with its children at the deadline, or when it writes more
/// than 1 MiB to its output and its errors, which are answered together.
ProgramOutput runSystemProgram(const QString &name, const QStringList &arguments,
                               const Deadline &deadline);

} // namespace doctor
