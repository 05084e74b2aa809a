#include <sys/stat.h>

#include "doctor/why/input/remedy.h"
#include "tests/doctor/why/input/inputmachine.h"

using doctor::InputCause;
using doctor::InputReport;
using doctor::Origin;

/// Where a process gets its input method from, and what keeps it from working.
class WhyInputTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_machine.clear(); }
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
    InputMachine m_machine;
};

void WhyInputTest::laterPlacesWin()
{
    m_machine.addProgram("QT_IM_MODULE=fcitx DISPLAY=:0");
    m_machine.write(QStringLiteral("/etc/environment"), "QT_IM_MODULE=fcitx\n");
    m_machine.write(QStringLiteral("/home/tester/.profile"), "x=1\nexport QT_IM_MODULE=fcitx\n");
    QCOMPARE(originIn(m_machine.why(program), "QT_IM_MODULE"),
             QStringLiteral("1 /home/tester/.profile:2"));
    // The process has what an earlier place gives: the file has changed since, or another set it.
    m_machine.write(QStringLiteral("/home/tester/.profile"), "export QT_IM_MODULE=ibus\n");
    const InputReport report = m_machine.why(program);
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
    m_machine.addProgram("QT_IM_MODULE=fcitx DISPLAY=:0");
    m_machine.write(QStringLiteral("/home/tester/.profile"), script);
    const QString line = QString::number(script.left(script.indexOf("export")).count('\n') + 1);
    QCOMPARE(originIn(m_machine.why(program), "QT_IM_MODULE"),
             QString::number(int(Origin::State::Undecided)) +
                 QStringLiteral(" /home/tester/.profile:") + line);
}

void WhyInputTest::aValueFromTheTerminalIsNotTheSessions()
{
    m_machine.write(QStringLiteral("/etc/environment"), "QT_IM_MODULE=fcitx\n");
    m_machine.add({400, "bash", "DISPLAY=:0", {}});
    m_machine.add({program, "program", QByteArray("DISPLAY=:0\0QT_IM_MODULE=fcitx", 29), {}, 400});
    QCOMPARE(originIn(m_machine.why(program), "QT_IM_MODULE"),
             QString::number(int(Origin::State::Undecided)));
}

void WhyInputTest::nothingIsWrongWithoutAnInputMethodLanguage()
{
    m_machine.addProgram("LANG=de_DE.UTF-8 DISPLAY=:0",
                         libraries + QStringLiteral("libQt5Gui.so.5.15.8"));
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
    // Desktops start it for everybody.
    m_machine.add({61, "ibus-daemon", {}, {}});
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
    m_machine.clear();
    m_machine.addProgram("LANG=zh_CN.UTF-8 DISPLAY=:0");
    QCOMPARE(m_machine.why(program).cause, InputCause::NoneInstalled);
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
    m_machine.addProgram("QT_IM_MODULE=fcitx XMODIFIERS=\x1b[31m DISPLAY=:0");
    m_machine.write(QStringLiteral("/etc/environment"), "QT_IM_MODULE=fcitx\n");
    const QByteArray profile = QFile::encodeName(m_machine.located(QStringLiteral("/etc/profile")));
    QCOMPARE(::mkfifo(profile.constData(), 0600), 0);
    m_machine.write(QStringLiteral("/home/tester/.profile"), QByteArray(2 << 20, '\n'));
    const InputReport report = m_machine.why(program);
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
    m_machine.addProgram("DISPLAY=:0");
    // The kernel refuses to show it.
    const QString environment = m_machine.located(QStringLiteral("/proc/500/environ"));
    QVERIFY(QFile::remove(environment) && QDir().mkdir(environment));
    const InputReport report = m_machine.why(program);
    QCOMPARE(report.cause, InputCause::Undecided);
    QVERIFY2(report.text.contains(QStringLiteral("another user")), qPrintable(report.text));
}

void WhyInputTest::otherBusesAreSaid()
{
    m_machine.add({60, "fcitx5", "DBUS_SESSION_BUS_ADDRESS=unix:path=/a,guid=1", {}});
    m_machine.addProgram(
        "XMODIFIERS=@im=fcitx DBUS_SESSION_BUS_ADDRESS=unix:path=/a,guid=2 DISPLAY=:0");
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
    m_machine.addProgram("XMODIFIERS=@im=fcitx DBUS_SESSION_BUS_ADDRESS=unix:path=/b DISPLAY=:0");
    QCOMPARE(m_machine.why(program).cause, InputCause::OtherBus);
}

