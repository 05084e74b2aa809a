#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QSettings>

#include "plugin/config/scriptstaging.h"
#include "tests/support/nomoredescriptors.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"
#include "tests/support/shell/stagedscripts.h"

using testsupport::PrivateHome;
using testsupport::RecordingShell;
using testsupport::StagedScripts;

/// The commands about shortcuts and associations. The real scripts have tests of their own.
class DesktopCommandsTest : public QObject
{
    Q_OBJECT

private:
    static QJsonObject success() { return {{QStringLiteral("result"), QStringLiteral("success")}}; }

    static void writeMode(const QByteArray &mode)
    {
        PrivateHome::current().writeFile(
            QStringLiteral(".config/Orvane/Office.conf"),
            "[6.0]\nvyroffice\\Application%20Settings\\AppComponentMode=" + mode + '\n');
    }

    static QString modeOf(RecordingShell &shell)
    {
        return shell.call(QStringLiteral("getdesktopiconfile"))
            .value(QLatin1String("result"))
            .toObject()
            .value(QLatin1String("mode"))
            .toString();
    }

    static QJsonValue iconOf(RecordingShell &shell)
    {
        return shell.call(QStringLiteral("getdesktopiconfile"))
            .value(QLatin1String("result"))
            .toObject()
            .value(QLatin1String("icon"));
    }

    static QString typePackages()
    {
        return PrivateHome::current().path() + QStringLiteral("/.local/share/mime/packages");
    }

private slots:
    void cleanup()
    {
        qunsetenv("HELIO_COMPONENTS");
        QFile::remove(PrivateHome::current().path() +
                      QStringLiteral("/.config/Orvane/Office.conf"));
        QDir(PrivateHome::current().path() + QStringLiteral("/.local/share/mime"))
            .removeRecursively();
    }

