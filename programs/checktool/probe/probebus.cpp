#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusReply>
#include <QJsonArray>

#include "programs/checktool/machine/facts.h"
#include "programs/checktool/probe/probes.h"

namespace programs {

namespace {

QJsonObject fault(const QDBusError &error)
{
    return {{QLatin1String(facts::fault), error.message()}};
}

} // namespace

QJsonObject probeBus(int &argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QString address = QCoreApplication::arguments().value(2);
    const QDBusConnection bus = QDBusConnection::connectToBus(address, QStringLiteral("probe"));
    if (!bus.isConnected())
        return fault(bus.lastError());
    const QDBusReply<QStringList> names = bus.interface()->registeredServiceNames();
    if (!names.isValid())
        return fault(names.error());
    return {{QLatin1String(facts::names), QJsonArray::fromStringList(names.value())}};
}

} // namespace programs
