#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace programs {

struct Machine;

/// Qt's input-method modules on the machine.
struct InputPlugins
{
    QStringList directories;      ///< where the suite looks for them
    QMap<QString, QString> paths; ///< by the value of QT_IM_MODULE, in lower case

    /// Reads the metadata of the modules; loads none of them.
    static InputPlugins of(const Machine &machine);
};

} // namespace programs
