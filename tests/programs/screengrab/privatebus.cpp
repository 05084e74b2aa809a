#include "tests/programs/screengrab/privatebus.h"

namespace testsupport {

PrivateBus::PrivateBus()
{
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--session"), QStringLiteral("--nofork"),
                    QStringLiteral("--print-address"), QStringLiteral("--nopidfile")});
    while (m_daemon.state() != QProcess::NotRunning && !m_daemon.canReadLine()) {
        if (!m_daemon.waitForReadyRead())
            qFatal("dbus-daemon does not start");
    }
    m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

QString PrivateBus::address() const
{
    return m_address;
}

QDBusConnection PrivateBus::connection(const QString &name) const
{
    const QDBusConnection bus = QDBusConnection::connectToBus(m_address, name);
    if (!bus.isConnected())
        qFatal("no connection to %s", qPrintable(m_address));
    return bus;
}

} // namespace testsupport
