#include <QTimer>

#include <memory>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "helio/headless/headlesspage.h"
#include "helio/runtime/windowsignals.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"
#include "tests/support/shell/recordingshell.h"

/// Screenshots where the suite's screen-grab library is installed.
class ScreenGrabTest : public QObject
{
    Q_OBJECT

private slots:
    void theLibraryIsCalledOnceBetweenMinimisingAndRestoring()
    {
        const QString note = testsupport::PrivateHome::current().path() + QStringLiteral("/grabs");
        qputenv("FAKE_SCREEN_GRAB", QFile::encodeName(note));
        testsupport::RecordingShell shell;
        QVERIFY(OfficeAssiant::KToolManager::instance().screenGrab());
        QByteArray grabsWhenRestored;
        const helio::WindowSignals window(shell.shell().page(QStringLiteral("main"))->widget());
        connect(&window, &helio::WindowSignals::sigShowNormal, this,
                [&] { grabsWhenRestored = testsupport::readFile(note); });
        QCOMPARE(shell.call(QStringLiteral("screenshots")),
                 QJsonObject({{QStringLiteral("result"), QStringLiteral("success")}}));
        QCOMPARE(grabsWhenRestored, QByteArray("grabbed\n"));
        QCOMPARE(testsupport::readFile(note), QByteArray("grabbed\n"));
    }

    void aPageThatIsClosedMeanwhileIsNotTouchedAgain()
    {
        qputenv("FAKE_SCREEN_GRAB", "/dev/null");
        auto container = std::make_unique<testsupport::RecordingContainer>();
        auto *bridge = new KVyrAssistantToolAPI(container.get());
        QTimer::singleShot(20, bridge, [bridge] { delete bridge; });
        bridge->fromJSAsynCall(QStringLiteral(R"({"command":"screenshots","callback":"back"})"));
        QVERIFY(container->calls.isEmpty());
    }
};

int main(int argc, char *argv[])
{
    const testsupport::PrivateHome home;
    qputenv("HELIO_FRAMEWORKS", FAKE_FRAMEWORKS);
    const helio::HeadlessApplication application(argv[0]);
    ScreenGrabTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_screengrab.moc"
