#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QEventLoop>
#include <QHash>
#include <QObject>

#include <optional>

namespace programs {

/// One interface of the desktop's portal (org.freedesktop.portal.Desktop), whose methods answer
/// with a request. The response to that comes when the user has decided.
class Portal : public QObject
{
    Q_OBJECT

public:
    /// What org.freedesktop.portal.Request::Response carries; other codes are failures.
    struct Response
    {
        enum Code : uint {
            Succeeded = 0,
            Cancelled = 1,
        };
        uint code;
        QVariantMap results;
    };

    /// @p answerTimeoutMs for each response includes the time in which the user decides.
    Portal(const QDBusConnection &bus, const QString &interface, int answerTimeoutMs);

    /// Whether there is such a portal that can be listened to.
    bool isOffered();
    /// Calls a method. An error comes back where the portal or the method is not there.
    QDBusMessage call(const QString &method, const QVariantList &arguments);
    /// Waits for the response to the request that @p reply names; nothing if none comes in time or
    /// the portal ends.
    std::optional<Response> responseTo(const QDBusMessage &reply);

private slots:
    void onResponse(const QDBusMessage &response);

private:
    QDBusConnection m_bus;
    const QString m_interface;
    const int m_answerTimeoutMs;
    const bool m_isListening;
    QEventLoop m_loop;
    /// By the path of the request: a response may arrive before the call returns.
    QHash<QString, QDBusMessage> m_responses;
};

} // namespace programs
