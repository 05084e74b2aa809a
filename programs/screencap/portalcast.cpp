#include "programs/screencap/portalcast.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QTimer>

#include <fcntl.h>

#include "texts/texts.h"

namespace programs {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString castInterface = QStringLiteral("org.freedesktop.portal.ScreenCast");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

constexpr int callTimeoutMs = 10'000;
constexpr uint wholeScreen = 1;
constexpr uint withPointer = 2;

/// The number of the first stream, in an array of numbers with properties.
std::optional<uint> firstStream(const QVariant &streams)
{
    const auto array = streams.value<QDBusArgument>();
    if (array.currentType() != QDBusArgument::ArrayType)
        return std::nullopt;
    array.beginArray();
    if (array.atEnd())
        return std::nullopt;
    uint node = 0;
    array.beginStructure();
    array >> node;
    return node;
}

} // namespace

PortalCast::PortalCast(const QDBusConnection &bus, int answerTimeoutMs)
    : m_bus(bus), m_answerTimeoutMs(answerTimeoutMs)
{
}

ScreenSource PortalCast::open()
{
    // Without a path: the portal chooses the path of the request.
    m_bus.connect(service, QString(), requestInterface, QStringLiteral("Response"), this,
                  SLOT(onResponse(QDBusMessage)));
    const std::optional<QVariantMap> created =
        results(QStringLiteral("CreateSession"),
                {QVariantMap{{QStringLiteral("session_handle_token"), QStringLiteral("screencap")},
                             {QStringLiteral("handle_token"), QStringLiteral("screencap1")}}});
    if (!created)
        return {{}, -1, m_reason};
    const QDBusObjectPath session(created->value(QStringLiteral("session_handle")).toString());
    const bool isChosen = results(QStringLiteral("SelectSources"),
                                  {QVariant::fromValue(session),
                                   QVariantMap{{QStringLiteral("types"), wholeScreen},
                                               {QStringLiteral("cursor_mode"), withPointer}}})
                              .has_value();
    if (!isChosen)
        return {{}, -1, m_reason};
    const std::optional<QVariantMap> started =
        results(QStringLiteral("Start"), {QVariant::fromValue(session), QString(), QVariantMap()});
    if (!started)
        return {{}, -1, m_reason};
    const std::optional<uint> node = firstStream(started->value(QStringLiteral("streams")));
    const QDBusMessage remote =
        call(QStringLiteral("OpenPipeWireRemote"), {QVariant::fromValue(session), QVariantMap()});
    const auto descriptor = remote.arguments().value(0).value<QDBusUnixFileDescriptor>();
    if (!node || !descriptor.isValid())
        return {{}, -1, texts::tr("the desktop's portal failed")};
    // A copy that the program to be started inherits.
    const int copy = ::fcntl(descriptor.fileDescriptor(), F_DUPFD, 3);
    return {{QStringLiteral("pipewiresrc"), QStringLiteral("fd=%1").arg(copy),
             QStringLiteral("path=%1").arg(*node), QStringLiteral("do-timestamp=true")},
            copy,
            {}};
}

void PortalCast::onResponse(const QDBusMessage &response)
{
    m_responses.insert(response.path(), response);
    m_loop.quit();
}

QDBusMessage PortalCast::call(const QString &method, const QVariantList &arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, portalPath, castInterface, method);
    message.setArguments(arguments);
    return m_bus.call(message, QDBus::Block, callTimeoutMs);
}

std::optional<QVariantMap> PortalCast::results(const QString &method, const QVariantList &arguments)
{
    const QDBusMessage reply = call(method, arguments);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        m_reason =
            texts::tr("the desktop has no portal for recordings: %1").arg(reply.errorMessage());
        return std::nullopt;
    }
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
    const QVariantList answer = m_responses.value(request).arguments();
    if (answer.size() == 2 && answer.at(0).toUInt() == 0)
        return qdbus_cast<QVariantMap>(answer.at(1));
    m_reason = answer.isEmpty() ? texts::tr("the desktop's portal gave no answer")
                                : texts::tr("the desktop or its user said no");
    return std::nullopt;
}

} // namespace programs
