#include <QProcess>

#include <array>
#include <random>

#include <sys/stat.h>

#include "doctor/why/input/places/environmentfiles.h"
#include "doctor/why/input/places/shelltext.h"
#include "doctor/why/input/remedy.h"
#include "tests/doctor/why/input/inputmachine.h"

using doctor::InputCause;
using doctor::InputReport;
using doctor::Origin;

namespace {

constexpr qint64 application = 500;
const QString libraries = QStringLiteral("/usr/lib/x86_64-linux-gnu/");

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
    process.id = application;
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

QString stateAndLines(const Origin &origin)
{
    QStringList told{QString::number(int(origin.state))};
    for (const doctor::Setting &line : origin.lines)
        told.append(doctor::placeText(line));
    return told.join(QLatin1Char(' '));
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

/// Where a process gets its input method from, and what keeps it from working.
class WhyInputTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_machine.clear(); }
    void eachPlaceAndCauseIsFound();
    void bashSetsWhatTheReaderSays();
    void systemdSetsWhatTheReaderSays();
    void laterPlacesWin();
    void whatIsConditionalIsNotDecided_data();
    void whatIsConditionalIsNotDecided();
    void aValueFromTheTerminalIsNotTheSessions();
    void nothingIsWrongWithoutAnInputMethodLanguage();
    void theSessionIsNotTheAskingShell();
    void unreadablePlacesAreSaidAndTheRestIsAnswered();
    void endedAndForeignProcessesAreSaid();
    void otherBusesAreSaid();
    void staleAddressesOfIbusAreSaid();
    void fcitxServesProgramsThatLookForIbus();
    void pluginsOfASandboxAreLookedForInIt();
    void whatGtkIsToldElsewhereIsNoAlarm();
    void aNewerPluginIsForAnotherQt();
    void theRemedyChangesOneLine();
    void aMissingVariableIsAdded();

private:
    /// The value of QT_IM_MODULE behind each script.
    QVector<QByteArray> takenByBash(int count) const;
    void addApplication(const QByteArray &environment, const QString &library = {}) const
    {
        QByteArray text = environment;
        m_machine.add({application, "program", text.replace(' ', '\0'),
                       "1-2 r-xp 0 0 0 " + library.toUtf8() + '\n'});
    }
    QString originIn(const InputReport &report, const QByteArray &variable) const
    {
        return stateAndLines(report.named(variable)->origin);
    }

    InputMachine m_machine;
};

