#pragma once

#include <QHash>
#include <QStringList>

#include "programs/checktool/libraries/elffile.h"

namespace programs {

struct Machine;

/// Where the dynamic loader looks for libraries, apart from DT_RPATH and DT_RUNPATH.
struct LibrarySearch
{
    QStringList userDirectories;       ///< LD_LIBRARY_PATH
    QHash<QString, QStringList> cache; ///< paths by name, from ldconfig
    QStringList systemDirectories;

    /// The search of the machine's own loader.
    static LibrarySearch of(const Machine &machine);
};

/// Paths by name from the output of "ldconfig -p".
QHash<QString, QStringList> parseLoaderCache(const QByteArray &text);

} // namespace programs
