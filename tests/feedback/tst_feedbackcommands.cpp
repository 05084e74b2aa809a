#include <QDir>
#include <QFile>
#include <QJsonArray>

#include "plugin/config/scriptstaging.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"
#include "tests/support/shell/stagedscripts.h"

using testsupport::PrivateHome;
using testsupport::RecordingShell;
using testsupport::StagedScripts;

/// The feedback view's commands. The archiving script has tests of its own.
class FeedbackCommandsTest : public QObject
{
    Q_OBJECT

private:
    static QJsonObject error() { return {{QStringLiteral("result"), QStringLiteral("error")}}; }

    static QJsonObject path(const QString &chosen)
    {
        return {{QStringLiteral("result"), QString::fromLatin1(chosen.toUtf8().toBase64())}};
    }

    static QString target() { return PrivateHome::current().path() + QStringLiteral("/report"); }

    static QString report()
    {
        return PrivateHome::current().suiteHome() + QStringLiteral("/tmp/sysinfo.txt");
    }

    /// The arguments with which the archiving script was started.
    static QStringList argumentsFor(RecordingShell &shell, const QJsonObject &args)
    {
        shell.forget();
        shell.call(QStringLiteral("archivepackage"), args, {target()});
        const QJsonArray arguments = shell.events(QStringLiteral("started"))
                                         .value(0)
                                         .value(QLatin1String("arguments"))
                                         .toArray();
        QStringList texts;
        for (const QJsonValue &argument : arguments)
            texts.append(argument.toString());
        return texts;
    }

private slots:
    void init() { QFile::remove(report()); }

    void theSampleDialogOffersTheSuitesDocuments()
    {
        RecordingShell shell;
        const QString sample =
            PrivateHome::current().writeFile(QString::fromUtf8("样本.vyr"), "a sample");
        QCOMPARE(shell.call(QStringLiteral("choosesamplefile"), {}, {sample}), path(sample));
        const QJsonObject dialog = shell.events(QStringLiteral("dialog")).value(0);
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Open File"));
        QCOMPARE(dialog.value(QLatin1String("directory")).toString(), QDir::homePath());
        QCOMPARE(
            dialog.value(QLatin1String("filters")).toArray(),
            (QJsonArray{
                QStringLiteral(
                    "VYR/Word Files(*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm)"),
                QStringLiteral(
                    "SHW/PowerPoint Files(*.shd *.sht *.ppt *.pps *.pot *.pptx *.ppsx *.potx)"),
                QStringLiteral("TBL/Excel Files(*.tbl *.tbt *.xls *.xlsx *.xlt *.xlsm *.xltx "
                               "*.xltm *.xlsb)")}));
    }

    void anAttachmentMayBeAnyFile()
    {
        RecordingShell shell;
        const QString file = PrivateHome::current().writeFile(QStringLiteral("b.png"), "a picture");
        QCOMPARE(shell.call(QStringLiteral("chooseattachment"), {}, {file}), path(file));
        const QJsonObject dialog = shell.events(QStringLiteral("dialog")).value(0);
        QCOMPARE(dialog.value(QLatin1String("directory")).toString(), QDir::homePath());
        QVERIFY(!dialog.value(QLatin1String("filters"))
                     .toArray()
                     .first()
                     .toString()
                     .contains(QLatin1String("Files(")));
    }

    void cancelledDialogsAreErrorsAndStartNothing()
    {
        RecordingShell shell;
        for (const char *command : {"choosesamplefile", "chooseattachment", "archivepackage"})
            QCOMPARE(shell.call(QLatin1String(command)), error());
        QVERIFY(shell.events(QStringLiteral("started")).isEmpty());
    }

