#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace OfficeAssiant {

/// What the input checker reads besides the environment; tests replace it.
struct InputSystem
{
    /// The kernel's directory of processes, with a trailing slash.
    QString processDirectory = QStringLiteral("/proc/");

    /// The file with the machine's id (machine-id(5)).
    QString machineIdFile = QStringLiteral("/etc/machine-id");

    /// Lists the names by which QT_IM_MODULE can choose an input-context plug-in. Unset: those that
    /// Qt finds.
    std::function<QStringList()> pluginKeys;
};

} // namespace OfficeAssiant
