#include <QDir>

#include <sys/resource.h>
#include <unistd.h>

#include "standin/checktool/diskspace.h"
#include "standin/checktool/inputplugins.h"
#include "tests/support/checkedmachine.h"
#include "tests/support/headlesstest.h"

using testsupport::CheckedMachine;
using testsupport::hasLine;
using testsupport::problems;

namespace {

const QString libraryDirectory = QStringLiteral("/usr/lib/" LIBRARY_ARCHITECTURE);
const QString conf = QStringLiteral("home/.config/Orvane/Office.conf");

/// The copy of a library under another name.
QString copyLibrary(const CheckedMachine &checked, const QString &library, const QString &name)
{
    return checked.write(name,
                         testsupport::readFile(libraryDirectory + QLatin1Char('/') + library));
}

} // namespace

/// Space, settings, input method and browser plug-ins, in directories of the test's own.
class HomeChecksTest : public QObject
{
    Q_OBJECT

private slots:
    void freeSpaceOfAllThreeDirectoriesIsTold()
    {
        const CheckedMachine checked;
        const QStringList lines = checked.check("space");
        for (const QString &directory :
             {checked.machine.home, checked.machine.temporaryDirectory, checked.machine.suiteHome})
            QVERIFY(hasLine(lines, {directory + QLatin1Char(')')}));
    }

    void aDirectoryCanBeLookedIntoAsWell()
    {
        const CheckedMachine checked;
        QVERIFY(hasLine(checked.check("space", checked.machine.root),
                        {QStringLiteral("The directory asked for"), checked.machine.root}));
        QVERIFY(hasLine(problems(checked.check("space", QStringLiteral("/nowhere"))),
                        {QStringLiteral("There is no directory /nowhere.")}));
    }

    void disksAreToldOfByTheirRoom_data()
    {
        QTest::addColumn<quint64>("megabytes");
        QTest::addColumn<quint64>("files");
        QTest::addColumn<bool>("isReadOnly");
        QTest::addColumn<QString>("line");
        QTest::newRow("room") << quint64(2048) << quint64(5000) << false
                              << QStringLiteral("✔ Home (/x) has 2.00 GiB free.");
        QTest::newRow("little room") << quint64(400) << quint64(5000) << false
                                     << QStringLiteral("⚠ Home (/x) is filling up: 400.00 MiB");
        QTest::newRow("nearly none") << quint64(49) << quint64(5000) << false
                                     << QStringLiteral("✘ Home (/x) is nearly full: 49.00 MiB");
        QTest::newRow("none") << quint64(0) << quint64(5000) << false
                              << QStringLiteral("✘ Home (/x) is nearly full: 0 bytes");
        QTest::newRow("no files") << quint64(2048) << quint64(999) << false
                                  << QStringLiteral("✘ Home (/x) has room for 999 further files");
        QTest::newRow("to be read only")
            << quint64(0) << quint64(0) << true
            << QStringLiteral("✘ Home (/x) is on a disk that can only");
    }

    void disksAreToldOfByTheirRoom()
    {
        QFETCH(quint64, megabytes);
        QFETCH(quint64, files);
        QFETCH(bool, isReadOnly);
        QFETCH(QString, line);
        QLocale::setDefault(QLocale(QLocale::English));
        struct statvfs disk = {};
        disk.f_frsize = 4096;
        disk.f_bavail = megabytes * 256;
        disk.f_files = 10000;
        disk.f_favail = files;
        disk.f_flag = isReadOnly ? ST_RDONLY : 0;
        standin::Findings findings;
        standin::reportDisk(QStringLiteral("Home"), QStringLiteral("/x"), disk, findings);
        const QString text = findings.text();
        QVERIFY2(text.contains(QLatin1Char('\n') + line), qPrintable(text));
    }

    void aDiskThatCountsNoFilesHasRoomForThem()
    {
        struct statvfs disk = {};
        disk.f_frsize = 4096;
        disk.f_bavail = 1000000;
        standin::Findings findings;
        standin::reportDisk(QStringLiteral("Home"), QStringLiteral("/x"), disk, findings);
        QCOMPARE(findings.problemCount(), 0);
    }

    void settingsThatAreNotThereYetAreFine()
    {
        QCOMPARE(problems(CheckedMachine().check("configuration")), QStringList());
    }

