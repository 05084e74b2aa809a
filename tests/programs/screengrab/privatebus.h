#pragma once

#include <QDBusConnection>
#include <QProcess>

namespace testsupport {

/// A private message bus; ends with this object.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();

    /// For DBUS_SESSION_BUS_ADDRESS.
    QString address() const;

    /// A new connection to the bus; close it with QDBusConnection::disconnectFromBus(name).
    QDBusConnection connection(const QString &name) const;

private:
    Q_DISABLE_COPY_MOVE(PrivateBus)

    QProcess m_daemon;
    QString m_address;
};

} // namespace testsupport
