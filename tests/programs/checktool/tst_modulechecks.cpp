#include <QDir>
#include <QProcess>

#include "programs/checktool/machine/inputplugins.h"
#include "tests/programs/checktool/checkedmachine.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::CheckedMachine;
using testsupport::hasLine;
using testsupport::problems;

namespace {

const QString libraryDirectory = QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE);

/// Copies a library under another name.
QString copyLibrary(const CheckedMachine &checked, const QString &library, const QString &name)
{
    return checked.write(name,
                         testsupport::readFile(libraryDirectory + QLatin1Char('/') + library));
}

} // namespace

/// Input-method modules and browser plug-ins, in the test's own directories.
class ModuleChecksTest : public QObject
{
    Q_OBJECT

private slots:
    void withoutAnInputMethodThatIsANote()
    {
        const QStringList lines = CheckedMachine().check("input");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("⚠ No input method is chosen")}));
    }

    void whereTheLanguageNeedsOneThatIsAProblem()
    {
        CheckedMachine checked;
        checked.set("LANG", QStringLiteral("zh_CN.UTF-8"));
        QVERIFY(hasLine(problems(checked.check("input")), {QStringLiteral("the language")}));
        checked.set("LC_ALL", QStringLiteral("en_US.UTF-8"));
        QCOMPARE(problems(checked.check("input")), QStringList());
    }

    void whatRunsAndIsNotNamed_data()
    {
        QTest::addColumn<QByteArray>("program");
        QTest::addColumn<QMap<QByteArray, QString>>("session");
        QTest::addColumn<bool>("isProblem");
        const QString display = QStringLiteral(":7");
        const QString wayland = QStringLiteral("wayland-0");
        const QString chinese = QStringLiteral("zh_CN.UTF-8");
        using Session = QMap<QByteArray, QString>;
        QTest::newRow("X11") << QByteArray("fcitx5") << Session{{"DISPLAY", display}} << true;
        QTest::newRow("a Wayland compositor needs no name")
            << QByteArray("fcitx5") << Session{{"DISPLAY", display}, {"WAYLAND_DISPLAY", wayland}}
            << false;
        QTest::newRow("desktops start it for everybody")
            << QByteArray("ibus-daemon") << Session{{"DISPLAY", display}} << false;
        QTest::newRow("the language needs it")
            << QByteArray("ibus-daemon") << Session{{"DISPLAY", display}, {"LANG", chinese}}
            << true;
        QTest::newRow("without a display")
            << QByteArray("ibus-daemon") << Session{{"LANG", chinese}} << false;
    }

    void whatRunsAndIsNotNamed()
    {
        QFETCH(const QByteArray, program);
        using Session = QMap<QByteArray, QString>;
        QFETCH(const Session, session);
        QFETCH(const bool, isProblem);
        CheckedMachine checked;
        for (auto one = session.begin(); one != session.end(); ++one)
            checked.set(one.key().constData(), one.value());
        run(checked, program);
        const QStringList found = problems(checked.check("input"));
        if (isProblem)
            QVERIFY(hasLine(found, {QStringLiteral("no variable names it")}));
        else
            QCOMPARE(found, QStringList());
    }

    void aModuleThatIsMissingIsAProblemWithItsPackage()
    {
        CheckedMachine checked;
        checked.set("QT_IM_MODULE", QStringLiteral("fcitx5"));
        run(checked, "fcitx5");
        const QStringList found = problems(checked.check("input"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("no module for the input method “fcitx5”"),
                                QStringLiteral("fcitx5-frontend-qt5")}));
    }

    void anInputMethodThatRunsWithItsModuleIsFine()
    {
        CheckedMachine checked;
        installModules(checked);
        checked.set("QT_IM_MODULE", QStringLiteral("ibus"));
        checked.set("XMODIFIERS", QStringLiteral("@im=ibus"));
        run(checked, "ibus-daemon");
        const QStringList lines = checked.check("input");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("ibus-daemon runs")}));
    }

    void anInputMethodThatDoesNotRunIsAProblem()
    {
        CheckedMachine checked;
        installModules(checked);
        checked.set("QT_IM_MODULE", QStringLiteral("ibus"));
        run(checked, "fcitx5");
        const QStringList found = problems(checked.check("input"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("“ibus” does not run")}));
    }

    void variablesThatDisagreeAreAProblem()
    {
        CheckedMachine checked;
        installModules(checked);
        run(checked, "ibus-daemon");
        checked.set("QT_IM_MODULE", QStringLiteral("ibus"));
        checked.set("XMODIFIERS", QStringLiteral("@im=fcitx"));
        QVERIFY(hasLine(problems(checked.check("input")),
                        {QStringLiteral("QT_IM_MODULE"), QStringLiteral("“ibus”"),
                         QStringLiteral("XMODIFIERS names “fcitx”")}));
    }

    void fcitx5AnswersToTheNameOfItsForerunner()
    {
        CheckedMachine checked;
        run(checked, "fcitx5");
        checked.set("QT_IM_MODULE", QStringLiteral("fcitx5"));
        checked.set("XMODIFIERS", QStringLiteral("@im=fcitx"));
        QVERIFY(!hasLine(problems(checked.check("input")), {QStringLiteral("XMODIFIERS")}));
    }

    void aModuleWhoseLibrariesCannotBeUsedIsAProblem_data()
    {
        QTest::addColumn<QByteArray>("need");
        QTest::addColumn<QByteArray>("unmet");
        QTest::addColumn<QString>("named");
        const QByteArray version = QByteArray::number(QT_VERSION_MAJOR);
        const QByteArray library = "libQt" + version + "Gui.so.";
        QTest::newRow("missing") << library + version << library + '9'
                                 << QString::fromLatin1(library + '9');
        QTest::newRow("too old") << "Qt_" + version + "_PRIVATE_API"
                                 << QByteArray("Qt_9_PRIVATE_API")
                                 << QString::fromLatin1('/' + library + version);
    }

    void aModuleWhoseLibrariesCannotBeUsedIsAProblem()
    {
        QFETCH(QByteArray, need);
        QFETCH(QByteArray, unmet);
        QFETCH(QString, named);
        CheckedMachine checked;
        installModules(checked);
        QDir modules(checked.path(moduleDirectory));
        const QString path = modules.filePath(modules.entryList(QDir::Files).first());
        QByteArray content = testsupport::readFile(path);
        QVERIFY(content.contains(need));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content.replace(need, unmet));
        file.close();
        checked.set("QT_IM_MODULE", QStringLiteral("ibus"));
        QVERIFY(
            hasLine(problems(checked.check("input")), {QStringLiteral("cannot be loaded"), named}));
    }

    void methodsWithoutAModuleAreFine()
    {
        const CheckedMachine checked;
        QCOMPARE(problems(checked.check("input", QStringLiteral("xim"))), QStringList());
        QVERIFY(hasLine(problems(checked.check("input", QStringLiteral("nonsense"))),
                        {QStringLiteral("“nonsense”")}));
    }

    void withoutAnyPluginDirectoryThatIsAProblem()
    {
        const QStringList found = problems(CheckedMachine().check("plugins"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("None of the directories"),
                                QStringLiteral("/usr/lib/mozilla/plugins")}));
    }

    void theSuitesPluginHasToBeWhereBrowsersLook()
    {
        const CheckedMachine checked;
        const QString plugin = copyLibrary(checked, QStringLiteral("libfontconfig.so.1"),
                                           QStringLiteral("office/addons/npsuite.so"));
        checked.makeDirectory(QStringLiteral("root/usr/lib/mozilla/plugins"));
        const QStringList found = problems(checked.check("plugins"));
        QCOMPARE(found.size(), 1);
        QVERIFY(hasLine(found, {QStringLiteral("No browser finds"), plugin}));
        QProcess shell;
        shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), adviceOf(found.first())});
        QVERIFY(shell.waitForFinished(30000));
        QCOMPARE(shell.exitCode(), 0);
        const QStringList lines = checked.check("plugins");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("✔ Browsers find"), plugin}));
    }

    void pluginsThatCannotBeLoadedAreNamed()
    {
        CheckedMachine checked;
        const QString directory = QStringLiteral("root/usr/lib/mozilla/plugins/");
        checked.write(directory + QStringLiteral("nptext.so"), "no library");
        const QString other = checked.path(directory + QStringLiteral("npgone.so"));
        QVERIFY(QFile::link(QStringLiteral("/nowhere/npgone.so"), other));
        QByteArray content =
            testsupport::readFile(libraryDirectory + QStringLiteral("/libfontconfig.so.1"));
        QVERIFY(content.contains("libfreetype.so.6"));
        checked.write(directory + QStringLiteral("npold.so"),
                      content.replace("libfreetype.so.6", "libfreetype.so.9"));
        const QStringList found = problems(checked.check("plugins"));
        QCOMPARE(found.size(), 3);
        QVERIFY(hasLine(found, {QStringLiteral("nptext.so is damaged")}));
        QVERIFY(hasLine(found, {QStringLiteral("npgone.so is a link to /nowhere/npgone.so")}));
        QVERIFY(hasLine(found, {QStringLiteral("npold.so"), QStringLiteral("libfreetype.so.9")}));
        const QString library = checked.write(QStringLiteral("lib/libfreetype.so.9"), "no library");
        checked.set("LD_LIBRARY_PATH", QFileInfo(library).path());
        QVERIFY(hasLine(problems(checked.check("plugins")), {QStringLiteral("npold.so"), library}));
    }

    void aFurtherPluginDirectoryCanBeNamed()
    {
        const CheckedMachine checked;
        checked.makeDirectory(QStringLiteral("browser"));
        QCOMPARE(problems(checked.check("plugins", checked.path(QStringLiteral("browser")))),
                 QStringList());
        QVERIFY(hasLine(problems(checked.check("plugins", QStringLiteral("/nowhere"))),
                        {QStringLiteral("There is no directory /nowhere.")}));
    }

private:
    const QString moduleDirectory = QStringLiteral("office/plugins/platforminputcontexts");

    /// Copies of Qt's own module for ibus.
    void installModules(const CheckedMachine &checked) const
    {
        const QString name = QStringLiteral("/libibusplatforminputcontextplugin.so");
        programs::Machine real = checked.machine;
        real.root.clear();
        const QString path = programs::InputPlugins::of(real).paths.value(QStringLiteral("ibus"));
        QVERIFY(!path.isEmpty());
        checked.write(moduleDirectory + name, testsupport::readFile(path));
    }

    /// The command at the end of a finding.
    static QString adviceOf(const QString &finding)
    {
        return finding.section(QStringLiteral("with: "), 1).chopped(1);
    }

    static void run(const CheckedMachine &checked, const QByteArray &program)
    {
        checked.write(QStringLiteral("root/proc/1234/comm"), program + '\n');
    }
};

HEADLESS_TEST_MAIN(ModuleChecksTest)
#include "tst_modulechecks.moc"
