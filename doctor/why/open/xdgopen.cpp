#include "doctor/why/open/xdgopen.h"

#include <QHash>
#include <QStringList>

#include <algorithm>

namespace doctor {

namespace {

enum class Desktop {
    Other,
    Gio, ///< GNOME, Cinnamon, MATE
    Kde,
    Xfce,
    Lxde,
    Deepin,
    Enlightenment
};

struct DesktopName
{
    const char *name;
    Desktop desktop;
};
constexpr DesktopName currentNames[] = {
    {"Cinnamon", Desktop::Gio},    {"X-Cinnamon", Desktop::Gio},
    {"MATE", Desktop::Gio},        {"KDE", Desktop::Kde},
    {"XFCE", Desktop::Xfce},       {"LXDE", Desktop::Lxde},
    {"DEEPIN", Desktop::Deepin},   {"Deepin", Desktop::Deepin},
    {"deepin", Desktop::Deepin},   {"ENLIGHTENMENT", Desktop::Enlightenment},
    {"X-Generic", Desktop::Other}, {"LXQt", Desktop::Other}};
/// Variables that older sessions set.
constexpr DesktopName sessionVariables[] = {{"KDE_FULL_SESSION", Desktop::Kde},
                                            {"GNOME_DESKTOP_SESSION_ID", Desktop::Gio},
                                            {"MATE_DESKTOP_SESSION_ID", Desktop::Gio},
                                            {"LXQT_SESSION_CONFIG", Desktop::Other}};
constexpr DesktopName sessionNames[] = {{"gnome", Desktop::Gio},        {"LXDE", Desktop::Lxde},
                                        {"Lubuntu", Desktop::Lxde},     {"MATE", Desktop::Gio},
                                        {"xfce", Desktop::Xfce},        {"xfce4", Desktop::Xfce},
                                        {"Xfce Session", Desktop::Xfce}};

/// The script compares XDG_CURRENT_DESKTOP as a whole: "ubuntu:GNOME" is none that it knows.
Desktop desktopOf(const QHash<QString, QString> &environment)
{
    const QString current = environment.value(QStringLiteral("XDG_CURRENT_DESKTOP"));
    if (current.startsWith(QLatin1String("GNOME")))
        return Desktop::Gio;
    for (const DesktopName &each : currentNames) {
        if (current == QLatin1String(each.name))
            return each.desktop;
    }
    for (const DesktopName &each : sessionVariables) {
        if (!environment.value(QLatin1String(each.name)).isEmpty())
            return each.desktop;
    }
    const QString session = environment.value(QStringLiteral("DESKTOP_SESSION"));
    for (const DesktopName &each : sessionNames) {
        if (session == QLatin1String(each.name))
            return each.desktop;
    }
    return Desktop::Other;
}

QString kdeProgram(const QString &version)
{
    if (version == QLatin1String("5"))
        return QStringLiteral("kde-open5");
    return version == QLatin1String("4") ? QStringLiteral("kde-open") : QStringLiteral("kfmclient");
}

} // namespace

QString xdgOpenProgram(const OpenPlaces &places)
{
    const QHash<QString, QString> &environment = places.machine.environment;
    QStringList programs;
    switch (desktopOf(environment)) {
    case Desktop::Kde:
        return kdeProgram(environment.value(QStringLiteral("KDE_SESSION_VERSION")));
    case Desktop::Gio:
        programs = QStringList{QStringLiteral("gio")};
        break;
    case Desktop::Xfce:
        programs = QStringList{QStringLiteral("exo-open"), QStringLiteral("gio")};
        break;
    case Desktop::Lxde:
        programs = QStringList{QStringLiteral("pcmanfm")};
        break;
    case Desktop::Deepin:
        programs = QStringList{QStringLiteral("dde-open")};
        break;
    case Desktop::Enlightenment:
        programs = QStringList{QStringLiteral("enlightenment_open")};
        break;
    case Desktop::Other:
        break;
    }
    const auto found = std::find_if(programs.begin(), programs.end(), [&](const QString &program) {
        return places.hasProgram(program);
    });
    return found == programs.end() ? QString() : *found;
}

} // namespace doctor
