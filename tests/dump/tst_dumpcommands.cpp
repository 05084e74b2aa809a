#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>
#include <QSettings>
#include <QSignalSpy>

#include <fcntl.h>
#include <unistd.h>

#include "bridge/ktoolmanager.h"
#include "dump/dumpfiles.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using OfficeAssiant::dumpDirectory;
using testsupport::RecordingShell;

namespace {

/// Watches the dump directory. Earlier watchers are notified of a change before this one.
class WatchOfOurOwn
{
public:
    bool waitForChange()
    {
        const bool changed = m_changes.count() > 0 || m_changes.wait(testsupport::longestWaitMs);
        QCoreApplication::processEvents();
        return changed;
    }

private:
    QFileSystemWatcher m_watcher{{dumpDirectory()}};
    QSignalSpy m_changes{&m_watcher, &QFileSystemWatcher::directoryChanged};
};

} // namespace

/// The crash view's commands: state, switch, clearing, and the notification of a fresh dump.
class DumpCommandsTest : public QObject
{
    Q_OBJECT

private:
    static void makeFile(const QString &name)
    {
        QFile file(dumpDirectory() + QLatin1Char('/') + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    static QJsonObject stateOf(RecordingShell &shell)
    {
        return shell.call(QStringLiteral("getDumpState")).value(QLatin1String("result")).toObject();
    }

    static QJsonObject success() { return {{QStringLiteral("result"), QStringLiteral("success")}}; }

    static QString storedSaveDump()
    {
        const QSettings settings(testsupport::PrivateHome::current().path() +
                                     QStringLiteral("/.config/Orvane/Office.conf"),
                                 QSettings::IniFormat);
        return settings.value(QStringLiteral("6.0/common/CrashDump/SaveDump")).toString();
    }

private slots:
    void cleanup()
    {
        OfficeAssiant::KToolManager::instance().dumpHelp.stopWatching();
        QDir(dumpDirectory()).removeRecursively();
        QSettings(QStringLiteral("Orvane"), QStringLiteral("Office")).clear();
    }

    void withoutSaveDumpStoredDumpsAreKept()
    {
        RecordingShell shell;
        QCOMPARE(stateOf(shell), (QJsonObject{{QStringLiteral("enable"), true},
                                              {QStringLiteral("feedback"), false}}));
    }

    void anEmptyDirectoryGivesNoFeedbackAndOneDumpDoes()
    {
        RecordingShell shell;
        QVERIFY(QDir().mkpath(dumpDirectory()));
        QVERIFY(!stateOf(shell).value(QLatin1String("feedback")).toBool());
        makeFile(QStringLiteral("vyr_12.dmp"));
        QVERIFY(stateOf(shell).value(QLatin1String("feedback")).toBool());
    }

    void aChangeThatAnotherProgramMakesInTheSettingsIsSeen()
    {
        RecordingShell shell;
        testsupport::PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"),
                                                      "[6.0]\ncommon\\CrashDump\\SaveDump=false\n");
        QVERIFY(!stateOf(shell).value(QLatin1String("enable")).toBool(true));
        testsupport::PrivateHome::current().writeFile(QStringLiteral(".config/Orvane/Office.conf"),
                                                      "[6.0]\ncommon\\CrashDump\\SaveDump=true\n");
        QVERIFY(stateOf(shell).value(QLatin1String("enable")).toBool());
    }

    void garbageInTheSettingsReadsAsKept()
    {
        RecordingShell shell;
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".config/Orvane/Office.conf"),
            QByteArray("\0\xff[[[6.0\n====\n\\\\x[6.0]]\ncommon", 30));
        QVERIFY(stateOf(shell).value(QLatin1String("enable")).toBool());
    }

    void otherSettingsStayAsTheSuiteWritesThem()
    {
        RecordingShell shell;
        const auto &home = testsupport::PrivateHome::current();
        const QString file = home.writeFile(QStringLiteral(".config/Orvane/Office.conf"),
                                            "[6.0]\nname=\\x4e2d\\x31, \\xe9\n%U4E2D=1\n");
        QCOMPARE(shell.call(QStringLiteral("stopDump")), success());
        QCOMPARE(testsupport::readFile(file),
                 "[6.0]\ncommon\\CrashDump\\SaveDump=false\nname=\\x4e2d\\x31, "
                 "\\xe9\n%U4E2D=1\n");
    }

    void startDumpMakesTheDirectoryWithItsParents()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("startDump")), success());
        QVERIFY(QDir(dumpDirectory()).exists());
        QCOMPARE(storedSaveDump(), QStringLiteral("true"));
    }

    void startThenStopLeavesFalseStoredAndTheDirectoryUnwatched()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("startDump")), success());
        QCOMPARE(shell.call(QStringLiteral("stopDump")), success());
        QCOMPARE(storedSaveDump(), QStringLiteral("false"));
        WatchOfOurOwn watch;
        makeFile(QStringLiteral("vyr_1.dmp"));
        QVERIFY(watch.waitForChange());
        QVERIFY(shell.events(QStringLiteral("callback")).isEmpty());
    }

    void aFreshDumpIsToldToEveryPage()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("getDumpState"), {}, {}, QStringLiteral("child"));
        shell.call(QStringLiteral("startDump"));
        makeFile(QStringLiteral("shw_4.dmp"));
        QVERIFY(
            QTest::qWaitFor([&] { return shell.events(QStringLiteral("callback")).size() >= 2; },
                            testsupport::longestWaitMs));
        const QList<QJsonObject> callbacks = shell.events(QStringLiteral("callback"));
        for (const QJsonObject &event : callbacks) {
            QCOMPARE(event.value(QLatin1String("callback")).toString(),
                     QStringLiteral("freshcrshpageCallBack"));
            QCOMPARE(event.value(QLatin1String("result")).toString(), QStringLiteral("success"));
        }
    }

    void aFileThatIsNoDumpIsNotTold()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("startDump"));
        WatchOfOurOwn watch;
        makeFile(QStringLiteral("readme.txt"));
        QVERIFY(watch.waitForChange());
        QVERIFY(shell.events(QStringLiteral("callback")).isEmpty());
    }

    void aDeletionTellsAgainWhileAnOlderDumpRemains()
    {
        RecordingShell shell;
        QVERIFY(QDir().mkpath(dumpDirectory()));
        makeFile(QStringLiteral("vyr_1.dmp"));
        makeFile(QStringLiteral("vyr_2.dmp"));
        shell.call(QStringLiteral("startDump"));
        QVERIFY(QFile::remove(dumpDirectory() + QStringLiteral("/vyr_2.dmp")));
        QVERIFY(!shell.waitFor(QStringLiteral("callback"), QStringLiteral("freshcrshpageCallBack"))
                     .isEmpty());
    }

    void watchingTwiceTellsOnce()
    {
        RecordingShell shell;
        shell.call(QStringLiteral("startDump"));
        shell.call(QStringLiteral("startDump"));
        WatchOfOurOwn watch;
        makeFile(QStringLiteral("vyr_1.dmp"));
        QVERIFY(watch.waitForChange());
        shell.waitFor(QStringLiteral("callback"));
        QCOMPARE(shell.events(QStringLiteral("callback")).size(), 1);
    }

    void clearingRemovesFilesOfAnyNameAndLeavesSubdirectories()
    {
        RecordingShell shell;
        QVERIFY(QDir().mkpath(dumpDirectory() + QStringLiteral("/kept")));
        makeFile(QStringLiteral("vyr_1.dmp"));
        makeFile(QStringLiteral("readme.txt"));
        makeFile(QStringLiteral("kept/vyr_2.dmp"));
        QCOMPARE(shell.call(QStringLiteral("cleardumpdir")), success());
        QCOMPARE(QDir(dumpDirectory()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{QStringLiteral("kept")});
        QVERIFY(QFile::exists(dumpDirectory() + QStringLiteral("/kept/vyr_2.dmp")));
    }

    void aDumpWhoseNameIsNotUtf8IsFoundAndCleared()
    {
        QVERIFY(QDir().mkpath(dumpDirectory()));
        const QByteArray dump = QFile::encodeName(dumpDirectory()) + "/vyr_1\xff" + "dmp";
        const int file = ::open(dump.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        QVERIFY(file >= 0);
        ::close(file);
        RecordingShell shell;
        QVERIFY(stateOf(shell).value(QLatin1String("feedback")).toBool());
        QCOMPARE(shell.call(QStringLiteral("cleardumpdir")), success());
        QVERIFY(::access(dump.constData(), F_OK) != 0);
    }

    void clearingAMissingDirectorySucceedsAndMakesNone()
    {
        RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("cleardumpdir")), success());
        QVERIFY(!QDir(dumpDirectory()).exists());
    }

    void startDumpSucceedsEvenWhereTheDirectoryCannotBeMade()
    {
        RecordingShell shell;
        QVERIFY(QDir().mkpath(QFileInfo(dumpDirectory()).path()));
        QFile file(dumpDirectory());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(shell.call(QStringLiteral("startDump")), success());
        QVERIFY(file.exists());
        QVERIFY(file.remove());
    }

    void theMonitorDeclaresItsSignalBeforeItsSlot()
    {
        const QMetaObject &meta = OfficeAssiant::KDumpHelp::staticMetaObject;
        QCOMPARE(meta.method(meta.methodOffset()).methodSignature(),
                 QByteArray("sigdumpfileready()"));
        QCOMPARE(meta.method(meta.methodOffset() + 1).methodSignature(),
                 QByteArray("dumpfilegenerate(QString)"));
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    }
};

HEADLESS_TEST_MAIN(DumpCommandsTest)
#include "tst_dumpcommands.moc"
