#include <QAbstractEventDispatcher>
#include <QJsonDocument>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTimer>

#include <memory>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "helio/headless/headlesspage.h"
#include "servercheck/documentservertester.h"
#include "tests/support/loopbackserver.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using namespace OfficeAssiant;
using testsupport::LoopbackServer;
using testsupport::WireRequest;

namespace {

const QString serverTest = QStringLiteral("openremoveurlcheck");
const QString succeeded = QStringLiteral("success");
const QString withoutStatus = QStringLiteral("0:");

QJsonObject testOf(const QString &url)
{
    return {{QStringLiteral("urlpath"), url},
            {QStringLiteral("funcname"), QStringLiteral("OpenDocumentFromServer")}};
}

QString queuedCall(const QString &command, const QString &callback, const QJsonObject &args = {})
{
    const QJsonObject call{{QStringLiteral("command"), command},
                           {QStringLiteral("callback"), callback},
                           {QStringLiteral("args"), args}};
    return QString::fromUtf8(QJsonDocument(call).toJson());
}

/// Accepts connections and never answers. close() drops them and refuses the client's retries.
class SilentServer : public QTcpServer
{
public:
    SilentServer()
    {
        QVERIFY(listen(QHostAddress::LocalHost));
        m_url = QStringLiteral("http://127.0.0.1:%1/").arg(serverPort());
    }

    QString url() const { return m_url; }

private:
    QString m_url;
};

QString tryServer(const SilentServer &server)
{
    const ServerTest test{server.url(), QStringLiteral("saveURL"), QString(), QString()};
    return testDocumentServer(test).value_or(succeeded);
}

} // namespace

/// The rest of the process while a document server does not answer.
class WaitingServerTest : public QObject
{
    Q_OBJECT

private slots:
    void theEventLoopSleepsWhileItWaits()
    {
        SilentServer server;
        QTimer::singleShot(600, &server, &QTcpServer::close);
        const QSignalSpy turns(QCoreApplication::eventDispatcher(),
                               &QAbstractEventDispatcher::awake);
        QCOMPARE(tryServer(server), withoutStatus);
        // A busy loop would turn some hundred thousand times.
        QVERIFY2(turns.count() < 1000, qPrintable(QString::number(turns.count())));
    }

    void theEndOfTheApplicationBreaksTheTestOff()
    {
        SilentServer server;
        QString status;
        QTimer::singleShot(0, this, [&] { status = tryServer(server); });
        QTimer::singleShot(100, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
        QCOMPARE(status, withoutStatus);
    }

    void otherCommandsRunWhileOneTestWaits()
    {
        SilentServer silent;
        LoopbackServer server(
            [](const WireRequest &) { return LoopbackServer::response("200 OK", "done"); });
        testsupport::RecordingShell shell;
        KVyrAssistantToolAPI *bridge = KToolManager::instance().mainPageBridge();
        bridge->queueJSAsynCall(queuedCall(QStringLiteral("inputcheck"), QStringLiteral("input")),
                                false);
        bridge->queueJSAsynCall(
            queuedCall(serverTest, QStringLiteral("inner"), testOf(server.url())), false);
        bool outerIsAnswered = false;
        QTimer waiting;
        connect(&waiting, &QTimer::timeout, this, [&] {
            if (shell.events(QStringLiteral("callback")).size() < 2)
                return;
            QVERIFY(!outerIsAnswered);
            silent.close();
        });
        waiting.start(20);
        const QJsonObject outer = shell.call(serverTest, testOf(silent.url()));
        outerIsAnswered = true;
        QCOMPARE(outer.value(QLatin1String("result")).toString(),
                 QString::fromLatin1(QByteArray("0:").toBase64()));
        const QList<QJsonObject> callbacks = shell.events(QStringLiteral("callback"));
        QCOMPARE(callbacks.size(), 2);
        QCOMPARE(callbacks.at(0).value(QLatin1String("callback")).toString(),
                 QStringLiteral("input"));
        QCOMPARE(callbacks.at(1).value(QLatin1String("callback")).toString(),
                 QStringLiteral("inner"));
        QCOMPARE(callbacks.at(1).value(QLatin1String("result")).toString(), succeeded);
    }

    void testsInsideEachOtherAreRefusedBeyond64()
    {
        constexpr int innerTests = 300;
        SilentServer silent;
        testsupport::RecordingShell shell;
        KVyrAssistantToolAPI *bridge = KToolManager::instance().mainPageBridge();
        const QString call = queuedCall(serverTest, QStringLiteral("inner"), testOf(silent.url()));
        for (int index = 0; index < innerTests; ++index)
            bridge->queueJSAsynCall(call, false);
        const auto answered = [&shell] { return shell.events(QStringLiteral("callback")).size(); };
        bool areRefused = false;
        QTimer waiting;
        connect(&waiting, &QTimer::timeout, this, [&] {
            if (answered() != innerTests - 63)
                return;
            areRefused = true;
            silent.close();
        });
        waiting.start(20);
        QTimer::singleShot(testsupport::longestWaitMs, &silent, &QTcpServer::close);
        shell.call(serverTest, testOf(silent.url()));
        QVERIFY(areRefused);
        QTRY_COMPARE_WITH_TIMEOUT(answered(), innerTests, testsupport::longestWaitMs);
    }

    void aPageMayBeClosedWhileItsTestWaits()
    {
        SilentServer server;
        testsupport::RecordingShell shell;
        auto page = std::make_unique<helio::HeadlessPage>(QStringLiteral("child"));
        const QPointer<KVyrAssistantToolAPI> bridge = KToolManager::instance().childPageBridge();
        QVERIFY(bridge);
        QTimer waiting;
        connect(&waiting, &QTimer::timeout, this, [&] {
            page.reset();
            server.close();
        });
        waiting.start(50);
        bridge->fromJSAsynCall(
            queuedCall(serverTest, QStringLiteral("late"), testOf(server.url())));
        QVERIFY(!bridge);
        QVERIFY(shell.events(QStringLiteral("callback")).isEmpty());
    }
};

HEADLESS_TEST_MAIN(WaitingServerTest)
#include "tst_waitingservertest.moc"
