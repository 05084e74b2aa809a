#pragma once

#include <QString>
#include <QStringList>

#include "host/khelioexport.h"

/// The suite's runtime: its directories, its process starter and its optional components.
namespace krt {

namespace dirs {

/// The suite's directory of the current user, without a trailing slash.
HELIO_EXPORT QString orvaneHome();

/// The suite's resource directory, or @p sub in it. @p reserved is not used; pass null.
HELIO_EXPORT QString resources(const QString &sub, void *reserved);

/// The suite's directory of shared libraries and add-ons, or @p sub in it.
HELIO_EXPORT QString frameworks(const QString &sub, void *reserved);

} // namespace dirs

namespace ksafe {

class HELIO_EXPORT KProcess
{
public:
    /// Starts @p program, without a shell, as a process that outlives this one; its standard
    /// streams are at /dev/null. A program without a directory is looked for in PATH, an empty
    /// working directory is the current one. False when it could not be started; @p processId
    /// is set when it could and the caller asks for it.
    static bool StartDetach(const QString &program, const QStringList &arguments,
                            const QString &workingDirectory, qint64 *processId);

    /// Runs @p program, without a shell, and waits for its end without a limit. Gives its exit
    /// code, -2 when it could not be started and -1 when it crashed. May be called from any
    /// thread.
    static int Execute(const QString &program, const QStringList &arguments);

    /// Whether @p path may be handed to the desktop to be opened.
    static bool checkLocalFileSafe(const QString &path);
};

} // namespace ksafe

namespace kcmc {

/// Whether the installation has the optional component @p name.
HELIO_EXPORT bool support(const QString &name);

} // namespace kcmc

} // namespace krt
