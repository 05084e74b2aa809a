#include "programs/screengrab/portalgrab.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>
#include <QUrl>

#include "texts/texts.h"

namespace programs {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString screenshotInterface = QStringLiteral("org.freedesktop.portal.Screenshot");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr int callTimeoutMs = 10'000;

/// The portal's codes for the outcome of a request.
enum Response : uint {
    Succeeded = 0,
    Cancelled = 1,
};

} // namespace

PortalGrab::PortalGrab(const QDBusConnection &bus, int answerTimeoutMs)
    : m_bus(bus), m_answerTimeoutMs(answerTimeoutMs)
{
}

GrabbedPicture PortalGrab::grab()
{
    // Without a path: the portal chooses the path of the request.
    if (!isOffered() ||
        !m_bus.connect(service, QString(), requestInterface, QStringLiteral("Response"), this,
                       SLOT(onResponse(QDBusMessage))))
        return GrabbedPicture::notPossible(texts::tr("the desktop has no portal for screenshots"));
    QString error;
    const QString path = request(&error);
    if (path.isEmpty())
        return GrabbedPicture::notPossible(
            texts::tr("the portal took no screenshot: %1").arg(error));
    return answerTo(path);
}

void PortalGrab::onResponse(const QDBusMessage &response)
{
    m_responses.insert(response.path(), response);
    m_loop.quit();
}

bool PortalGrab::isOffered() const
{
    QDBusMessage question = QDBusMessage::createMethodCall(service, portalPath, propertiesInterface,
                                                           QStringLiteral("Get"));
    question << screenshotInterface << QStringLiteral("version");
    const QDBusReply<QDBusVariant> version = m_bus.call(question, QDBus::Block, callTimeoutMs);
    return version.isValid();
}

QString PortalGrab::request(QString *error)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, portalPath, screenshotInterface,
                                                       QStringLiteral("Screenshot"));
    call << QString() << QVariantMap{{QStringLiteral("interactive"), false}};
    const QDBusReply<QDBusObjectPath> reply = m_bus.call(call, QDBus::Block, callTimeoutMs);
    *error = reply.error().message();
    return reply.isValid() ? reply.value().path() : QString();
}

GrabbedPicture PortalGrab::answerTo(const QString &request)
{
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
    if (answer.size() != 2)
        return GrabbedPicture::refused(texts::tr("the desktop's portal gave no answer"));
    const uint outcome = answer.at(0).toUInt();
    if (outcome == Cancelled)
        return GrabbedPicture::refused(texts::tr("the desktop or its user said no"));
    if (outcome != Succeeded)
        return GrabbedPicture::notPossible(texts::tr("the desktop's portal failed"));
    const auto results = qdbus_cast<QVariantMap>(answer.at(1));
    return pictureOf(results.value(QStringLiteral("uri")).toString());
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
