#pragma once

#include <QDBusConnection>
#include <QProcess>

namespace testsupport {

/// A message bus of the test's own, with the test on it; it ends with this object.
class PrivateBus
{
public:
    PrivateBus();
    ~PrivateBus();

    /// For DBUS_SESSION_BUS_ADDRESS.
    QString address() const;

    /// Another participant on the bus; it leaves when disconnect() gets its name.
    QDBusConnection connection(const QString &name) const;

private:
    Q_DISABLE_COPY_MOVE(PrivateBus)

    QProcess m_daemon;
    QString m_address;
};

} // namespace testsupport
