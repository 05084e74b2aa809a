#include "doctor/why/open/places.h"

#include <QFile>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

namespace doctor {

namespace {

constexpr char usualPath[] = "/usr/local/bin:/usr/bin:/bin";

QStringList directories(const QString &list)
{
    QStringList found;
    for (QString directory : list.split(QLatin1Char(':'), Qt::SkipEmptyParts)) {
        while (directory.size() > 1 && directory.endsWith(QLatin1Char('/')))
            directory.chop(1);
        if (directory.startsWith(QLatin1Char('/')))
            found.append(directory);
    }
    return found;
}

QString valueOr(const Machine &machine, const char *name, const char *usual)
{
    const QString value = machine.variable(QLatin1String(name)).value_or(QString());
    return value.isEmpty() ? QString::fromLatin1(usual) : value;
}

} // namespace

bool OpenPlaces::isProgram(const QString &path) const
{
    struct stat state = {};
    const QByteArray name = QFile::encodeName(machine.located(path));
    return ::stat(name.constData(), &state) == 0 && !S_ISDIR(state.st_mode) &&
           ::access(name.constData(), X_OK) == 0;
}

bool OpenPlaces::hasProgram(const QString &name) const
{
    if (name.contains(QLatin1Char('/')))
        return isProgram(name);
    return std::any_of(programs.begin(), programs.end(), [&](const QString &folder) {
        return isProgram(folder + QLatin1Char('/') + name);
    });
}

OpenPlaces openPlaces(const Machine &machine)
{
    OpenPlaces places;
    places.machine = machine;
    places.config = directories(valueOr(machine, "XDG_CONFIG_HOME", "")) +
                    directories(valueOr(machine, "XDG_CONFIG_DIRS", "/etc/xdg"));
    places.data = directories(valueOr(machine, "XDG_DATA_HOME", "")) +
                  directories(valueOr(machine, "XDG_DATA_DIRS", "/usr/local/share:/usr/share"));
    places.desktops =
        valueOr(machine, "XDG_CURRENT_DESKTOP", "").split(QLatin1Char(':'), Qt::SkipEmptyParts);
    places.programs = directories(valueOr(machine, "PATH", usualPath));
    places.menuPrefix = machine.environment.value(QStringLiteral("XDG_MENU_PREFIX"));
    return places;
}

} // namespace doctor