void WhyInputTest::eachPlaceAndCauseIsFound()
{
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
                    m_machine.clear();
                    buildSession(m_machine, one);
                    buildPlugin(m_machine, one);
                    const int line = buildPlace(m_machine, one);
                    buildApplication(m_machine, one);
                    const InputReport report = m_machine.why(application, managerOf(one));
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

QVector<QByteArray> WhyInputTest::takenByBash(int count) const
{
    QProcess bash;
    bash.setWorkingDirectory(m_machine.located(QStringLiteral("/scripts")));
    bash.start(
        QStringLiteral("/bin/bash"),
        {QStringLiteral("-c"),
         QStringLiteral("unset QT_IM_MODULE; for ((i = 0; i < $0; i++)); do (. ./$i >/dev/null "
                        "2>&1; printenv QT_IM_MODULE || echo); done"),
         QString::number(count)});
    // A longer run takes its time.
    if (!bash.waitForFinished(30000 + 20 * count))
        return {};
    QVector<QByteArray> values;
    for (const QByteArray &line : bash.readAllStandardOutput().split('\n'))
        values.append(line);
    values.removeLast();
    return values;
}

/// Each value is the number of its line, so that bash tells which line it took.
void WhyInputTest::bashSetsWhatTheReaderSays()
{
    const QVector<QByteArray> lines{
        "export QT_IM_MODULE=@",
        "QT_IM_MODULE=@",
        "export QT_IM_MODULE",
        "unset QT_IM_MODULE",
        "if true; then export QT_IM_MODULE=@; fi",
        "if false; then export QT_IM_MODULE=@; fi",
        "f() { export QT_IM_MODULE=@; return; }",
        "f",
        "[ -n \"$NONE\" ] && export QT_IM_MODULE=@",
        "[ -z \"$NONE\" ] || export QT_IM_MODULE=@",
        "(export QT_IM_MODULE=@)",
        "{ export QT_IM_MODULE=@; }",
        "QT_IM_MODULE=@ true",
        "export OTHER=1 \"QT_IM_MODULE=\"@",
        "export QT_IM_MODULE='@' 2>/dev/null",
        "export QT_IM_MODULE=@ | cat",
        "export QT_IM_MODULE=@ &",
        "cat >/dev/null <<END\nexport QT_IM_MODULE=@\nEND",
        "echo 'export\nQT_IM_MODULE=@'",
        "case a in a) export QT_IM_MODULE=@;; b|c) true;; esac",
        "for i in 1 2; do export QT_IM_MODULE=@; done",
        "X=$(echo \")\" ; export QT_IM_MODULE=@)",
        "[[ a == a && b == b ]] && export QT_IM_MODULE=@",
        "set -a",
        "set +a",
        "[ -z x ] && return",
        "# export QT_IM_MODULE=@",
        "true \\\n  && export QT_IM_MODULE=@",
        "declare -x QT_IM_MODULE=@; true",
        "export -n QT_IM_MODULE",
        "eval 'export QT_IM_MODULE=@'",
        "return",
    };
    std::mt19937 random(7);
    const auto drawn = [&random](int below) { return int(random() % unsigned(below)); };
    const int count = qEnvironmentVariableIsSet("WHY_INPUT_SCRIPTS")
                          ? qEnvironmentVariableIntValue("WHY_INPUT_SCRIPTS")
                          : 200;
    QVector<QByteArray> scripts;
    for (int i = 0; i < count; ++i) {
        QByteArray script;
        for (int left = 1 + drawn(6); left > 0; --left) {
            QByteArray line = lines.at(drawn(lines.size()));
            const int at = line.split('@').constFirst().count('\n');
            script += line.replace('@', QByteArray::number(script.count('\n') + 1 + at)) + '\n';
        }
        m_machine.write(QStringLiteral("/scripts/%1").arg(i), script);
        scripts.append(script);
    }
    const QVector<QByteArray> values = takenByBash(count);
    QCOMPARE(values.size(), count);
    int decided = 0;
    for (int i = 0; i < count; ++i) {
        const QByteArray &value = values.at(i);
        const QByteArray shown = scripts.at(i) + "took " + value;
        m_machine.write(QStringLiteral("/home/tester/.profile"), scripts.at(i));
        addApplication("DISPLAY=:0" + (value.isEmpty() ? "" : " QT_IM_MODULE=" + value));
        const InputReport report = m_machine.why(application);
        const Origin &origin = report.named("QT_IM_MODULE")->origin;
        if (origin.state == Origin::State::Line && !value.isEmpty()) {
            QVERIFY2(origin.lines.constFirst().line == value.toInt(), shown.constData());
            ++decided;
        }
        // A line that sets something for certain does set it. What eval runs is not read.
        QVERIFY2(shown.contains("eval") || !origin.contradiction || !origin.lines.isEmpty(),
                 shown.constData());
    }
    QVERIFY2(decided > count / 5, qPrintable(QString::number(decided)));
}

void WhyInputTest::systemdSetsWhatTheReaderSays()
{
    const QString generator = QStringLiteral(
        "/usr/lib/systemd/user-environment-generators/30-systemd-environment-d-generator");
    if (!QFile::exists(generator))
        QSKIP("systemd is not here");
    const QString path = QStringLiteral("/home/tester/.config/environment.d/a.conf");
    for (const char *text :
         {"GTK_IM_MODULE=a", "GTK_IM_MODULE=\"a b\"", "GTK_IM_MODULE='a'b", "GTK_IM_MODULE=a  ",
          "  GTK_IM_MODULE=a", "#GTK_IM_MODULE=a", ";GTK_IM_MODULE=a", "GTK_IM_MODULE=a#b",
          "GTK_IM_MODULE=a\\\nb", "export GTK_IM_MODULE=a", "GTK_IM_MODULE=\"a\\\"b\"",
          "GTK_IM_MODULE=a\\ b", "GTK_IM_MODULE=a\nGTK_IM_MODULE=b", "GTK_IM_MODULE = a"}) {
        m_machine.write(path, QByteArray(text) + '\n');
        QProcess process;
        process.setProcessEnvironment([this] {
            QProcessEnvironment environment;
            environment.insert(QStringLiteral("HOME"), m_machine.located(InputMachine::home()));
            return environment;
        }());
        process.start(generator, {});
        QVERIFY(process.waitForFinished());
        QByteArray real;
        for (const QByteArray &line : process.readAllStandardOutput().split('\n')) {
            if (line.startsWith("GTK_IM_MODULE="))
                real = line.mid(14);
        }
        const QVector<doctor::Setting> read =
            doctor::settingsOfEnvironmentD(QByteArray(text) + '\n');
        QByteArray ours = read.isEmpty() ? QByteArray() : read.last().value.value_or("?");
        // It quotes what a shell would take apart.
        if (real.startsWith("$'"))
            real = real.mid(2, real.size() - 3).replace("\\\"", "\"");
        else if (real.startsWith('"'))
            real = real.mid(1, real.size() - 2).replace("\\\"", "\"");
        QVERIFY2(ours == real,
                 (QByteArray(text) + ": " + ours + ", but really " + real).constData());
    }
}

void WhyInputTest::laterPlacesWin()
{
    addApplication("QT_IM_MODULE=fcitx DISPLAY=:0");
    m_machine.write(QStringLiteral("/etc/environment"), "QT_IM_MODULE=fcitx\n");
    m_machine.write(QStringLiteral("/home/tester/.profile"), "x=1\nexport QT_IM_MODULE=fcitx\n");
    QCOMPARE(originIn(m_machine.why(application), "QT_IM_MODULE"),
             QStringLiteral("1 /home/tester/.profile:2"));
    // The process has what an earlier place gives: the file has changed since, or another set it.
    m_machine.write(QStringLiteral("/home/tester/.profile"), "export QT_IM_MODULE=ibus\n");
    const InputReport report = m_machine.why(application);
    QCOMPARE(originIn(report, "QT_IM_MODULE"), QString::number(int(Origin::State::Undecided)));
    QCOMPARE(doctor::placeText(*report.named("QT_IM_MODULE")->origin.contradiction),
             QStringLiteral("/home/tester/.profile:1"));
}

void WhyInputTest::whatIsConditionalIsNotDecided_data()
{
    QTest::addColumn<QByteArray>("script");
    const auto row = [](const char *name, const char *script) {
        QTest::newRow(name) << QByteArray(script);
    };
    row("condition", "if [ -n \"$X\" ]; then export QT_IM_MODULE=fcitx; fi\n");
    row("list", "[ -n \"$X\" ] && export QT_IM_MODULE=fcitx\n");
    row("substitution", "export QT_IM_MODULE=$METHOD\n");
    row("default", "export QT_IM_MODULE=\"${METHOD:-fcitx}\"\n");
    row("command", "export QT_IM_MODULE=`method`\n");
    row("may have ended", "[ -n \"$X\" ] || return\nexport QT_IM_MODULE=fcitx\n");
    row("function", "f() { export QT_IM_MODULE=fcitx; }\nf\n");
}

void WhyInputTest::whatIsConditionalIsNotDecided()
{
    QFETCH(QByteArray, script);
    addApplication("QT_IM_MODULE=fcitx DISPLAY=:0");
    m_machine.write(QStringLiteral("/home/tester/.profile"), script);
    const QString line = QString::number(script.left(script.indexOf("export")).count('\n') + 1);
    QCOMPARE(originIn(m_machine.why(application), "QT_IM_MODULE"),
             QString::number(int(Origin::State::Undecided)) +
                 QStringLiteral(" /home/tester/.profile:") + line);
}

void WhyInputTest::aValueFromTheTerminalIsNotTheSessions()
{
    m_machine.write(QStringLiteral("/etc/environment"), "QT_IM_MODULE=fcitx\n");
    m_machine.add({400, "bash", "DISPLAY=:0", {}});
    m_machine.add(
        {application, "program", QByteArray("DISPLAY=:0\0QT_IM_MODULE=fcitx", 29), {}, 400});
    QCOMPARE(originIn(m_machine.why(application), "QT_IM_MODULE"),
             QString::number(int(Origin::State::Undecided)));
}

void WhyInputTest::nothingIsWrongWithoutAnInputMethodLanguage()
{
    addApplication("LANG=de_DE.UTF-8 DISPLAY=:0",
                   libraries + QStringLiteral("libQt5Gui.so.5.15.8"));
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
    // Desktops start it for everybody.
    m_machine.add({61, "ibus-daemon", {}, {}});
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
    m_machine.clear();
    addApplication("LANG=zh_CN.UTF-8 DISPLAY=:0");
    QCOMPARE(m_machine.why(application).cause, InputCause::NoneInstalled);
}

void WhyInputTest::theSessionIsNotTheAskingShell()
{
    qputenv("XMODIFIERS", "@im=asking");
    QCOMPARE(m_machine.why({}).cause, InputCause::Undecided);
    m_machine.add({300, "gnome-shell", QByteArray("XMODIFIERS=@im=ibus\0DISPLAY=:0", 30), {}});
    m_machine.add({60, "fcitx5", {}, {}});
    const InputReport report = m_machine.why({});
    qunsetenv("XMODIFIERS");
    QCOMPARE(report.value("XMODIFIERS"), QByteArray("@im=ibus"));
    QCOMPARE(report.cause, InputCause::OtherRunning);
    QCOMPARE(report.wanted, QByteArray("@im=fcitx"));
    QVERIFY(!report.isProcess);
}

void WhyInputTest::unreadablePlacesAreSaidAndTheRestIsAnswered()
{
    addApplication("QT_IM_MODULE=fcitx XMODIFIERS=\x1b[31m DISPLAY=:0");
    m_machine.write(QStringLiteral("/etc/environment"), "QT_IM_MODULE=fcitx\n");
    const QByteArray profile = QFile::encodeName(m_machine.located(QStringLiteral("/etc/profile")));
    QCOMPARE(::mkfifo(profile.constData(), 0600), 0);
    m_machine.write(QStringLiteral("/home/tester/.profile"), QByteArray(2 << 20, '\n'));
    const InputReport report = m_machine.why(application);
    QCOMPARE(report.unread.size(), 2);
    QCOMPARE(report.unread.at(0).path, QStringLiteral("/etc/profile"));
    QCOMPARE(report.unread.at(1).path, QStringLiteral("/home/tester/.profile"));
    // Any of them may have set it.
    QCOMPARE(originIn(report, "QT_IM_MODULE"),
             QStringLiteral("3 /home/tester/.profile /etc/profile /etc/environment:1"));
}

void WhyInputTest::endedAndForeignProcessesAreSaid()
{
    QCOMPARE(m_machine.why(999).text,
             QStringLiteral("There is no process 999, or it has just ended."));
    addApplication("DISPLAY=:0");
    // The kernel refuses to show it.
    const QString environment = m_machine.located(QStringLiteral("/proc/500/environ"));
    QVERIFY(QFile::remove(environment) && QDir().mkdir(environment));
    const InputReport report = m_machine.why(application);
    QCOMPARE(report.cause, InputCause::Undecided);
    QVERIFY2(report.text.contains(QStringLiteral("another user")), qPrintable(report.text));
}

void WhyInputTest::otherBusesAreSaid()
{
    m_machine.add({60, "fcitx5", "DBUS_SESSION_BUS_ADDRESS=unix:path=/a,guid=1", {}});
    addApplication("XMODIFIERS=@im=fcitx DBUS_SESSION_BUS_ADDRESS=unix:path=/a,guid=2 DISPLAY=:0");
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
    addApplication("XMODIFIERS=@im=fcitx DBUS_SESSION_BUS_ADDRESS=unix:path=/b DISPLAY=:0");
    QCOMPARE(m_machine.why(application).cause, InputCause::OtherBus);
}

void WhyInputTest::staleAddressesOfIbusAreSaid()
{
    m_machine.add({61, "ibus-daemon", {}, {}});
    addApplication("XMODIFIERS=@im=ibus DISPLAY=:7.0");
    QCOMPARE(m_machine.why(application).cause, InputCause::NoAddress);
    const QString file = QStringLiteral("/home/tester/.config/ibus/bus/0123456789abcdef-unix-7");
    m_machine.write(file, "IBUS_ADDRESS=unix:path=/x\nIBUS_DAEMON_PID=62\n");
    QCOMPARE(m_machine.why(application).cause, InputCause::NoAddress);
    m_machine.write(file, "IBUS_ADDRESS=unix:path=/x\nIBUS_DAEMON_PID=61\n");
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
}

void WhyInputTest::fcitxServesProgramsThatLookForIbus()
{
    m_machine.add({60, "fcitx5", {}, {}});
    addApplication("XMODIFIERS=@im=ibus DISPLAY=:7");
    QCOMPARE(m_machine.why(application).cause, InputCause::OtherRunning);
    m_machine.write(QStringLiteral("/home/tester/.config/ibus/bus/0123456789abcdef-unix-7"),
                    "IBUS_ADDRESS=unix:path=/x\nIBUS_DAEMON_PID=60\n");
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
}

void WhyInputTest::pluginsOfASandboxAreLookedForInIt()
{
    const QString library = libraries + QStringLiteral("libQt5Gui.so.5.15.8");
    const QString plugin =
        libraries + QStringLiteral("qt5/plugins/platforminputcontexts/libfcitx5plugin.so");
    const QString root = QStringLiteral("/proc/500/root");
    m_machine.add({60, "fcitx5", {}, {}});
    addApplication("QT_IM_MODULE=fcitx DISPLAY=:7 FLATPAK_ID=a.b.c", library);
    m_machine.write(plugin, fakeLibrary("libQt5Core.so.5"));
    m_machine.write(root + library, fakeLibrary({}));
    const InputReport report = m_machine.why(application);
    QCOMPARE(report.cause, InputCause::PluginMissing);
    QVERIFY2(report.text.contains(QStringLiteral("Flatpak")), qPrintable(report.text));
    m_machine.write(root + plugin, fakeLibrary("libQt5Core.so.5"));
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
}

void WhyInputTest::whatGtkIsToldElsewhereIsNoAlarm()
{
    const QString library = libraries + QStringLiteral("libgtk-3.so.0.2404.32");
    const QString plugin = libraries + QStringLiteral("gtk-3.0/3.0.0/immodules/im-fcitx5.so");
    const QString list = libraries + QStringLiteral("gtk-3.0/3.0.0/immodules.cache");
    m_machine.add({60, "fcitx5", {}, {}});
    m_machine.write(library, fakeLibrary({}));
    m_machine.write(plugin, fakeLibrary("libgtk-3.so.0"));
    m_machine.write(list, "\"fcitx\" \"Fcitx\" \"fcitx\" \"\" \"ja:ko\"\n");
    addApplication("LANG=zh_CN.UTF-8 DISPLAY=:7", library);
    QCOMPARE(m_machine.why(application).cause, InputCause::VariableMissing);
    m_machine.write(list, "\"fcitx\" \"Fcitx\" \"fcitx\" \"\" \"ja:ko:zh:*\"\n");
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
    m_machine.write(list, "\"fcitx\" \"Fcitx\" \"fcitx\" \"\" \"ja:ko\"\n");
    m_machine.write(QStringLiteral("/home/tester/.config/gtk-3.0/settings.ini"),
                    "[Settings]\ngtk-im-module=fcitx\n");
    QCOMPARE(m_machine.why(application).cause, InputCause::None);
    m_machine.write(list, {});
    QCOMPARE(m_machine.why(application).cause, InputCause::PluginUnlisted);
}

void WhyInputTest::aNewerPluginIsForAnotherQt()
{
    const QString library = libraries + QStringLiteral("libQt5Gui.so.5.12.8");
    m_machine.add({60, "fcitx5", {}, {}});
    m_machine.write(library, fakeLibrary({}));
    m_machine.write(libraries +
                        QStringLiteral("qt5/plugins/platforminputcontexts/libfcitx5plugin.so"),
                    fakeLibrary("libQt5Core.so.5 Qt_5.9 Qt_5.15 Qt_5_PRIVATE_API"));
    addApplication("QT_IM_MODULE=fcitx DISPLAY=:7", library);
    const InputReport report = m_machine.why(application);
    QCOMPARE(report.cause, InputCause::PluginToolkit);
    QCOMPARE(report.plugin.detail, QStringLiteral("Qt 5.15"));
}

void WhyInputTest::theRemedyChangesOneLine()
{
    m_machine.add({61, "ibus-daemon", {}, {}});
    addApplication("XMODIFIERS=@im=fcitx LANG=zh_CN DISPLAY=:0");
    const QByteArray before = "# fcitx\r\nexport XMODIFIERS='@im=fcitx' # fcitx\nx=1";
    m_machine.write(QStringLiteral("/home/tester/.profile"), before);
    const InputReport report = m_machine.why(application);
    QCOMPARE(report.cause, InputCause::OtherRunning);
    const auto remedy = doctor::remedyFor(m_machine.machine(), report);
    QVERIFY(remedy && remedy->isOwn);
    QCOMPARE(remedy->changes.size(), 1);
    const doctor::Change &change = remedy->changes.constFirst();
    QCOMPARE(*change.before, before);
    QCOMPARE(*change.after, QByteArray("# fcitx\r\nexport XMODIFIERS='@im=ibus' # fcitx\nx=1"));
    QVERIFY(!doctor::isInForce(m_machine.machine(), report, *remedy));
    m_machine.write(QStringLiteral("/home/tester/.profile"), *change.after);
    QVERIFY(doctor::isInForce(m_machine.machine(), report, *remedy));
}

void WhyInputTest::aMissingVariableIsAdded()
{
    m_machine.add({60, "fcitx5", {}, {}});
    m_machine.add({40, "lightdm", {}, {}});
    addApplication("DISPLAY=:0", libraries + QStringLiteral("libQt5Gui.so.5.15.8"));
    m_machine.write(QStringLiteral("/home/tester/.xprofile"), "x=1");
    const InputReport report = m_machine.why(application);
    QCOMPARE(report.cause, InputCause::VariableMissing);
    const auto remedy = doctor::remedyFor(m_machine.machine(), report);
    QVERIFY(remedy);
    const QByteArray after = *remedy->changes.constFirst().after;
    QCOMPARE(after, QByteArray("x=1\nexport QT_IM_MODULE=fcitx\n"));
    m_machine.write(QStringLiteral("/home/tester/.xprofile"), after);
    QVERIFY(doctor::isInForce(m_machine.machine(), report, *remedy));
}

QTEST_GUILESS_MAIN(WhyInputTest)
#include "tst_whyinput.moc"
