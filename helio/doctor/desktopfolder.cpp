#include "helio/doctor/desktopfolder.h"

#include <QDir>
#include <QFileInfo>

namespace helio {

QString desktopFolder(doctor::Machine machine)
{
    const QString user = machine.variable(QStringLiteral("USER")).value_or(QString());
    const QString home =
        user == QLatin1String("root") ? QStringLiteral("/root") : QStringLiteral("/home/") + user;
    const QString configuration = home + QStringLiteral("/.config");
    const QDir homeDirectory(QDir::cleanPath(home));
    if (QFileInfo::exists(configuration + QStringLiteral("/user-dirs.dirs"))) {
        machine.environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configuration);
        machine.environment.remove(QStringLiteral("XDG_DESKTOP_DIR"));
        QString folder = machine.variable(QStringLiteral("XDG_DESKTOP_DIR")).value_or(QString());
        if (folder.startsWith(home + QLatin1Char('/')))
            folder.remove(0, home.size());
        return QDir::cleanPath(homeDirectory.path() + QLatin1Char('/') + folder);
    }
    for (const QString &name : {QStringLiteral("桌面"), QStringLiteral("Desktop")}) {
        if (homeDirectory.exists(name))
            return homeDirectory.filePath(name);
    }
    return homeDirectory.filePath(QStringLiteral("桌面"));
}

} // namespace helio
