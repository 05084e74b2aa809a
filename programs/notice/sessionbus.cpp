#include "programs/notice/sessionbus.h"

#include <QByteArray>
#include <QFile>
#include <QString>

bool programs::hasSessionBus()
{
    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return address != "disabled:";
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFile::exists(runtime + QStringLiteral("/bus"));
}