    void theArchiveIsStartedByTheScriptItselfWithTheChosenPath()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("archivepackage"),
                            {{QStringLiteral("archiveType"), QStringLiteral("crash")},
                             {QStringLiteral("archiveDescribe"), QStringLiteral("it failed")}},
                            {target()}),
                 path(target()));
        const QJsonObject dialog = shell.events(QStringLiteral("dialog")).value(0);
        QCOMPARE(dialog.value(QLatin1String("mode")).toString(), QStringLiteral("save"));
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Save File"));
        QCOMPARE(dialog.value(QLatin1String("name")).toString(),
                 QStringLiteral("questionfeedback"));
        const QJsonObject started = shell.events(QStringLiteral("started")).value(0);
        QCOMPARE(started.value(QLatin1String("program")).toString(),
                 OfficeAssiant::scriptStagingDirectory() + QStringLiteral("/archivepackage.sh"));
        QCOMPARE(started.value(QLatin1String("workingDirectory")).toString(), QString());
        QCOMPARE(started.value(QLatin1String("detached")).toBool(), true);
        QCOMPARE(started.value(QLatin1String("arguments")).toArray().size(), 9);
    }

    void sampleAndAttachmentsStandInTheirOrder()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(argumentsFor(shell, {{QStringLiteral("archiveAttach2"), QStringLiteral("b.png")},
                                      {QStringLiteral("archiveSample"), QStringLiteral("a.vyr")}})
                     .at(3),
                 QStringLiteral(";a.vyr;b.png"));
        QCOMPARE(argumentsFor(shell, {{QStringLiteral("archiveAttach3"), QStringLiteral("3")},
                                      {QStringLiteral("archiveAttach1"), QStringLiteral("1")},
                                      {QStringLiteral("archiveAttach2"), QStringLiteral("2")},
                                      {QStringLiteral("archiveSample"), QStringLiteral("0")}})
                     .at(3),
                 QStringLiteral(";0;1;2;3"));
    }

    void theWordFalseStillAsksForTheReport()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(argumentsFor(shell, {{QStringLiteral("archiveSysInfo"), QStringLiteral("false")}})
                     .at(4),
                 QStringLiteral("true"));
        const QByteArray written = testsupport::readFile(report());
        for (const char *section :
             {"kernel", "browser", "cpu", "font", "user", "env", "otheroffice"})
            QVERIFY2(written.contains(QByteArray(section) + "-begin"), section);
    }

    void anotherReportIsAppended()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        const QJsonObject args{{QStringLiteral("archiveSysInfo"), QStringLiteral("1")}};
        argumentsFor(shell, args);
        argumentsFor(shell, args);
        QCOMPARE(testsupport::readFile(report()).count("kernel-begin"), 2);
    }

    void onlyTheUserCanReadTheReport()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        const QJsonObject args{{QStringLiteral("archiveSysInfo"), QStringLiteral("1")}};
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther;
        argumentsFor(shell, args);
        QVERIFY(!(QFile::permissions(report()) & others));
        QVERIFY(QFile::setPermissions(report(), QFile::ReadOwner | QFile::WriteOwner | others));
        argumentsFor(shell, args);
        QVERIFY(!(QFile::permissions(report()) & others));
    }

    void withoutAWordThereIsNoReport()
    {
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(argumentsFor(shell, {}).at(4), QStringLiteral("false"));
        QVERIFY(!QFile::exists(report()));
    }

    void theOtherChoicesAreTruthValues_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<QString>("word");
        QTest::newRow("true") << QJsonValue(true) << QStringLiteral("true");
        QTest::newRow("false") << QJsonValue(false) << QStringLiteral("false");
        QTest::newRow("the word true")
            << QJsonValue(QStringLiteral("true")) << QStringLiteral("true");
        QTest::newRow("the word false")
            << QJsonValue(QStringLiteral("false")) << QStringLiteral("false");
    }

    void theOtherChoicesAreTruthValues()
    {
        QFETCH(const QJsonValue, value);
        QFETCH(const QString, word);
        const StagedScripts scripts;
        scripts.replace(QStringLiteral("archivepackage.sh"), "exit 0");
        RecordingShell shell;
        QCOMPARE(argumentsFor(shell, {{QStringLiteral("archiveVyrInfo"), value},
                                      {QStringLiteral("archiveDumpInfo"), value}})
                     .mid(5, 2),
                 (QStringList{word, word}));
    }

    void withoutAWorkDirectoryThereIsNoReport()
    {
        const QString work = PrivateHome::current().suiteHome() + QStringLiteral("/tmp");
        QVERIFY(QDir(work).removeRecursively());
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp"), "in the way");
        RecordingShell shell;
        QCOMPARE(
            argumentsFor(shell, {{QStringLiteral("archiveSysInfo"), QStringLiteral("1")}}).at(4),
            QStringLiteral("false"));
        QVERIFY(QFile::remove(work));
    }
};

HEADLESS_TEST_MAIN(FeedbackCommandsTest)
#include "tst_feedbackcommands.moc"
