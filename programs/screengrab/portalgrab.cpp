#include "programs/screengrab/portalgrab.h"

#include <QUrl>

#include "texts/texts.h"

namespace programs {

PortalGrab::PortalGrab(const QDBusConnection &bus, int answerTimeoutMs)
    : m_portal(bus, QStringLiteral("org.freedesktop.portal.Screenshot"), answerTimeoutMs)
{
}

GrabbedPicture PortalGrab::grab()
{
    if (!m_portal.isOffered())
        return GrabbedPicture::notPossible(texts::tr("the desktop has no portal for screenshots"));
    const QDBusMessage reply =
        m_portal.call(QStringLiteral("Screenshot"),
                      {QString(), QVariantMap{{QStringLiteral("interactive"), false}}});
    if (reply.type() != QDBusMessage::ReplyMessage)
        return GrabbedPicture::notPossible(
            texts::tr("the portal took no screenshot: %1").arg(reply.errorMessage()));
    const std::optional<Portal::Response> response = m_portal.responseTo(reply);
    if (!response)
        return GrabbedPicture::refused(texts::tr("the desktop's portal gave no answer"));
    if (response->code == Portal::Response::Cancelled)
        return GrabbedPicture::refused(texts::tr("the desktop or its user said no"));
    if (response->code != Portal::Response::Succeeded)
        return GrabbedPicture::notPossible(texts::tr("the desktop's portal failed"));
    return pictureOf(response->results.value(QStringLiteral("uri")).toString());
}

GrabbedPicture PortalGrab::pictureOf(const QString &address) const
{
    const QString file = QUrl(address).toLocalFile();
    const QImage image = file.isEmpty() ? QImage() : QImage(file);
    if (image.isNull())
        return GrabbedPicture::notPossible(
            texts::tr("the portal's picture cannot be read: %1").arg(address));
    return GrabbedPicture::taken(image, file);
}

} // namespace programs
