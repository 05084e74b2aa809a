#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

#include "doctor/machine/machine.h"

namespace doctor {

/// The line of /proc/PID/stat; see proc(5).
struct ProcessStat
{
    /// The short name of the kernel, which may contain anything.
    QByteArray name;
    /// The fields from the third on.
    QList<QByteArray> rest;

    /// A field by its number in proc(5), from 3 on; empty if it is not there.
    QByteArray field(int number) const { return rest.value(number - 3); }
};

/// Nothing for a process that has ended.
std::optional<ProcessStat> processStat(const Machine &machine, qint64 process);

/// The path of the file that a process runs, also of one that was deleted meanwhile; empty if it
/// may not be read.
QString programPath(const Machine &machine, qint64 process);

} // namespace doctor
