#include "helio/ctl/doctor/messagelocale.h"

namespace ctl {

QString messageLocale(const doctor::Machine &machine)
{
    const QString chosen = machine.environment.value(QStringLiteral("OFFICE_ASSISTANT_LANGUAGE"));
    if (!chosen.isEmpty())
        return chosen;
    QString locale;
    for (const char *name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (locale.isEmpty())
            locale = machine.environment.value(QLatin1String(name));
    }
    const QString name = locale.section(QLatin1Char('.'), 0, 0);
    if (name.isEmpty() || name == QLatin1String("C") || name == QLatin1String("POSIX"))
        return QStringLiteral("en");
    const QString wanted =
        machine.environment.value(QStringLiteral("LANGUAGE")).section(QLatin1Char(':'), 0, 0);
    return wanted.isEmpty() ? name : wanted;
}

} // namespace ctl
