#include <array>

#include "tests/doctor/why/input/inputmachine.h"

using doctor::InputCause;
using doctor::InputReport;
using doctor::Origin;

namespace {

enum class DisplayKind {
    X11,
    Wayland
};

/// A place that gives a variable its value; "%1" is the variable, "%2" the value.
struct PlaceCase
{
    const char *name;
    const char *path;
    const char *text;
    /// Whether a session on Wayland reads it.
    bool isForWayland = true;
};
constexpr std::array<PlaceCase, 15> places{{
    {"environment", "/etc/environment", "%1=\"%2\"\n"},
    {"pam_env", "/etc/security/pam_env.conf", "%1 DEFAULT=%2\n"},
    {"pam_environment", "/home/tester/.pam_environment", "%1 DEFAULT= OVERRIDE=\"%2\"\n"},
    {"environment.d", "/home/tester/.config/environment.d/50-im.conf", "%1=%2\n"},
    {"system environment.d", "/etc/environment.d/50-im.conf", "%1='%2'\n"},
    {"profile", "/etc/profile", "%1=%2; export %1\n"},
    {"profile.d", "/etc/profile.d/im.sh", "export %1=%2\n"},
    {"user's profile", "/home/tester/.profile", "export LESS=x %1='%2'\n"},
    {"bash_profile", "/home/tester/.bash_profile", "declare -x %1=%2\n"},
    {"xprofile", "/home/tester/.xprofile", "export %1=\"%2\" # mine\n", false},
    {"xsessionrc", "/home/tester/.xsessionrc", "%1=%2\nexport %1\n", false},
    {"xinputrc", "/home/tester/.xinputrc", "run_im fcitx5\n"},
    {"manager", "", ""},
    {"launcher", "/usr/share/applications/app.desktop", "Exec=env %1=%2 /opt/app/program %U\n"},
    {"wrapper", "/opt/app/start", "%1=%2 exec /opt/app/program \"$@\"\n"},
}};

enum class PluginCase {
    Fine,
    Absent,
    OtherProcessor,
    OtherToolkit
};

struct Case
{
    PlaceCase place;
    DisplayKind display;
    bool hasFcitx;
    bool hasIbus;
    PluginCase plugin;
    bool isQt;
    int number;

