#pragma once

#include <QStringList>
#include <QVector>

#include <optional>

#include "doctor/machine/machine.h"
#include "doctor/model/plan.h"

namespace helio {

/// A repair that a command of the library makes, or a task of the window in its place:
/// docs/commands.md has what each command does.
struct CommandRepair
{
    /// The first word of the ids of the checks that judge the same.
    QString subject;
    QString command;
    /// All that it may change.
    QStringList paths;
    /// What the desktop's programs make of that for themselves. It is taken back with it, and
    /// nobody needs to see it.
    QStringList derived;
    /// What it will change, as far as that can be known before.
    QVector<doctor::Change> changes;
    /// Their findings are what it is for.
    QStringList checks;
};

/// The folder of the desktop as plugin/config/parts/desktopfolder.bash finds it, which goes by the
/// user's name. Unlike there it is not made.
QString desktopFolder(doctor::Machine machine);

/// Only reads. Nothing for a command that repairs nothing.
std::optional<CommandRepair> commandRepair(const QString &command, const doctor::Machine &machine);

} // namespace helio
