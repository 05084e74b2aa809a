#pragma once

#include <optional>

#include "programs/portal/portal.h"
#include "programs/screencap/screensource.h"

namespace programs {

/// Asks the desktop's portal (org.freedesktop.portal.ScreenCast) for a stream of one screen. The
/// portal asks the user. The stream lasts as long as the connection to the bus.
class PortalCast
{
public:
    /// @p answerTimeoutMs for each answer includes the time in which the user decides.
    PortalCast(const QDBusConnection &bus, int answerTimeoutMs);

    ScreenSource open();

private:
    /// Calls a method that answers with a request, and waits for the results of that; nothing if
    /// it fails, with the reason in m_reason.
    std::optional<QVariantMap> results(const QString &method, const QVariantList &arguments);

    Portal m_portal;
    QString m_reason;
};

} // namespace programs
