#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QHash>
#include <QObject>

#include "programs/screengrab/grabbedpicture.h"

namespace standin {

/// Asks the desktop's portal (org.freedesktop.portal.Screenshot) for a picture of the screen. The
/// portal may ask the user first.
class PortalGrab : public QObject
{
    Q_OBJECT

public:
    /// @p answerTimeoutMs: how long the user may think.
    PortalGrab(const QDBusConnection &bus, int answerTimeoutMs);

    GrabbedPicture grab();

private slots:
    void onResponse(const QDBusMessage &response);

private:
    bool isOffered() const;
    /// Calls the portal; gives the path of the request or, when @p error is set, nothing.
    QString request(QString *error);
    GrabbedPicture answerTo(const QString &request);
    GrabbedPicture pictureOf(const QString &address) const;

    QDBusConnection m_bus;
    const int m_answerTimeoutMs;
    QEventLoop m_loop;
    /// By the path of their request: an answer may be quicker than the return of its call.
    QHash<QString, QDBusMessage> m_responses;
};

} // namespace standin
