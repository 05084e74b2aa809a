#include "programs/portal/portal.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QTimer>

namespace programs {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr int callTimeoutMs = 10'000;

} // namespace

// Listens to no path of its own: the portal chooses the path of the request.
Portal::Portal(const QDBusConnection &bus, const QString &interface, int answerTimeoutMs)
    : m_bus(bus),
      m_interface(interface),
      m_answerTimeoutMs(answerTimeoutMs),
      m_isListening(m_bus.connect(service, QString(), requestInterface, QStringLiteral("Response"),
                                  this, SLOT(onResponse(QDBusMessage))))
{
}

bool Portal::isOffered()
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, portalPath, propertiesInterface,
                                                           QStringLiteral("Get"));
    question << m_interface << QStringLiteral("version");
    return m_isListening &&
           m_bus.call(question, QDBus::Block, callTimeoutMs).type() == QDBusMessage::ReplyMessage;
}

QDBusMessage Portal::call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, portalPath, m_interface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, callTimeoutMs);
}

std::optional<Portal::Response> Portal::responseTo(const QDBusMessage &reply)
{
    const QString request = reply.arguments().value(0).value<QDBusObjectPath>().path();
    bool isOver = false;
    const auto endWait = [&] {
        isOver = true;
        m_loop.quit();
    };
    QDBusServiceWatcher watcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration);
    connect(&watcher, &QDBusServiceWatcher::serviceUnregistered, &m_loop, endWait);
    QTimer limit;
    connect(&limit, &QTimer::timeout, &m_loop, endWait);
    limit.start(m_answerTimeoutMs);
    while (!isOver && !m_responses.contains(request))
        m_loop.exec();
    const QVariantList answer = m_responses.take(request).arguments();
    if (answer.size() != 2)
        return std::nullopt;
    return Response{answer.at(0).toUInt(), qdbus_cast<QVariantMap>(answer.at(1))};
}

void Portal::onResponse(const QDBusMessage &response)
{
    m_responses.insert(response.path(), response);
    m_loop.quit();
}

} // namespace programs
