#include <QFileSystemWatcher>
#include <QJsonArray>
#include <QSettings>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using OfficeAssiant::KToolManager;
using testsupport::RecordingShell;

namespace {

/// Every event in a few words, such as "main sigShowChildWindow(crash.html)".
QStringList summary(const QList<QJsonObject> &events)
{
    QStringList lines;
    for (const QJsonObject &event : events) {
        const QString page = event.value(QLatin1String("page")).toString();
        if (event.value(QLatin1String("type")) == QLatin1String("callback"))
            lines.append(QStringLiteral("%1 %2: %3")
                             .arg(page, event.value(QLatin1String("callback")).toString(),
                                  event.value(QLatin1String("result")).toString()));
        else
            lines.append(QStringLiteral("%1 %2(%3)")
                             .arg(page, event.value(QLatin1String("signal")).toString(),
                                  event.value(QLatin1String("args")).toArray().at(0).toString()));
    }
    return lines;
}

void setDumpSaving(bool saves)
{
    QSettings settings(QStringLiteral("Orvane"), QStringLiteral("Office"));
    settings.setValue(QStringLiteral("6.0/common/CrashDump/SaveDump"), saves);
}

QStringList watchedDirectories()
{
    return KToolManager::instance().dumpHelp.findChild<QFileSystemWatcher *>()->directories();
}

const QJsonObject success{{QStringLiteral("result"), QStringLiteral("success")}};
const QString child = QStringLiteral("child");

} // namespace

