#include <QDir>

#include <pwd.h>
#include <unistd.h>

#include "tests/programs/checktool/checkedmachine.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::CheckedMachine;
using testsupport::hasLine;
using testsupport::problems;

/// Display, bus, printing and language of the session, with a fake probe program.
class SessionChecksTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutADisplayNothingIsTried()
    {
        CheckedMachine checked;
        checked.answerProbe("echo '{}'; touch \"$0.called\"");
        const QStringList found = problems(checked.check("display"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("This session has no display")}));
        QVERIFY(!QFile::exists(checked.machine.probeProgram + QStringLiteral(".called")));
    }

    void screensAndGraphicsAreToldOf()
    {
        CheckedMachine checked;
        checked.set("DISPLAY", QStringLiteral(":1"));
        checked.answerProbe(displayProbe);
        const QStringList lines = checked.check("display");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("xcb"), QStringLiteral("1920×1080, 800×600")}));
        QVERIFY(hasLine(lines, {QStringLiteral("OpenGL 4.6 is drawn by Card.")}));
    }

    void graphicsWithoutACardAreANote()
    {
        CheckedMachine checked;
        checked.set("DISPLAY", QStringLiteral(":1"));
        checked.answerProbe(QByteArray(displayProbe).replace("Card", "llvmpipe (LLVM)"));
        const QStringList lines = checked.check("display");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("⚠"), QStringLiteral("by the processor")}));
    }

    void graphicsThatCrashAreANote()
    {
        CheckedMachine checked;
        checked.set("DISPLAY", QStringLiteral(":1"));
        checked.answerProbe("[ \"$1\" = opengl ] && kill -SEGV $$\n" + QByteArray(displayProbe));
        const QStringList lines = checked.check("display");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("⚠"), QStringLiteral("OpenGL cannot be used"),
                                QStringLiteral("crash")}));
    }

    void aDisplayThatHangsIsAProblem()
    {
        CheckedMachine checked;
        checked.set("WAYLAND_DISPLAY", QStringLiteral("wayland-0"));
        checked.machine.probeMs = 200;
        checked.answerProbe("exec sleep 600");
        QVERIFY(hasLine(problems(checked.check("display")),
                        {QStringLiteral("WAYLAND_DISPLAY=wayland-0"),
                         QStringLiteral("no answer within 0.2 seconds")}));
    }

    void windowsThatNobodySeesAreAProblem()
    {
        CheckedMachine checked;
        checked.set("QT_QPA_PLATFORM", QStringLiteral("offscreen"));
        checked.answerProbe(QByteArray(displayProbe).replace("xcb", "offscreen"));
        QVERIFY(hasLine(problems(checked.check("display")), {QStringLiteral("nobody sees")}));
    }

    void anotherDisplayCanBeTried()
    {
        CheckedMachine checked;
        checked.set("WAYLAND_DISPLAY", QStringLiteral("wayland-0"));
        checked.answerProbe("echo \"$DISPLAY|$WAYLAND_DISPLAY|$QT_QPA_PLATFORM\" >&2; exit 1");
        QVERIFY(hasLine(problems(checked.check("display", QStringLiteral(":7"))),
                        {QStringLiteral(":7||xcb")}));
        QVERIFY(hasLine(problems(checked.check("display", QStringLiteral("wayland-3"))),
                        {QStringLiteral("|wayland-3|wayland")}));
    }

    void aProbeThatIsMissingIsSaid()
    {
        CheckedMachine checked;
        checked.set("DISPLAY", QStringLiteral(":1"));
        QVERIFY(hasLine(problems(checked.check("display")),
                        {QStringLiteral("vyrEnvProbe cannot be started")}));
    }

    void aProbeThatAnswersNonsenseIsAProblem()
    {
        CheckedMachine checked;
        checked.set("DISPLAY", QStringLiteral(":1"));
        checked.answerProbe("echo nonsense");
        QCOMPARE(problems(checked.check("display")).size(), 1);
        checked.answerProbe("yes");
        checked.machine.probeMs = 300;
        QCOMPARE(problems(checked.check("display")).size(), 1);
    }

    void aSessionWithoutABusIsAProblem()
    {
        CheckedMachine checked;
        checked.answerProbe("echo '{\"names\":[]}'");
        QVERIFY(hasLine(problems(checked.check("dbus")), {QStringLiteral("has no bus")}));
        QVERIFY(hasLine(checked.check("dbus"), {QStringLiteral("XDG_RUNTIME_DIR is not set")}));
    }

    void theBusOfTheRuntimeDirectoryIsFound()
    {
        CheckedMachine checked;
        const QString bus = checked.write(QStringLiteral("run/bus"), {});
        checked.set("XDG_RUNTIME_DIR", QFileInfo(bus).path());
        checked.answerProbe(
            "echo '{\"names\":[\":1.1\",\"org.a\",\"org.b\"]}'; echo $2 > \"$0.bus\"");
        const QStringList lines = checked.check("dbus");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("answers; it has 2 names")}));
        QCOMPARE(testsupport::readFile(checked.machine.probeProgram + QStringLiteral(".bus")),
                 QByteArray("unix:path=" + QFile::encodeName(bus) + '\n'));
    }

    void aBusThatRefusesIsAProblemWithItsReason()
    {
        CheckedMachine checked;
        checked.set("DBUS_SESSION_BUS_ADDRESS", QStringLiteral("unix:path=/nowhere"));
        checked.answerProbe("echo '{\"fault\":\"Connection refused\"}'");
        QVERIFY(
            hasLine(problems(checked.check("dbus")),
                    {QStringLiteral("unix:path=/nowhere does not answer: Connection refused")}));
    }

    void aRuntimeDirectoryOfAnotherUserIsAProblem()
    {
        const passwd *nobody = ::getpwnam("nobody");
        CheckedMachine checked;
        checked.answerProbe("echo '{\"names\":[]}'");
        checked.set("XDG_RUNTIME_DIR", QStringLiteral("/nowhere"));
        QVERIFY(hasLine(problems(checked.check("dbus")), {QStringLiteral("not a directory")}));
        if (::geteuid() == 0 && nobody) {
            checked.makeDirectory(QStringLiteral("run"));
            const QString directory = checked.path(QStringLiteral("run"));
            QCOMPARE(
                ::chown(QFile::encodeName(directory).constData(), nobody->pw_uid, nobody->pw_gid),
                0);
            checked.set("XDG_RUNTIME_DIR", directory);
        } else {
            checked.set("XDG_RUNTIME_DIR", QStringLiteral("/"));
        }
        QVERIFY(hasLine(problems(checked.check("dbus")), {QStringLiteral("another user")}));
    }

    void aPrintingServiceThatDoesNotAnswerIsAProblem()
    {
        CheckedMachine checked;
        checked.answerProbe("echo '{\"fault\":\"Host is down\",\"address\":\"localhost:631\"}'");
        const QStringList found = problems(checked.check("printing"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("localhost:631 does not answer: Host is down"),
                                QStringLiteral("package cups")}));
        checked.answerProbe("exit 1");
        QVERIFY(hasLine(problems(checked.check("printing")), {QStringLiteral("cannot be asked")}));
    }

    void aPrintingServiceWithoutPrintersIsAProblem()
    {
        CheckedMachine checked;
        checked.answerProbe("echo '{\"address\":\"x\",\"printers\":[],\"default\":\"\"}'");
        QVERIFY(
            hasLine(problems(checked.check("printing")), {QStringLiteral("No printer is set")}));
    }

    void printersAreToldOfOneByOne()
    {
        CheckedMachine checked;
        checked.answerProbe(printerProbe);
        const QStringList lines = checked.check("printing");
        QCOMPARE(problems(lines).size(), 2);
        QVERIFY(
            hasLine(lines, {QStringLiteral("✘ The printer b is stopped (media-empty, paused)")}));
        QVERIFY(hasLine(lines, {QStringLiteral("✘ The printer c takes no jobs")}));
        QVERIFY(hasLine(lines, {QStringLiteral("✔ The printer a is ready")}));
        QVERIFY(hasLine(lines, {QStringLiteral("✔ The default printer is a.")}));
    }

    void aDefaultPrinterHasToBeThere()
    {
        CheckedMachine checked;
        checked.answerProbe(
            QByteArray(printerProbe).replace("\"default\":\"a\"", "\"default\":\"\""));
        QVERIFY(hasLine(problems(checked.check("printing")), {QStringLiteral("lpoptions -d a")}));
        checked.answerProbe(
            QByteArray(printerProbe).replace("\"default\":\"a\"", "\"default\":\"z\""));
        QVERIFY(hasLine(problems(checked.check("printing")),
                        {QStringLiteral("The default printer z is not there")}));
    }

    void onePrinterCanBeAskedFor()
    {
        CheckedMachine checked;
        checked.answerProbe(printerProbe);
        QCOMPARE(problems(checked.check("printing", QStringLiteral("a"))), QStringList());
        QVERIFY(hasLine(problems(checked.check("printing", QStringLiteral("z"))),
                        {QStringLiteral("no printer named “z”"), QStringLiteral("a, b, c")}));
    }

    void aValidUtf8LanguageIsFine()
    {
        CheckedMachine checked;
        checked.set("LANG", QStringLiteral("C.UTF-8"));
        QCOMPARE(problems(checked.check("locale")), QStringList());
    }

    void aLanguageThatTheSystemLacksIsAProblem()
    {
        CheckedMachine checked;
        checked.set("LANG", QStringLiteral("C.UTF-8"));
        checked.set("LC_TIME", QStringLiteral("xx_YY.GBK"));
        const QStringList found = problems(checked.check("locale"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("LC_TIME is “xx_YY.GBK”"),
                                QStringLiteral("locale-gen xx_YY.UTF-8")}));
    }

    void anotherEncodingIsAProblem()
    {
        CheckedMachine checked;
        checked.set("LANG", QStringLiteral("C"));
        QVERIFY(hasLine(problems(checked.check("locale")),
                        {QStringLiteral("instead of UTF-8"), QStringLiteral("LANG is “C”")}));
        checked.set("LC_ALL", QStringLiteral("C.UTF-8"));
        const QStringList lines = checked.check("locale");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("⚠ LC_ALL is set")}));
    }

    void thePlainLanguageHasAUtf8OneInItsPlace_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("C") << QStringLiteral("C");
        QTest::newRow("POSIX") << QStringLiteral("POSIX");
    }

    void thePlainLanguageHasAUtf8OneInItsPlace()
    {
        QFETCH(QString, name);
        CheckedMachine checked;
        QVERIFY(hasLine(problems(checked.check("locale", name)),
                        {QStringLiteral("Use C.UTF-8 instead.")}));
        checked.set("LANG", name);
        QVERIFY(hasLine(problems(checked.check("locale")),
                        {QStringLiteral("such as C.UTF-8, and log in")}));
    }

    void noLanguageAtAllIsAProblem()
    {
        QVERIFY(hasLine(problems(CheckedMachine().check("locale")),
                        {QStringLiteral("No language is set")}));
    }

    void aLanguageCanBeAskedFor()
    {
        const CheckedMachine checked;
        QCOMPARE(problems(checked.check("locale", QStringLiteral("C.UTF-8"))), QStringList());
        QCOMPARE(problems(checked.check("locale", QStringLiteral("xx_YY.UTF-8"))).size(), 1);
    }

private:
    static constexpr const char *displayProbe =
        "case $1 in\n"
        "display) echo '{\"platform\":\"xcb\",\"screens\":[\"1920×1080\",\"800×600\"]}' ;;\n"
        "opengl) echo '{\"renderer\":\"Card\",\"version\":\"4.6\"}' ;;\n"
        "*) exit 9 ;;\n"
        "esac";
    static constexpr const char *printerProbe =
        "echo '{\"address\":\"x\",\"default\":\"a\",\"printers\":[{\"name\":\"a\"},"
        "{\"name\":\"b\",\"stopped\":true,\"reasons\":[\"media-empty\",\"paused\"]},"
        "{\"name\":\"c\",\"accepting\":false}]}'";
};

HEADLESS_TEST_MAIN(SessionChecksTest)
#include "tst_sessionchecks.moc"
