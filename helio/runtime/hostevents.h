#pragma once

#include <QObject>
#include <QStringList>

#include "host/khelioexport.h"

namespace helio {

/// What the shell's services were asked to do, for whoever wants to watch.
class HELIO_EXPORT HostEvents : public QObject
{
    Q_OBJECT

public:
    static HostEvents &instance();

signals:
    /// A program is about to be started; comes from the thread that starts it and for every
    /// attempt, whether or not the program exists.
    void programStarting(const QString &program, const QStringList &arguments,
                         const QString &workingDirectory, bool detached);

private:
    HostEvents() = default;
};

} // namespace helio
