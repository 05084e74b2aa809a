#include <QThread>

#include <memory>

#include "bridge/ktoolmanager.h"
#include "tests/bridge/guardedbridge.h"
#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"
#include "tests/support/suiteprogram.h"

using OfficeAssiant::KToolManager;
using testsupport::RecordingContainer;

namespace {

/// A bridge of a shell that takes the GUI thread for each answer, and looks at the manager then.
class BlockingBridge : public GuardedBridge
{
public:
    using GuardedBridge::GuardedBridge;

    void callbackToJS(const QString &callback, const QString &json, bool base64) override
    {
        const auto deliver = [=] {
            seen = KToolManager::instance().childPageBridge();
            KToolManager::instance().setChildPageBridge(this);
            KVyrAssistantToolAPI::callbackToJS(callback, json, base64);
        };
        if (QThread::currentThread() == thread())
            deliver();
        else
            QMetaObject::invokeMethod(this, deliver, Qt::BlockingQueuedConnection);
    }

    KVyrAssistantToolAPI *seen = nullptr;
};

const OfficeAssiant::EnvironmentCheck check{QStringLiteral("t"), QStringLiteral("vyr"), {}};

} // namespace

/// Findings of a check on their way to the page.
class PublishingShellTest : public QObject
{
    Q_OBJECT

private:
    testsupport::SuiteProgram m_tool{QStringLiteral("vyrEnvCheckTool")};

private slots:
    static void initTestCase()
    {
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini"), "[vyrEnv]\nvyr-t=ok\n");
    }

    void aShellThatTakesTheGuiThreadAndAsksTheManagerDoesNotDeadlock()
    {
        RecordingContainer container;
        auto *bridge = new BlockingBridge(&container);
        KToolManager::instance().setChildPageBridge(bridge);
        KToolManager::instance().envCheckThread.check(check);
        QTRY_COMPARE_WITH_TIMEOUT(container.calls.size(), 1, testsupport::longestWaitMs);
        QCOMPARE(bridge->seen, bridge);
    }

    void aPageThatClosesWhileACheckPublishesIsNotTouchedAgain()
    {
        for (int round = 0; round < 50; ++round) {
            auto container = std::make_unique<RecordingContainer>();
            KToolManager &manager = KToolManager::instance();
            manager.setChildPageBridge(new GuardedBridge(container.get()));
            manager.envCheckThread.check(check);
            // Closes at any moment of the publication, also before and after it.
            if (round % 2 == 0)
                QVERIFY(manager.envCheckThread.wait(testsupport::longestWaitMs));
            else
                QTest::qWait(round / 4);
            container.reset();
            QVERIFY(!manager.childPageBridge());
            QVERIFY(manager.envCheckThread.wait(testsupport::longestWaitMs));
            QCoreApplication::processEvents();
        }
    }

    void thePageThatIsOpenThenIsShownTheFindings()
    {
        auto first = std::make_unique<RecordingContainer>();
        RecordingContainer second;
        KToolManager &manager = KToolManager::instance();
        manager.setChildPageBridge(new GuardedBridge(first.get()));
        manager.envCheckThread.check(check);
        QVERIFY(manager.envCheckThread.wait(testsupport::longestWaitMs));
        first.reset();
        manager.setChildPageBridge(new GuardedBridge(&second));
        QCoreApplication::processEvents();
        QCOMPARE(second.calls.size(), 1);
        QCOMPARE(second.calls.first().callback, QStringLiteral("returnvyrenvcheck"));
    }
};

HEADLESS_TEST_MAIN(PublishingShellTest)
#include "tst_publishingshell.moc"
