#pragma once

#include <QDBusConnection>
#include <QString>

namespace programs {

/// Shows a desktop notification (org.freedesktop.Notifications), if the desktop has them.
void showNotice(const QDBusConnection &bus, const QString &title, const QString &text);

} // namespace programs
