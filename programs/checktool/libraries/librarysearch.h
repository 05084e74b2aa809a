#pragma once

#include <QHash>
#include <QStringList>

#include "programs/checktool/libraries/elffile.h"

namespace standin {

struct Machine;

/// Where the dynamic loader looks for libraries apart from what files say themselves.
struct LibrarySearch
{
    QStringList userDirectories;       ///< LD_LIBRARY_PATH
    QHash<QString, QStringList> cache; ///< paths by name, as ldconfig keeps them
    QStringList systemDirectories;

    /// That of the machine's own loader.
    static LibrarySearch of(const Machine &machine);
};

/// Paths by name out of what "ldconfig -p" prints.
QHash<QString, QStringList> parseLoaderCache(const QByteArray &text);

} // namespace standin