void WhyInputTest::staleAddressesOfIbusAreSaid()
{
    m_machine.add({61, "ibus-daemon", {}, {}});
    m_machine.addProgram("XMODIFIERS=@im=ibus DISPLAY=:7.0");
    QCOMPARE(m_machine.why(program).cause, InputCause::NoAddress);
    const QString file = QStringLiteral("/home/tester/.config/ibus/bus/0123456789abcdef-unix-7");
    m_machine.write(file, "IBUS_ADDRESS=unix:path=/x\nIBUS_DAEMON_PID=62\n");
    QCOMPARE(m_machine.why(program).cause, InputCause::NoAddress);
    m_machine.write(file, "IBUS_ADDRESS=unix:path=/x\nIBUS_DAEMON_PID=61\n");
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
}

void WhyInputTest::fcitxServesProgramsThatLookForIbus()
{
    m_machine.add({60, "fcitx5", {}, {}});
    m_machine.addProgram("XMODIFIERS=@im=ibus DISPLAY=:7");
    QCOMPARE(m_machine.why(program).cause, InputCause::OtherRunning);
    m_machine.write(QStringLiteral("/home/tester/.config/ibus/bus/0123456789abcdef-unix-7"),
                    "IBUS_ADDRESS=unix:path=/x\nIBUS_DAEMON_PID=60\n");
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
}

void WhyInputTest::pluginsOfASandboxAreLookedForInIt()
{
    const QString library = libraries + QStringLiteral("libQt5Gui.so.5.15.8");
    const QString plugin =
        libraries + QStringLiteral("qt5/plugins/platforminputcontexts/libfcitx5plugin.so");
    const QString root = QStringLiteral("/proc/500/root");
    m_machine.add({60, "fcitx5", {}, {}});
    m_machine.addProgram("QT_IM_MODULE=fcitx DISPLAY=:7 FLATPAK_ID=a.b.c", library);
    m_machine.write(plugin, fakeLibrary("libQt5Core.so.5"));
    m_machine.write(root + library, fakeLibrary({}));
    const InputReport report = m_machine.why(program);
    QCOMPARE(report.cause, InputCause::PluginMissing);
    QVERIFY2(report.text.contains(QStringLiteral("Flatpak")), qPrintable(report.text));
    m_machine.write(root + plugin, fakeLibrary("libQt5Core.so.5"));
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
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
    m_machine.addProgram("LANG=zh_CN.UTF-8 DISPLAY=:7", library);
    QCOMPARE(m_machine.why(program).cause, InputCause::VariableMissing);
    m_machine.write(list, "\"fcitx\" \"Fcitx\" \"fcitx\" \"\" \"ja:ko:zh:*\"\n");
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
    m_machine.write(list, "\"fcitx\" \"Fcitx\" \"fcitx\" \"\" \"ja:ko\"\n");
    m_machine.write(QStringLiteral("/home/tester/.config/gtk-3.0/settings.ini"),
                    "[Settings]\ngtk-im-module=fcitx\n");
    QCOMPARE(m_machine.why(program).cause, InputCause::None);
    m_machine.write(list, {});
    QCOMPARE(m_machine.why(program).cause, InputCause::PluginUnlisted);
}

void WhyInputTest::aNewerPluginIsForAnotherQt()
{
    const QString library = libraries + QStringLiteral("libQt5Gui.so.5.12.8");
    m_machine.add({60, "fcitx5", {}, {}});
    m_machine.write(library, fakeLibrary({}));
    m_machine.write(libraries +
                        QStringLiteral("qt5/plugins/platforminputcontexts/libfcitx5plugin.so"),
                    fakeLibrary("libQt5Core.so.5 Qt_5.9 Qt_5.15 Qt_5_PRIVATE_API"));
    m_machine.addProgram("QT_IM_MODULE=fcitx DISPLAY=:7", library);
    const InputReport report = m_machine.why(program);
    QCOMPARE(report.cause, InputCause::PluginToolkit);
    QCOMPARE(report.plugin.detail, QStringLiteral("Qt 5.15"));
}

void WhyInputTest::theRemedyChangesOneLine()
{
    m_machine.add({61, "ibus-daemon", {}, {}});
    m_machine.addProgram("XMODIFIERS=@im=fcitx LANG=zh_CN DISPLAY=:0");
    const QByteArray before = "# fcitx\r\nexport XMODIFIERS='@im=fcitx' # fcitx\nx=1";
    m_machine.write(QStringLiteral("/home/tester/.profile"), before);
    const InputReport report = m_machine.why(program);
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
    m_machine.addProgram("DISPLAY=:0", libraries + QStringLiteral("libQt5Gui.so.5.15.8"));
    m_machine.write(QStringLiteral("/home/tester/.xprofile"), "x=1");
    const InputReport report = m_machine.why(program);
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
