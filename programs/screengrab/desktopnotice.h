#pragma once

#include <QDBusConnection>
#include <QString>

namespace standin {

/// Shows a short notice of the desktop (org.freedesktop.Notifications), where it shows any.
void showNotice(const QDBusConnection &bus, const QString &title, const QString &text);

} // namespace standin
