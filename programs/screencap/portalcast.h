#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QHash>
#include <QObject>

#include <optional>

#include "programs/screencap/screensource.h"

namespace programs {

/// Asks the desktop's portal (org.freedesktop.portal.ScreenCast) for a stream of one screen. The
/// portal asks the user. The stream lasts as long as the connection to the bus.
class PortalCast : public QObject
{
    Q_OBJECT

public:
    /// @p answerTimeoutMs for each answer includes the time in which the user decides.
    PortalCast(const QDBusConnection &bus, int answerTimeoutMs);

    ScreenSource open();

private slots:
    void onResponse(const QDBusMessage &response);

private:
    /// Calls a method that answers with a request, and waits for the results of that; nothing if
    /// it fails, with the reason in m_reason.
    std::optional<QVariantMap> results(const QString &method, const QVariantList &arguments);
    QDBusMessage call(const QString &method, const QVariantList &arguments);

    QDBusConnection m_bus;
    const int m_answerTimeoutMs;
    QString m_reason;
    QEventLoop m_loop;
    /// By the path of the request: a response may arrive before the call returns.
    QHash<QString, QDBusMessage> m_responses;
};

} // namespace programs
