#include <QDir>
#include <QSignalSpy>
#include <QThread>

#include <array>
#include <atomic>
#include <memory>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "plugin/config/suitefiles.h"
#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"
#include "tests/support/suiteprogram.h"

using OfficeAssiant::KToolManager;
using testsupport::longestWaitMs;
using testsupport::PrivateHome;

/// A manager that threads other than the GUI thread make, all at once.
class ManagerThreadTest : public QObject
{
    Q_OBJECT

private:
    std::array<std::atomic<KToolManager *>, 4> m_managers{};

private slots:
    void initTestCase()
    {
        std::vector<std::unique_ptr<QThread>> threads;
        for (std::atomic<KToolManager *> &manager : m_managers) {
            threads.emplace_back(
                QThread::create([&manager] { manager = &KToolManager::instance(); }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            QVERIFY(thread->wait(longestWaitMs));
    }

    void everyThreadGetsTheSameManager()
    {
        for (const std::atomic<KToolManager *> &manager : m_managers)
            QCOMPARE(manager.load(), &KToolManager::instance());
    }

    static void theManagerAndItsHelpersLiveOnTheGuiThread()
    {
        KToolManager &manager = KToolManager::instance();
        const std::initializer_list<const QObject *> objects{
            &manager,          &manager.desktopHelp,   &manager.updateHelp,
            &manager.infoHelp, &manager.inputChecker,  &manager.dumpHelp,
            &manager.fsSearch, &manager.envCheckThread};
        for (const QObject *object : objects)
            QCOMPARE(object->thread(), qApp->thread());
    }

    static void aNewDumpIsStillAnnounced()
    {
        KToolManager &manager = KToolManager::instance();
        QSignalSpy ready(&manager.dumpHelp, &OfficeAssiant::KDumpHelp::sigdumpfileready);
        manager.dumpHelp.startWatching();
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/dump/vyr_1.dmp"),
                                         "dump");
        QVERIFY(ready.wait(longestWaitMs));
    }

    static void findingsStillReachThePage()
    {
        const testsupport::SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"));
        KToolManager &manager = KToolManager::instance();
        testsupport::RecordingContainer container;
        manager.setChildPageBridge(new KVyrAssistantToolAPI(&container));
        manager.envCheckThread.check({QStringLiteral("t"), QStringLiteral("vyr"), {}});
        QTRY_COMPARE_WITH_TIMEOUT(container.calls.size(), 1, longestWaitMs);
    }
};

HEADLESS_TEST_MAIN(ManagerThreadTest)
#include "tst_managerthread.moc"