    QByteArray variable() const { return isQt ? "QT_IM_MODULE" : "GTK_IM_MODULE"; }
    bool is(const char *name) const { return qstrcmp(place.name, name) == 0; }
};

QString caseName(const Case &one)
{
    return QStringLiteral("%1, %2, %3%4, plug-in %5, %6")
        .arg(QLatin1String(one.place.name),
             one.display == DisplayKind::X11 ? QStringLiteral("X11") : QStringLiteral("Wayland"),
             one.hasFcitx ? QStringLiteral("fcitx") : QString(),
             one.hasIbus ? QStringLiteral("ibus") : QString())
        .arg(int(one.plugin))
        .arg(one.isQt ? QStringLiteral("Qt") : QStringLiteral("GTK"));
}

/// All but the place that sets the variable.
void buildSession(const InputMachine &machine, const Case &one)
{
    machine.write(QStringLiteral("/etc/pam.d/lightdm"),
                  "session required pam_env.so user_readenv=1\n");
    // Debian's scripts for others read ~/.profile.
    machine.add({40, one.is("bash_profile") ? "sddm" : "lightdm", {}, {}});
    if (one.is("profile.d"))
        machine.write(QStringLiteral("/etc/profile"),
                      "for i in /etc/profile.d/*.sh; do\n  [ -r $i ] && . $i\ndone\n");
    machine.write(QStringLiteral("/etc/X11/Xsession.d/40x11-common_xsessionrc"), "x");
    machine.write(QStringLiteral("/etc/X11/Xsession.d/70im-config_launch"), "x");
    if (one.is("xinputrc"))
        machine.write(QStringLiteral("/etc/profile.d/im-config_wayland.sh"), "x");
    if (one.hasFcitx)
        machine.add({60, "fcitx5", {}, {}});
    if (one.hasIbus)
        machine.add({61, "ibus-daemon", {}, {}});
}

void buildPlugin(const InputMachine &machine, const Case &one)
{
    const QString library = libraries + (one.isQt ? QStringLiteral("libQt5Gui.so.5.15.8")
                                                  : QStringLiteral("libgtk-3.so.0.2404.32"));
    machine.write(library, fakeLibrary({}));
    if (one.plugin == PluginCase::Absent)
        return;
    const QString plugin =
        libraries + (one.isQt
                         ? QStringLiteral("qt5/plugins/platforminputcontexts/libfcitx5plugin.so")
                         : QStringLiteral("gtk-3.0/3.0.0/immodules/im-fcitx5.so"));
    const bool isOther = one.plugin == PluginCase::OtherToolkit;
    const QByteArray needed = one.isQt ? (isOther ? "libQt6Core.so.6" : "libQt5Core.so.5 Qt_5.15")
                                       : (isOther ? "libgtk-4.so.1" : "libgtk-3.so.0");
    machine.write(plugin, fakeLibrary(needed, one.plugin == PluginCase::OtherProcessor ? 3 : 62));
    machine.write(libraries + QStringLiteral("gtk-3.0/3.0.0/immodules.cache"),
                  "\"im-fcitx5.so\"\n\"fcitx\" \"Fcitx\" \"fcitx\" \"\" \"zh\"\n");
}

/// Returns the line that sets the variable, 0 for the manager.
int buildPlace(const InputMachine &machine, const Case &one)
{
    if (one.is("manager"))
        return 0;
    const QByteArray value = "fcitx";
    QByteArray text = one.is("launcher") ? "[Desktop Entry]\n" : "";
    if (one.is("wrapper"))
        text = "#!/bin/sh\n";
    text += QByteArray("# a comment\n").repeated(one.number % 4);
    QByteArray line = one.place.text;
    text += line.replace("%1", one.variable()).replace("%2", value);
    machine.write(QLatin1String(one.place.path), text);
    const QByteArray before =
        text.left(text.indexOf(one.is("xinputrc") ? "run_im" : one.variable()));
    return before.count('\n') + 1;
}

void buildApplication(const InputMachine &machine, const Case &one)
{
    FakeProcess process;
    process.id = program;
    process.name = "program";
    process.isManaged = one.display == DisplayKind::Wayland || one.is("manager") ||
                        one.is("environment.d") || one.is("system environment.d");
    process.environment =
        "LANG=zh_CN.UTF-8" + QByteArray(1, '\0') + one.variable() + "=fcitx" + '\0' +
        (one.display == DisplayKind::X11 ? "DISPLAY=:0" : "WAYLAND_DISPLAY=wayland-0") + '\0';
    process.maps = "7f00-7f01 r-xp 00000000 08:01 12 " +
                   (libraries + (one.isQt ? QStringLiteral("libQt5Gui.so.5.15.8")
                                          : QStringLiteral("libgtk-3.so.0.2404.32")))
                       .toUtf8() +
                   '\n';
    if (one.is("launcher"))
        process.environment += "GIO_LAUNCHED_DESKTOP_FILE=/usr/share/applications/app.desktop" +
                               QByteArray(1, '\0') + "GIO_LAUNCHED_DESKTOP_FILE_PID=500" + '\0';
    if (one.is("wrapper")) {
        process.parent = 499;
        machine.add({499, "start", process.environment, {}});
        machine.write(QStringLiteral("/proc/499/cmdline"),
                      "/bin/sh" + QByteArray(1, '\0') + "/opt/app/start" + '\0');
    }
    machine.add(process);
}

InputCause expectedCause(const Case &one)
{
    if (!one.hasFcitx)
        return one.hasIbus ? InputCause::OtherRunning : InputCause::NotRunning;
    switch (one.plugin) {
    case PluginCase::Fine:
        return InputCause::None;
    case PluginCase::Absent:
        return InputCause::PluginMissing;
    case PluginCase::OtherProcessor:
        return InputCause::PluginArchitecture;
    case PluginCase::OtherToolkit:
        break;
    }
    return InputCause::PluginToolkit;
}

doctor::BusAnswer managerOf(const Case &one)
{
    doctor::BusAnswer answer;
    answer.manager = doctor::Environment();
    if (one.is("manager"))
        answer.manager->insert(one.variable(), "fcitx");
    return answer;
}

QString expectedOrigin(const Case &one, int line)
{
    const bool isRead = one.display == DisplayKind::X11 || one.place.isForWayland;
    if (one.is("manager"))
        return QString::number(int(Origin::State::Manager));
    if (!isRead)
        return QString::number(int(Origin::State::Undecided));
    return QStringLiteral("%1 %2:%3")
        .arg(int(Origin::State::Line))
        .arg(QLatin1String(one.place.path))
        .arg(line);
}

} // namespace

/// Each place that can set the input method, with each way in which that can fail.
class InputCausesTest : public QObject
{
    Q_OBJECT

private slots:
    static void eachPlaceAndCauseIsFound();
};

void InputCausesTest::eachPlaceAndCauseIsFound()
{
    InputMachine machine;
    int number = 0;
    for (const PlaceCase &place : places) {
        for (const DisplayKind display : {DisplayKind::X11, DisplayKind::Wayland}) {
            for (int running = 0; running < 4; ++running) {
                for (const PluginCase plugin :
                     {PluginCase::Fine, PluginCase::Absent, PluginCase::OtherProcessor,
                      PluginCase::OtherToolkit}) {
                    const Case one{place,           display, running % 2 == 1, running >= 2, plugin,
                                   number % 2 == 0, number};
                    ++number;
                    machine.clear();
                    buildSession(machine, one);
                    buildPlugin(machine, one);
                    const int line = buildPlace(machine, one);
                    buildApplication(machine, one);
                    const InputReport report = machine.why(program, managerOf(one));
                    const QString seen =
                        QStringLiteral("%1: %2, %3").arg(caseName(one), report.text).arg(line);
                    QVERIFY2(report.cause == expectedCause(one), qPrintable(seen));
                    QVERIFY2(originIn(report, one.variable()) == expectedOrigin(one, line),
                             qPrintable(seen + originIn(report, one.variable())));
                }
            }
        }
    }
    QVERIFY(number >= 300);
}

QTEST_GUILESS_MAIN(InputCausesTest)
#include "tst_inputcauses.moc"
