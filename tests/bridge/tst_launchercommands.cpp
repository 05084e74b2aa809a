#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonArray>
#include <QTimer>

#include "bridge/ktoolmanager.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using OfficeAssiant::KToolManager;
using testsupport::RecordingShell;

namespace {

const QJsonObject success{{QStringLiteral("result"), QStringLiteral("success")}};
const QJsonObject error{{QStringLiteral("result"), QStringLiteral("error")}};

QJsonObject collectionPage(const QJsonObject &page)
{
    return {{QStringLiteral("result"), page}};
}

} // namespace

/// The commands that start a companion program, and the small ones beside them.
class LauncherCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("HELIO_RESOURCES"); }

    void aLauncherStartsItsProgram_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("stop preloading")
            << QStringLiteral("stoppreload") << QStringLiteral("quickstartoffice")
            << QStringList{QStringLiteral("stop"), QStringLiteral("false")};
        QTest::newRow("restart preloading")
            << QStringLiteral("restartpreload") << QStringLiteral("quickstartoffice")
            << QStringList{QStringLiteral("restart"), QStringLiteral("false")};
        QTest::newRow("screen recorder")
            << QStringLiteral("recordscreen")
            << QStringLiteral("/resources/addons/vyrassistanttool/screencap/screencap")
            << QStringList();
        QTest::newRow("replace") << QStringLiteral("contentreplace")
                                 << QStringLiteral("/resources/eptools")
                                 << QStringList{QStringLiteral("-replacefile")};
        QTest::newRow("log") << QStringLiteral("apilog") << QStringLiteral("/resources/eptools")
                             << QStringList{QStringLiteral("-apilog")};
    }

    void aLauncherStartsItsProgram()
    {
        QFETCH(QString, command);
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        qputenv("HELIO_RESOURCES", "/resources");
        const testsupport::FakePrograms programs;
        programs.hideOthers();
        RecordingShell shell;
        // Succeeds although there is no such program.
        QCOMPARE(shell.call(command), success);
        QCOMPARE(shell.events().size(), 1);
        const QJsonObject started = shell.events().first();
        QCOMPARE(started.value(QLatin1String("program")).toString(), program);
        QCOMPARE(started.value(QLatin1String("arguments")),
                 QJsonValue(QJsonArray::fromStringList(arguments)));
        QCOMPARE(started.value(QLatin1String("workingDirectory")), QJsonValue(QString()));
        QCOMPARE(started.value(QLatin1String("detached")), QJsonValue(true));
    }

    void theProgramReallyRunsWithItsArguments()
    {
        const testsupport::FakePrograms programs;
        const QString note = testsupport::PrivateHome::current().path() + QStringLiteral("/note");
        programs.add(
            QStringLiteral("quickstartoffice"),
            "echo \"$#:$1:$2\" > \"$HOME/note.part\"; mv \"$HOME/note.part\" \"$HOME/note\"");
        RecordingShell shell;
        shell.call(QStringLiteral("stoppreload"));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(note), testsupport::longestWaitMs);
        QCOMPARE(testsupport::readFile(note), QByteArray("2:stop:false\n"));
    }

    void screenshotsWithoutTheLibraryMinimisesWaitsAndRestores()
    {
        RecordingShell shell;
        QVERIFY(!KToolManager::instance().screenGrab());
        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(shell.call(QStringLiteral("screenshots")), success);
        QVERIFY2(elapsed.elapsed() >= 290, qPrintable(QString::number(elapsed.elapsed())));
        QCOMPARE(signalNames(shell), QStringList({QStringLiteral("sigShowMinimized"),
                                                  QStringLiteral("sigShowNormal")}));
    }

    void withoutTheScreenGrabLibraryTheManagerIsCompleteAndCommandsWork()
    {
        RecordingShell shell;
        KToolManager &manager = KToolManager::instance();
        QVERIFY(!manager.screenGrab());
        QVERIFY(manager.infoHelp.oftenFiles().size() >= 3);
        // One harmless command for each helper.
        for (const char *command :
             {"stratextractfileinfo", "getDumpState", "getupdatesupport", "inputcheck",
              "getvyrenvcheckedresult", "getdesktopiconfile", "startsearchfile"})
            QVERIFY2(!shell.call(QLatin1String(command)).contains(QLatin1String("error")), command);
    }

    void otherCommandsRunWhileTheScreenshotWaits()
    {
        RecordingShell shell;
        QJsonObject inner;
        QTimer::singleShot(50, &shell.shell(),
                           [&] { inner = shell.call(QStringLiteral("getcollectionpage")); });
        QTimer::singleShot(60, &shell.shell(), [&] { shell.call(QStringLiteral("mousePress")); });
        QCOMPARE(shell.call(QStringLiteral("screenshots")), success);
        QCOMPARE(inner, collectionPage({{QStringLiteral("page"), QString()}}));
        QCOMPARE(signalNames(shell),
                 QStringList({QStringLiteral("sigShowMinimized"), QStringLiteral("sigMousePress"),
                              QStringLiteral("sigShowNormal")}));
        // Each got its own answer, and none came a second time.
        QVERIFY(shell.events(QStringLiteral("callback")).isEmpty());
    }

    void aScreenshotInsideAScreenshotEndsBoth()
    {
        RecordingShell shell;
        QJsonObject inner;
        QTimer::singleShot(50, &shell.shell(),
                           [&] { inner = shell.call(QStringLiteral("screenshots")); });
        QCOMPARE(shell.call(QStringLiteral("screenshots")), success);
        QCOMPARE(inner, success);
        QCOMPARE(signalNames(shell).size(), 4);
    }

    void theClipboardGetsTheText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << QStringLiteral("a b");
        QTest::newRow("lines and Chinese") << QStringLiteral("\u6587\n\u6863\t'\"");
        QTest::newRow("empty") << QString();
        QTest::newRow("megabyte") << QString(1 << 20, QLatin1Char('x'));
    }

    void theClipboardGetsTheText()
    {
        QFETCH(QString, text);
        RecordingShell shell;
        QCOMPARE(
            shell.call(QStringLiteral("copytoclipboard"), {{QStringLiteral("verification"), text}}),
            success);
        QCOMPARE(QGuiApplication::clipboard()->text(), text);
        QVERIFY(!shell.events(QStringLiteral("clipboard")).isEmpty());
    }

    void aChosenFileJoinsTheOftenUsedPaths()
    {
        const QString file =
            testsupport::PrivateHome::current().writeFile(QStringLiteral("dir/my file.conf"), "x");
        const auto &often = KToolManager::instance().infoHelp.oftenFiles();
        const int count = often.size();
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("addconfigfile"), {}, {file}), success);
        QCOMPARE(often.size(), count + 1);
        QCOMPARE(often.last().name, QStringLiteral("my file.conf"));
        QCOMPARE(often.last().path, file);
        QCOMPARE(often.last().owner + often.last().group + often.last().permissions +
                     often.last().modified,
                 QString());
        const QJsonObject dialog = shell.events(QStringLiteral("dialog")).value(0);
        QCOMPARE(dialog.value(QLatin1String("mode")).toString(), QStringLiteral("open"));
        QCOMPARE(dialog.value(QLatin1String("caption")).toString(), QStringLiteral("Open File"));
        QCOMPARE(dialog.value(QLatin1String("filters")).toArray().size(), 0);
    }

    void aCancelledDialogIsAnErrorAndLeavesTheList_data()
    {
        QTest::addColumn<QStringList>("choices");
        QTest::newRow("cancelled") << QStringList();
        QTest::newRow("missing") << QStringList{QStringLiteral("/nonexistent/file")};
    }

    void aCancelledDialogIsAnErrorAndLeavesTheList()
    {
        QFETCH(QStringList, choices);
        const int count = KToolManager::instance().infoHelp.oftenFiles().size();
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("addconfigfile"), {}, choices), error);
        QCOMPARE(KToolManager::instance().infoHelp.oftenFiles().size(), count);
    }

    void beforeAnyFeedbackTheCollectionPageIsEmpty()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("getcollectionpage")),
                 collectionPage({{QStringLiteral("page"), QString()}}));
    }

    void theCollectionPageHasAFileForLayoutAndPrintOnly_data()
    {
        QTest::addColumn<QString>("page");
        QTest::addColumn<bool>("hasFile");
        QTest::newRow("layout before a file was chosen") << QStringLiteral("layout") << true;
        QTest::newRow("print before a file was chosen") << QStringLiteral("print") << true;
        QTest::newRow("other") << QStringLiteral("crash") << false;
        QTest::newRow("other case") << QStringLiteral("Layout") << false;
    }

    void theCollectionPageHasAFileForLayoutAndPrintOnly()
    {
        QFETCH(QString, page);
        QFETCH(bool, hasFile);
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("feedbacktovyr"), {{QStringLiteral("infopage"), page}}),
                 QJsonObject());
        QJsonObject expected{{QStringLiteral("page"), page}};
        if (hasFile)
            expected.insert(QStringLiteral("file"), QString());
        QCOMPARE(shell.call(QStringLiteral("getcollectionpage")), collectionPage(expected));
    }

    void feedbackWithoutAPageForgetsIt()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("feedbacktovyr"),
                   {{QStringLiteral("infopage"), QStringLiteral("font")}});
        shell.call(QStringLiteral("feedbacktovyr"));
        QCOMPARE(shell.call(QStringLiteral("getcollectionpage")),
                 collectionPage({{QStringLiteral("page"), QString()}}));
    }

private:
    static QStringList signalNames(const RecordingShell &shell)
    {
        QStringList names;
        const QList<QJsonObject> events = shell.events(QStringLiteral("signal"));
        for (const QJsonObject &event : events)
            names.append(event.value(QLatin1String("signal")).toString());
        return names;
    }
};

HEADLESS_TEST_MAIN(LauncherCommandsTest)
#include "tst_launchercommands.moc"
