#pragma once

#include <QObject>
#include <QStringList>

#include "host/khelioexport.h"

namespace helio {

/// Reports what the plug-in does through the services of the shell.
class HELIO_EXPORT HostEvents : public QObject
{
    Q_OBJECT

public:
    static HostEvents &instance();

signals:
    /// A program is about to be started, whether or not it exists. Emitted in the thread that
    /// starts it.
    void programStarting(const QString &program, const QStringList &arguments,
                         const QString &workingDirectory, bool detached);

private:
    HostEvents() = default;
};

} // namespace helio
