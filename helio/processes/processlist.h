#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

#include "doctor/machine/machine.h"

namespace helio {

/// A process that is not one of the kernel's own threads; see proc(5).
struct ListedProcess
{
    qint64 id = 0;
    qint64 parent = 0;
    /// Clock ticks between the start of the machine and its own: with the id, what tells it from a
    /// later process of the same number.
    quint64 start = 0;
    uid_t user = 0;
    /// What its group is called: the file that runs, or the script that an interpreter runs.
    QString program;
    /// The whole command line; the kernel's short name where it has none.
    QString command;
    /// Bytes in memory that it shares with no file and no other program.
    qint64 memory = 0;
    /// Milliseconds of processors that it has used.
    qint64 processorTime = 0;
};

/// All processes that can be seen. One that ends meanwhile is left out.
QVector<ListedProcess> readProcesses(const doctor::Machine &machine);

/// A process and all below it.
QVector<qint64> familyOf(qint64 process, const QVector<ListedProcess> &processes);

/// Memory and swap in bytes, processors, the load averages of the last 1, 5 and 15 minutes, and of
/// "cpu", "memory" and "io" the per cent of time that something had to wait for them in the last
/// 10, 60 and 300 seconds; the last of these only from kernels that count it.
QJsonObject machineLoad(const doctor::Machine &machine);

} // namespace helio
