#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QHash>
#include <QObject>

#include "programs/screengrab/grabbedpicture.h"

namespace programs {

/// Asks the desktop's portal (org.freedesktop.portal.Screenshot) for a screenshot. The portal may
/// ask the user for permission.
class PortalGrab : public QObject
{
    Q_OBJECT

public:
    /// @p answerTimeoutMs includes the time in which the user decides.
    PortalGrab(const QDBusConnection &bus, int answerTimeoutMs);

    GrabbedPicture grab();

private slots:
    void onResponse(const QDBusMessage &response);

private:
    bool isOffered() const;
    /// Calls the portal. Returns the path of the request; an empty one and @p error on failure.
    QString request(QString *error);
    GrabbedPicture answerTo(const QString &request);
    GrabbedPicture pictureOf(const QString &address) const;

    QDBusConnection m_bus;
    const int m_answerTimeoutMs;
    QEventLoop m_loop;
    /// By the path of the request: a response may arrive before the call returns.
    QHash<QString, QDBusMessage> m_responses;
};

} // namespace programs