    void goodSettingsAreCounted()
    {
        const CheckedMachine checked;
        checked.write(conf, "[a]\nx=1\ny=2\n");
        checked.makeDirectory(QStringLiteral("home/.local/share/Orvane/tmp"));
        const QStringList lines = checked.check("configuration");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("can be read; settings in it: 2.")}));
    }

    void damagedSettingsAreAProblem_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("zeros") << QByteArray(100, '\0');
        QTest::newRow("no settings") << QByteArray("this is no settings file\n");
        QTest::newRow("huge") << QByteArray(17 * 1024 * 1024, 'x');
    }

    void damagedSettingsAreAProblem()
    {
        QFETCH(QByteArray, content);
        const CheckedMachine checked;
        checked.write(conf, content);
        QCOMPARE(problems(checked.check("configuration")).size(), 1);
    }

    void somethingElseInThePlaceOfSettingsIsAProblem()
    {
        CheckedMachine checked;
        checked.makeDirectory(conf);
        QVERIFY(hasLine(problems(checked.check("configuration")), {QStringLiteral("is no file")}));
        checked.set("XDG_CONFIG_HOME", checked.path(QStringLiteral("other")));
        QCOMPARE(problems(checked.check("configuration")), QStringList());
        checked.write(QStringLiteral("other/Orvane"), {});
        QVERIFY(
            hasLine(problems(checked.check("configuration")), {QStringLiteral("is no directory")}));
        checked.write(QStringLiteral("home/.local/share/Orvane/tmp"), {});
        QVERIFY(hasLine(problems(checked.check("configuration")),
                        {QStringLiteral("Orvane/tmp is no directory")}));
    }

    void aLinkToNowhereIsAProblem()
    {
        const CheckedMachine checked;
        checked.makeDirectory(QStringLiteral("home/.config/Orvane"));
        QVERIFY(QFile::link(QStringLiteral("/nowhere/Office.conf"), checked.path(conf)));
        QVERIFY(hasLine(problems(checked.check("configuration")),
                        {QStringLiteral("is a link to /nowhere/Office.conf")}));
    }

    void settingsOfAnotherUserAreAProblem()
    {
        if (::geteuid() != 0)
            QSKIP("only root can give files away");
        const CheckedMachine checked;
        const QByteArray file = QFile::encodeName(checked.write(conf, "[a]\nx=1\n"));
        QCOMPARE(::chown(file.constData(), 12345, 12345), 0);
        QVERIFY(hasLine(problems(checked.check("configuration")),
                        {QStringLiteral("belongs to the user 12345"), QStringLiteral("chown -R")}));
    }

    void withoutAnInputMethodThatIsANote()
    {
        const QStringList lines = CheckedMachine().check("input");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("⚠ No input method is chosen")}));
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

    void aModuleWhoseLibrariesAreMissingIsAProblem()
    {
        CheckedMachine checked;
        installModules(checked);
        QDir modules(checked.path(moduleDirectory));
        const QString path = modules.filePath(modules.entryList(QDir::Files).first());
        QByteArray content = testsupport::readFile(path);
        QVERIFY(content.contains("libQt5Gui.so.5"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content.replace("libQt5Gui.so.5", "libQt5Gui.so.9"));
        file.close();
        checked.set("QT_IM_MODULE", QStringLiteral("ibus"));
        QVERIFY(hasLine(problems(checked.check("input")), {QStringLiteral("libQt5Gui.so.9")}));
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
        checked.makeDirectory(QStringLiteral("home/.mozilla/plugins"));
        const QStringList found = problems(checked.check("plugins"));
        QCOMPARE(found.size(), 1);
        QVERIFY(
            hasLine(found, {QStringLiteral("No browser finds"), plugin, QStringLiteral("ln -s")}));
        QVERIFY(
            QFile::link(plugin, checked.path(QStringLiteral("home/.mozilla/plugins/npsuite.so"))));
        const QStringList lines = checked.check("plugins");
        QCOMPARE(problems(lines), QStringList());
        QVERIFY(hasLine(lines, {QStringLiteral("✔ Browsers find"), plugin}));
    }

    void pluginsThatCannotBeLoadedAreNamed()
    {
        const CheckedMachine checked;
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
        standin::Machine real = checked.machine;
        real.root.clear();
        const QString path = standin::InputPlugins::of(real).paths.value(QStringLiteral("ibus"));
        QVERIFY(!path.isEmpty());
        checked.write(moduleDirectory + name, testsupport::readFile(path));
    }

    static void run(const CheckedMachine &checked, const QByteArray &program)
    {
        checked.write(QStringLiteral("root/proc/1234/comm"), program + '\n');
    }
};

HEADLESS_TEST_MAIN(HomeChecksTest)
#include "tst_homechecks.moc"