/// Gestures, opening a view and closing it: what happens, and in which order.
class WindowCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        setDumpSaving(true);
        KToolManager::instance().dumpHelp.stopWatching();
    }

    void aGestureOnlyEmitsItsSignalAndSetsNoResult_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("signal");
        QTest::newRow("press") << QStringLiteral("mousePress") << QStringLiteral("sigMousePress");
        QTest::newRow("release") << QStringLiteral("mouseRelease")
                                 << QStringLiteral("sigMouseRelease");
        QTest::newRow("close") << QStringLiteral("closemainwindow")
                               << QStringLiteral("sigCloseMainWindow");
        QTest::newRow("minimise") << QStringLiteral("showminimized")
                                  << QStringLiteral("sigShowMinimized");
    }

    void aGestureOnlyEmitsItsSignalAndSetsNoResult()
    {
        QFETCH(QString, command);
        QFETCH(QString, signal);
        RecordingShell shell;
        QCOMPARE(shell.call(command), QJsonObject());
        QCOMPARE(summary(shell.events()), QStringList{QStringLiteral("main %1()").arg(signal)});
    }

    void routerShowsTheTipThenChangesThePageThenShowsTheWindow_data()
    {
        QTest::addColumn<QString>("type");
        QTest::newRow("any") << QStringLiteral("font");
        QTest::newRow("search") << QStringLiteral("searchfile");
        QTest::newRow("crash") << QStringLiteral("crash");
    }

    void routerShowsTheTipThenChangesThePageThenShowsTheWindow()
    {
        QFETCH(QString, type);
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("router"),
                            {{QStringLiteral("page"), QStringLiteral("view.html")},
                             {QStringLiteral("type"), type}}),
                 success);
        QCOMPARE(summary(shell.events()),
                 QStringList({QStringLiteral("main hiddentipCallBack: show"),
                              QStringLiteral("main sigChangeHtmlPage(view.html)"),
                              QStringLiteral("main sigShowChildWindow(view.html)")}));
    }

    void routerWithoutATypeOnlyChangesThePageAndShowsTheTip()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("router"),
                            {{QStringLiteral("page"), QStringLiteral("view.html")}}),
                 success);
        QCOMPARE(shell.events().size(), 3);
        QVERIFY(watchedDirectories().isEmpty());
    }

    void routerPassesAnEmptyPageOnAsEmpty()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("router")), success);
        QCOMPARE(summary(shell.events()),
                 QStringList({QStringLiteral("main hiddentipCallBack: show"),
                              QStringLiteral("main sigChangeHtmlPage()"),
                              QStringLiteral("main sigShowChildWindow()")}));
    }

    void routerFromTheChildPageShowsTheTipThere()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("router"), {}, {}, child);
        QCOMPARE(summary(shell.events(QStringLiteral("callback"))),
                 QStringList{QStringLiteral("child hiddentipCallBack: show")});
    }

    void routerToTheCrashViewWatchesTheDumpDirectory()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("router"), {{QStringLiteral("type"), QStringLiteral("crash")}});
        QCOMPARE(watchedDirectories(), QStringList{testsupport::PrivateHome::current().suiteHome() +
                                                   QStringLiteral("/tmp/dump")});
    }

    void routerToTheCrashViewWatchesNothingWhileNoDumpsAreKept()
    {
        setDumpSaving(false);
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("router"),
                            {{QStringLiteral("page"), QStringLiteral("crash.html")},
                             {QStringLiteral("type"), QStringLiteral("crash")}}),
                 success);
        QVERIFY(watchedDirectories().isEmpty());
        QCOMPARE(shell.events().size(), 3);
    }

    void theTypeIsComparedExactly()
    {
        RecordingShell shell;
        for (const char *type : {"Crash", "crash ", "CRASH", "searchfile,crash"})
            shell.call(QStringLiteral("router"), {{QStringLiteral("type"), QLatin1String(type)}});
        QVERIFY(watchedDirectories().isEmpty());
    }

    void closingHidesTheTipOfTheMainPageBeforeTheWindowCloses()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("closechildwindow"), {}, {}, child), QJsonObject());
        QCOMPARE(summary(shell.events()),
                 QStringList({QStringLiteral("main hiddentipCallBack: hide"),
                              QStringLiteral("child sigCloseChildWindow()")}));
    }

    void closingWithoutAMainPageHidesNoTip()
    {
        RecordingShell shell;
        shell.shell().page(child);
        KToolManager::instance().setMainPageBridge(nullptr);
        shell.call(QStringLiteral("closechildwindow"), {}, {}, child);
        QCOMPARE(summary(shell.events()),
                 QStringList{QStringLiteral("child sigCloseChildWindow()")});
    }

    void closingTheCrashViewEndsTheWatch()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("router"), {{QStringLiteral("type"), QStringLiteral("crash")}});
        shell.call(QStringLiteral("closechildwindow"),
                   {{QStringLiteral("type"), QStringLiteral("font")}}, {}, child);
        QVERIFY(!watchedDirectories().isEmpty());
        shell.call(QStringLiteral("closechildwindow"),
                   {{QStringLiteral("type"), QStringLiteral("crash")}}, {}, child);
        QVERIFY(watchedDirectories().isEmpty());
    }

    void closingTheCheckViewWhileNoCheckRunsOnlyDoesTheCommonSteps()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("closechildwindow"),
                   {{QStringLiteral("type"), QStringLiteral("vyrrunningcheck")}}, {}, child);
        QCOMPARE(summary(shell.events()),
                 QStringList({QStringLiteral("main hiddentipCallBack: hide"),
                              QStringLiteral("child sigCloseChildWindow()")}));
        QVERIFY(!KToolManager::instance().envCheckThread.isRunning());
    }

    void closingForgetsTheCollectionPageOfThePageThatCloses()
    {
        RecordingShell shell;
        const QJsonObject print{{QStringLiteral("infopage"), QStringLiteral("font")}};
        const QJsonObject remembered{
            {QStringLiteral("result"),
             QJsonObject{{QStringLiteral("page"), QStringLiteral("font")}}}};
        const QJsonObject forgotten{
            {QStringLiteral("result"), QJsonObject{{QStringLiteral("page"), QString()}}}};
        shell.call(QStringLiteral("feedbacktovyr"), print);
        shell.call(QStringLiteral("feedbacktovyr"), print, {}, child);
        shell.call(QStringLiteral("closechildwindow"), {}, {}, child);
        QCOMPARE(shell.call(QStringLiteral("getcollectionpage")), remembered);
        QCOMPARE(shell.call(QStringLiteral("getcollectionpage"), {}, {}, child), forgotten);
    }

    void bothPagesShareOneManager()
    {
        RecordingShell shell;
        shell.shell().page(child);
        KToolManager &manager = KToolManager::instance();
        QVERIFY(manager.mainPageBridge() && manager.childPageBridge());
        QVERIFY(manager.mainPageBridge() != manager.childPageBridge());
        emit manager.fsSearch.searchFinished();
        emit manager.dumpHelp.sigdumpfileready();
        QCOMPARE(summary(shell.events()),
                 QStringList({QStringLiteral("main searchfilefinish: success"),
                              QStringLiteral("child searchfilefinish: success"),
                              QStringLiteral("main freshcrshpageCallBack: success"),
                              QStringLiteral("child freshcrshpageCallBack: success")}));
    }
};

HEADLESS_TEST_MAIN(WindowCommandsTest)
#include "tst_windowcommands.moc"
