#include "helio/shell/sessioninstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QFile>

#include "helio/shell/shelloptions.h"

namespace {

constexpr char service[] = "org.officeassistant.officeassistant";
constexpr char path[] = "/org/officeassistant/officeassistant";
constexpr char applicationInterface[] = "org.freedesktop.Application";
constexpr int longestAnswerMs = 5000;

/// Asking for a bus where there is none would start one.
bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// What the desktop gave this start, for the window that it leads to.
QVariantMap platformData()
{
    QVariantMap data;
    const QByteArray startup = qgetenv("DESKTOP_STARTUP_ID");
    if (!startup.isEmpty())
        data.insert(QStringLiteral("desktop-startup-id"), QString::fromUtf8(startup));
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    if (!token.isEmpty())
        data.insert(QStringLiteral("activation-token"), QString::fromUtf8(token));
    return data;
}

bool isAnswered(QDBusConnection &bus, const QString &action)
{
    const bool isPlain = action.isEmpty();
    QDBusMessage call = QDBusMessage::createMethodCall(
        QLatin1String(service), QLatin1String(path), QLatin1String(applicationInterface),
        isPlain ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    call.setArguments(isPlain ? QVariantList{platformData()}
                              : QVariantList{action, QVariantList(), platformData()});
    return bus.call(call, QDBus::Block, longestAnswerMs).type() == QDBusMessage::ReplyMessage;
}

} // namespace

namespace shell {

SessionInstance::SessionInstance(QObject *parent) : QObject(parent) {}

SessionInstance::Place SessionInstance::take(const QString &action)
{
    if (!hasSessionBus())
        return Place::Alone;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Place::Alone;
    // Before the name, which others call as soon as they see it.
    bus.registerObject(QLatin1String(path), this, QDBusConnection::ExportScriptableSlots);
    if (bus.registerService(QLatin1String(service)))
        return Place::First;
    return isAnswered(bus, action) ? Place::Second : Place::Alone;
}

void SessionInstance::Activate(const QVariantMap &platformData)
{
    Q_UNUSED(platformData)
    emit activated({});
}

void SessionInstance::Open(const QStringList &uris, const QVariantMap &platformData)
{
    Q_UNUSED(uris)
    Activate(platformData);
}

void SessionInstance::ActivateAction(const QString &action, const QVariantList &parameter,
                                     const QVariantMap &platformData)
{
    Q_UNUSED(parameter)
    Q_UNUSED(platformData)
    emit activated(isAction(action) ? action : QString());
}

} // namespace shell
