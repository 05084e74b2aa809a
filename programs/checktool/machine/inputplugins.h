#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace standin {

struct Machine;

/// Qt's input-method modules on the machine.
struct InputPlugins
{
    QStringList directories;      ///< where programs of the suite look for them
    QMap<QString, QString> paths; ///< by the names, in lower case, that QT_IM_MODULE can give

    /// Reads what modules say of themselves; none of them is loaded.
    static InputPlugins of(const Machine &machine);
};

} // namespace standin
