#include "programs/screencap/portalcast.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>

#include <fcntl.h>

#include "texts/texts.h"

namespace programs {

namespace {

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
    : m_portal(bus, QStringLiteral("org.freedesktop.portal.ScreenCast"), answerTimeoutMs)
{
}

ScreenSource PortalCast::open()
{
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
    const QDBusMessage remote = m_portal.call(QStringLiteral("OpenPipeWireRemote"),
                                              {QVariant::fromValue(session), QVariantMap()});
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

std::optional<QVariantMap> PortalCast::results(const QString &method, const QVariantList &arguments)
{
    const QDBusMessage reply = m_portal.call(method, arguments);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        m_reason =
            texts::tr("the desktop has no portal for recordings: %1").arg(reply.errorMessage());
        return std::nullopt;
    }
    const std::optional<Portal::Response> response = m_portal.responseTo(reply);
    if (response && response->code == Portal::Response::Succeeded)
        return response->results;
    m_reason = response ? texts::tr("the desktop or its user said no")
                        : texts::tr("the desktop's portal gave no answer");
    return std::nullopt;
}

} // namespace programs
