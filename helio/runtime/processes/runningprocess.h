#pragma once

#include <QByteArray>
#include <QStringList>

#include "host/khelioexport.h"

namespace helio {

/// What /proc says of a process or thread. All fields are empty if it has ended.
struct ProcessStatus
{
    QByteArray name;
    QByteArray state;
    int parent = 0;
    int group = 0;
    int session = 0;
};

/// Reads DIRECTORY/stat, where the directory in /proc is that of a process or thread.
HELIO_EXPORT ProcessStatus processStatus(const QString &directory);

/// The ids of all processes, as /proc lists them.
HELIO_EXPORT QStringList processIds();

/// Sends a signal to the programs that a command waits for: the process groups of our children, as
/// long as they are in our session. Programs that are meant to outlive us have sessions of their
/// own.
HELIO_EXPORT void signalAwaitedGroups(int signal);

} // namespace helio
