#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QPointer>
#include <QUrl>

#include <memory>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "helio/headless/dialoganswers.h"
#include "helio/headless/headlesspage.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"
#include "tests/support/suiteprogram.h"

using testsupport::PrivateHome;
using testsupport::RecordingShell;
using testsupport::SuiteProgram;

/// The documents with a layout or a print problem.
class ProblemFilesTest : public QObject
{
    Q_OBJECT

private:
    static QJsonObject error() { return {{QStringLiteral("result"), QStringLiteral("error")}}; }

    static QJsonObject path(const QString &chosen)
    {
        return {{QStringLiteral("result"), QString::fromLatin1(chosen.toUtf8().toBase64())}};
    }

    static QString document(const QString &name)
    {
        return PrivateHome::current().writeFile(name, "a document");
    }

    static QJsonArray filters(const char *writer, const char *spreadsheet, const char *presentation)
    {
        return {QLatin1String(writer), QLatin1String(spreadsheet), QLatin1String(presentation)};
    }

    static QString pdf(const char *name)
    {
        return PrivateHome::current().suiteHome() + QStringLiteral("/tmp/") + QLatin1String(name);
    }

    static QByteArray printing(const char *name)
    {
        return "mkdir -p \"$HOME/.local/share/Orvane/tmp\"\n"
               "echo %PDF > \"$HOME/.local/share/Orvane/tmp/" +
               QByteArray(name) + "\"";
    }

private slots:
    void init()
    {
        QDir(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")).removeRecursively();
    }

    void theLayoutDialogOffersTheSuitesDocuments()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("chooselayouterrorfile")), error());
        const QJsonObject dialog = shell.events(QStringLiteral("dialog")).value(0);
        QCOMPARE(dialog.value(QLatin1String("mode")).toString(), QStringLiteral("open"));
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Open File"));
        QCOMPARE(dialog.value(QLatin1String("directory")).toString(), QDir::homePath());
        QCOMPARE(dialog.value(QLatin1String("filters")).toArray(),
                 filters("VYR/Word Files(*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm)",
                         "TBL/Excel Files(*.tbl *.tbt *.xls *.xlsx *.xlt *.xlsm *.xltx *.xltm "
                         "*.xlsb)",
                         "SHW/PowerPoint Files(*.shd *.sht *.ppt *.pps *.pot *.pptx *.ppsx "
                         "*.potx)"));
    }

    void thePrintDialogHasAnOrderOfItsOwnForSpreadsheets()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("openprinterrorfile")), error());
        const QJsonObject dialog = shell.events(QStringLiteral("dialog")).value(0);
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Open File"));
        QCOMPARE(dialog.value(QLatin1String("directory")).toString(), QDir::homePath());
        QCOMPARE(dialog.value(QLatin1String("filters")).toArray(),
                 filters("VYR/Word Files(*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm)",
                         "TBL/Excel Files(*.tbl *.tbt *.xls *.xlt *.xlsx *.xlsm *.xltx *.xltm "
                         "*.xlsb)",
                         "SHW/PowerPoint Files(*.shd *.sht *.ppt *.pps *.pot *.pptx *.ppsx "
                         "*.potx)"));
    }

    void theChosenLayoutFileIsAnsweredAndOpened()
    {
        RecordingShell shell;
        const QString file = document(QString::fromUtf8("报告 a.docx"));
        QCOMPARE(shell.call(QStringLiteral("chooselayouterrorfile"), {}, {file}), path(file));
        QCOMPARE(shell.call(QStringLiteral("openlaytouerrorfile")),
                 (QJsonObject{{QStringLiteral("result"), QStringLiteral("success")}}));
        QCOMPARE(
            shell.events(QStringLiteral("opened")).value(0).value(QLatin1String("url")).toString(),
            QUrl::fromLocalFile(file).toString());
    }

    void beforeAChoiceThereIsNothingToOpen()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("openlaytouerrorfile")), error());
    }

    void cancellingTheLayoutDialogKeepsTheEarlierFile()
    {
        RecordingShell shell;
        const QString file = document(QStringLiteral("kept.docx"));
        shell.call(QStringLiteral("chooselayouterrorfile"), {}, {file});
        QCOMPARE(shell.call(QStringLiteral("chooselayouterrorfile")), error());
        shell.call(QStringLiteral("openlaytouerrorfile"));
        QCOMPARE(shell.events(QStringLiteral("opened")).size(), 1);
    }

    void aLayoutFileDeletedMeanwhileIsAnError()
    {
        RecordingShell shell;
        const QString file = document(QStringLiteral("gone.docx"));
        shell.call(QStringLiteral("chooselayouterrorfile"), {}, {file});
        QVERIFY(QFile::remove(file));
        QCOMPARE(shell.call(QStringLiteral("openlaytouerrorfile")), error());
        QVERIFY(shell.events(QStringLiteral("opened")).isEmpty());
    }

    void aLayoutFileThatMustNotBeOpenedHasNoResult()
    {
        RecordingShell shell;
        const QString file =
            PrivateHome::current().writeFile(QStringLiteral("trap.docx"), "#!/bin/sh\nfalse\n");
        shell.call(QStringLiteral("chooselayouterrorfile"), {}, {file});
        QCOMPARE(shell.call(QStringLiteral("openlaytouerrorfile")), QJsonObject());
        QVERIFY(shell.events(QStringLiteral("opened")).isEmpty());
    }

    void eachPageKeepsItsOwnLayoutFile()
    {
        RecordingShell shell;
        const QString child = QStringLiteral("child");
        shell.call(QStringLiteral("chooselayouterrorfile"), {},
                   {document(QStringLiteral("a.doc"))});
        QCOMPARE(shell.call(QStringLiteral("openlaytouerrorfile"), {}, {}, child), error());
    }

    void aPrintedDocumentIsShown()
    {
        const testsupport::FakePrograms fakes;
        fakes.add(QStringLiteral("xdg-open"), "exit 0");
        const SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"), printing("report.pdf"));
        RecordingShell shell;
        const QString file = document(QStringLiteral("report.final.DOCX"));
        QCOMPARE(shell.call(QStringLiteral("openprinterrorfile"), {}, {file}), path(file));
        QCOMPARE(tool.calls(),
                 (QList<QStringList>{{QStringLiteral("print"), QStringLiteral("vyr"), file}}));
        const QJsonObject viewer = shell.events(QStringLiteral("started")).value(1);
        QCOMPARE(viewer.value(QLatin1String("program")).toString(), QStringLiteral("/bin/bash"));
        QCOMPARE(viewer.value(QLatin1String("arguments")).toArray(),
                 (QJsonArray{QStringLiteral("xdg-open"), pdf("report.pdf")}));
        QCOMPARE(viewer.value(QLatin1String("detached")).toBool(), true);
    }

    void aDocumentThatNoComponentPrintsIsAnError()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("openprinterrorfile"), {},
                            {document(QStringLiteral("a.txt"))}),
                 error());
        QVERIFY(shell.events(QStringLiteral("started")).isEmpty());
    }

    void withoutAPdfPrintingIsAnError()
    {
        const SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"), printing("other.pdf"));
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("openprinterrorfile"), {},
                            {document(QStringLiteral("a.xlsx"))}),
                 error());
        QCOMPARE(shell.events(QStringLiteral("started")).size(), 1);
    }

    void aPdfOfAnEarlierPrintCountsEvenWithoutATool()
    {
        const testsupport::FakePrograms fakes;
        fakes.add(QStringLiteral("xdg-open"), "exit 0");
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/a.pdf"), "%PDF");
        RecordingShell shell;
        const QString file = document(QStringLiteral("a.pptx"));
        QCOMPARE(shell.call(QStringLiteral("openprinterrorfile"), {}, {file}), path(file));
    }

    void aPageMayBeClosedWhileItsDialogIsOpen_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("layout") << QStringLiteral("chooselayouterrorfile");
        QTest::newRow("print") << QStringLiteral("openprinterrorfile");
    }

    void aPageMayBeClosedWhileItsDialogIsOpen()
    {
        QFETCH(const QString, command);
        const testsupport::FakePrograms fakes;
        fakes.add(QStringLiteral("xdg-open"), "exit 0");
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/a.pdf"), "%PDF");
        RecordingShell shell;
        auto page = std::make_unique<helio::HeadlessPage>(QStringLiteral("child"));
        const QPointer<KVyrAssistantToolAPI> bridge =
            OfficeAssiant::KToolManager::instance().childPageBridge();
        QVERIFY(bridge);
        auto &dialogs = helio::DialogAnswers::instance();
        dialogs.setChoices({document(QStringLiteral("a.docx"))});
        const QObject whileTheDialogIsOpen;
        connect(&dialogs, &helio::DialogAnswers::answered, &whileTheDialogIsOpen,
                [&page] { page.reset(); });
        bridge->fromJSAsynCall(
            QStringLiteral(R"({"command":"%1","callback":"back"})").arg(command));
        QVERIFY(!bridge);
        QVERIFY(shell.events(QStringLiteral("callback")).isEmpty());
    }
};

HEADLESS_TEST_MAIN(ProblemFilesTest)
#include "tst_problemfiles.moc"
