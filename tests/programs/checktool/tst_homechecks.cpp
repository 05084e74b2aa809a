#include <QDir>

#include <unistd.h>

#include "programs/checktool/checks/diskspace.h"
#include "tests/programs/checktool/checkedmachine.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::CheckedMachine;
using testsupport::hasLine;
using testsupport::problems;

namespace {

const QString conf = QStringLiteral("home/.config/Orvane/Office.conf");

} // namespace

/// Disk space and settings, in the test's own directories.
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
        programs::Findings findings;
        programs::reportDisk(QStringLiteral("Home"), QStringLiteral("/x"), disk, findings);
        const QString text = findings.text();
        QVERIFY2(text.contains(QLatin1Char('\n') + line), qPrintable(text));
    }

    void aDiskThatCountsNoFilesHasRoomForThem()
    {
        struct statvfs disk = {};
        disk.f_frsize = 4096;
        disk.f_bavail = 1000000;
        programs::Findings findings;
        programs::reportDisk(QStringLiteral("Home"), QStringLiteral("/x"), disk, findings);
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
        QTest::newRow("no settings") << QByteArray("this is not a settings file\n");
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
        QVERIFY(
            hasLine(problems(checked.check("configuration")), {QStringLiteral("is not a file")}));
        checked.set("XDG_CONFIG_HOME", checked.path(QStringLiteral("other")));
        QCOMPARE(problems(checked.check("configuration")), QStringList());
        checked.write(QStringLiteral("other/Orvane"), {});
        QVERIFY(hasLine(problems(checked.check("configuration")),
                        {QStringLiteral("is not a directory")}));
        checked.write(QStringLiteral("home/.local/share/Orvane/tmp"), {});
        QVERIFY(hasLine(problems(checked.check("configuration")),
                        {QStringLiteral("Orvane/tmp is not a directory")}));
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
};

HEADLESS_TEST_MAIN(HomeChecksTest)
#include "tst_homechecks.moc"
