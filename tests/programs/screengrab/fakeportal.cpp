#include "tests/programs/screengrab/fakeportal.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace testsupport {

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString noticeService = QStringLiteral("org.freedesktop.Notifications");
const QString noticePath = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

FakePortal::FakePortal(const QDBusConnection &bus) : m_bus(bus)
{
    for (const QString &path : {portalPath, noticePath}) {
        if (!m_bus.registerVirtualObject(path, this))
            qFatal("cannot register %s", qPrintable(path));
    }
    for (const QString &service : {portalService, noticeService}) {
        if (!m_bus.registerService(service))
            qFatal("cannot register %s", qPrintable(service));
    }
}

FakePortal::~FakePortal()
{
    for (const QString &service : {portalService, noticeService})
        m_bus.unregisterService(service);
    for (const QString &path : {portalPath, noticePath})
        m_bus.unregisterObject(path);
}

QString FakePortal::introspect(const QString &) const
{
    return {};
}

bool FakePortal::handleMessage(const QDBusMessage &message, const QDBusConnection &)
{
    if (message.member() == QLatin1String("Get"))
        return m_bus.send(
            message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(2U)))));
    if (message.member() == QLatin1String("Notify")) {
        notices << message.arguments().at(3).toString() << message.arguments().at(4).toString();
        return m_bus.send(message.createReply(1U));
    }
    if (message.member() != QLatin1String("Screenshot"))
        return false;
    takeScreenshot(message);
    return true;
}

void FakePortal::takeScreenshot(const QDBusMessage &call)
{
    const auto options = qdbus_cast<QVariantMap>(call.arguments().at(1));
    requests.append(options);
    if (answer == RefuseCall) {
        m_bus.send(call.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not allowed")));
        return;
    }
    const QString request = portalPath + QStringLiteral("/request/1_1/t1");
    m_bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(request))));
    if (answer == LeaveTheBus) {
        m_bus.unregisterService(portalService);
        return;
    }
    if (answer == AnswerOtherRequestFirst)
        answerRequest(portalPath + QStringLiteral("/request/1_2/t1"), 1);
    answerRequest(request, response);
}

void FakePortal::answerRequest(const QString &request, uint outcome)
{
    QDBusMessage signal = QDBusMessage::createSignal(
        request, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal << outcome << QVariantMap{{QStringLiteral("uri"), picture}};
    m_bus.send(signal);
}

} // namespace testsupport
