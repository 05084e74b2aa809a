#pragma once

#include <QLibrary>
#include <QString>

#include "host/khelioexport.h"

namespace helio {

/// The page plug-in that lies beside the running program.
class HELIO_EXPORT PluginLibrary
{
public:
    /// The library below "addons/" of the application directory.
    static QString path();

    /// Loads the library, which registers its page. False, with errorString() set, when there is
    /// no such library or it registers no page.
    bool load();

    QString errorString() const;

private:
    QLibrary m_library;
    QString m_errorString;
};

/// The directory of the plug-in's HTML application.
HELIO_EXPORT QString pageDirectory();

} // namespace helio