    void withoutAShortcutTheIconIsEmpty()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getdesktopfile.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(iconOf(shell), QJsonValue(QString()));
    }

    void withoutTheScriptTheIconIsEmpty()
    {
        const StagedScripts scripts;
        scripts.makeImpossible();
        RecordingShell shell;
        QCOMPARE(iconOf(shell), QJsonValue(QString()));
    }

    void shortcutsAreJoinedWithABar()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getdesktopfile.sh"),
                        "printf '%s\\n' vyr-office-vyr.desktop '' vyr-office-字.desktop");
        RecordingShell shell;
        QCOMPARE(iconOf(shell),
                 QJsonValue(QString::fromUtf8("vyr-office-vyr.desktop||vyr-office-字.desktop")));
    }

    void componentsAreQueriedByTheirOwnNames()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getdesktopfile.sh"), "echo x");
        qputenv("HELIO_COMPONENTS", "ChartBoard,FixedComponent");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("getdesktopiconfile"))
                     .value(QLatin1String("result"))
                     .toObject(),
                 (QJsonObject{{QStringLiteral("icon"), QStringLiteral("x")},
                              {QStringLiteral("mode"), QStringLiteral("helio_independ")},
                              {QStringLiteral("chartboard"), true},
                              {QStringLiteral("docket"), false},
                              {QStringLiteral("fixedcomponent"), true}}));
    }

    void theComponentModeIsIndependentUnlessTheSettingsSayOtherwise()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getdesktopfile.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(modeOf(shell), QStringLiteral("helio_independ"));
        writeMode("helio_fushion");
        QCOMPARE(modeOf(shell), QStringLiteral("helio_fushion"));
        writeMode("something_else");
        QCOMPARE(modeOf(shell), QStringLiteral("something_else"));
    }

    void anEmptyComponentModeIsIndependent()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getdesktopfile.sh"), "exit 0");
        RecordingShell shell;
        writeMode("");
        QCOMPARE(modeOf(shell), QStringLiteral("helio_independ"));
    }

    void restoringStartsTheScriptWithModeAndInstallPath_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("mode");
        QTest::newRow("separate") << QStringLiteral("fixfouricon") << QStringLiteral("other");
        QTest::newRow("integrated") << QStringLiteral("fixoneicon") << QStringLiteral("fusion");
    }

    void restoringStartsTheScriptWithModeAndInstallPath()
    {
        QFETCH(const QString, command);
        QFETCH(const QString, mode);
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("recovericon.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(shell.call(command), success());
        const QJsonObject started = shell.events(QStringLiteral("started")).value(0);
        QCOMPARE(started.value(QLatin1String("program")).toString(),
                 OfficeAssiant::scriptStagingDirectory() + QStringLiteral("/recovericon.sh"));
        QCOMPARE(
            started.value(QLatin1String("arguments")).toArray(),
            (QJsonArray{mode, QCoreApplication::applicationDirPath() + QStringLiteral("/..")}));
        QCOMPARE(started.value(QLatin1String("detached")).toBool(), true);
        QCOMPARE(started.value(QLatin1String("workingDirectory")).toString(), QString());
    }

    void withoutTheScriptRestoringAndRepairingStillSucceed()
    {
        const StagedScripts scripts;
        scripts.makeImpossible();
        RecordingShell shell;
        for (const char *command : {"fixfouricon", "fixoneicon", "fileassorepair"})
            QCOMPARE(shell.call(QLatin1String(command)), success());
        QVERIFY(shell.events(QStringLiteral("started")).isEmpty());
    }

    void listingsRunTheirScriptOnTheSampleDocuments()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getmimeinfo.sh"), "echo \"vyr|.docx|mime $1|true\"");
        scripts.replace(QStringLiteral("getopeninfo.sh"), "echo \"tbl|.xlsx|open $1|false\"");
        RecordingShell shell;
        const QString samples =
            QCoreApplication::applicationDirPath() + QStringLiteral("/asso_template");
        const QJsonArray types{
            QJsonObject{{QStringLiteral(".docx"), QStringLiteral("mime %1|true").arg(samples)}},
            QJsonObject{}, QJsonObject{}};
        QCOMPARE(shell.call(QStringLiteral("getassomime")).value(QLatin1String("result")).toArray(),
                 types);
        const QJsonArray applications{
            QJsonObject{}, QJsonObject{},
            QJsonObject{{QStringLiteral(".xlsx"), QStringLiteral("open %1|false").arg(samples)}}};
        QCOMPARE(shell.call(QStringLiteral("getassoopen")).value(QLatin1String("result")).toArray(),
                 applications);
    }

    void withoutTheScriptAListingHasNoResult()
    {
        const StagedScripts scripts;
        scripts.makeImpossible();
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("getassomime")), QJsonObject());
        QCOMPARE(shell.call(QStringLiteral("getassoopen")), QJsonObject());
    }

    void whereNoShellCanBeStartedAListingIsAnError()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getmimeinfo.sh"), "echo 'vyr|.docx|a|true'");
        RecordingShell shell;
        QJsonObject answer;
        {
            const testsupport::NoMoreDescriptors limit;
            answer = shell.call(QStringLiteral("getassomime"));
        }
        QCOMPARE(answer, (QJsonObject{{QStringLiteral("result"), QStringLiteral("error")}}));
    }

    void fiftyMegabytesOfOutputAreRead()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getopeninfo.sh"),
                        "yes 'vyr|.doc|a|false' | head -c 52428800\n"
                        "printf '\\nvyr|.doc|last|true\\n'");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("getassoopen"))
                     .value(QLatin1String("result"))
                     .toArray()
                     .first()
                     .toObject(),
                 (QJsonObject{{QStringLiteral(".doc"), QStringLiteral("last|true")}}));
    }

    void aListingThatPrintsGarbageGivesThreeEmptyObjects()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("getmimeinfo.sh"), "head -c 1000000 /dev/urandom");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("getassomime")).value(QLatin1String("result")).toArray(),
                 (QJsonArray{QJsonObject{}, QJsonObject{}, QJsonObject{}}));
    }

    void repairingInstallsTheTypesAndStartsTheScriptOnTheSampleDocuments()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("repairasso.sh"), "exit 0");
        QVERIFY(QDir().mkpath(typePackages()));
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("fileassorepair")), success());
        const QString package = typePackages() + QStringLiteral("/Override.xml");
        QCOMPARE(testsupport::readFile(package),
                 testsupport::readFile(QStringLiteral(":/config/Override.xml")));
        QCOMPARE(QFile::permissions(package) & QFile::Permissions(0x7077),
                 QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup);
        const QJsonObject started = shell.events(QStringLiteral("started")).value(0);
        QCOMPARE(started.value(QLatin1String("arguments")).toArray(),
                 (QJsonArray{QCoreApplication::applicationDirPath() +
                             QStringLiteral("/asso_template")}));
        QCOMPARE(started.value(QLatin1String("detached")).toBool(), true);
    }

    void typesThatWereInstalledBeforeStayAsTheyAre()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("repairasso.sh"), "exit 0");
        const QString package = PrivateHome::current().writeFile(
            QStringLiteral(".local/share/mime/packages/Override.xml"), "the user's own");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("fileassorepair")), success());
        QCOMPARE(testsupport::readFile(package), QByteArray("the user's own"));
    }

    void withoutADirectoryOfUserPackagesNoTypesAreInstalled()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("repairasso.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("fileassorepair")), success());
        QVERIFY(!QFile::exists(typePackages()));
        QCOMPARE(shell.events(QStringLiteral("started")).size(), 1);
    }
};

HEADLESS_TEST_MAIN(DesktopCommandsTest)
#include "tst_desktopcommands.moc"
