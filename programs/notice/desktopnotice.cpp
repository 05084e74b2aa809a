#include "programs/notice/desktopnotice.h"

#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

void programs::showNotice(const QDBusConnection &bus, const QString &title, const QString &text)
{
    constexpr int timeoutMs = 2'000;
    constexpr int shownAsLongAsUsual = -1;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"),
        QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    call << QStringLiteral("Office Assistant") << 0U << QStringLiteral("office-assistant") << title
         << text.toHtmlEscaped() << QStringList() << QVariantMap() << shownAsLongAsUsual;
    // Without notifications the user still gets the printed outcome.
    bus.call(call, QDBus::Block, timeoutMs);
}
