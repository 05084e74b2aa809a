#pragma once

#include <QLibrary>
#include <QString>

#include "host/khelioexport.h"

namespace helio {

/// The plug-in beside the running program.
class HELIO_EXPORT PluginLibrary
{
public:
    /// The library's file, below "addons/" in the directory of libraries.
    static QString path();

    /// Loads the library, which registers its page. Returns why it is of no use: it cannot be
    /// loaded, or registers no page. Empty if all is well.
    QString load();

private:
    QLibrary m_library;
};

/// The directory of the HTML application.
HELIO_EXPORT QString pageDirectory();

} // namespace helio
