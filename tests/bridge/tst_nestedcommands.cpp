#include <QMetaMethod>
#include <QTcpServer>
#include <QTimer>

#include "bridge/kvyrassistanttoolapi.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using testsupport::RecordingShell;

namespace {

const QString nesting[] = {QStringLiteral("screenshots"), QStringLiteral("openremoveurlcheck")};

/// Says that this program runs in a private root, where every place of the machine is the test's.
const char privateRootVariable[] = "ASSISTANT_TEST_IN_PRIVATE_ROOT";

/// What these delete, write or start has its fixed place on the machine, so they run in a private
/// root only.
const QStringList commandsWithFixedPlaces{
    QStringLiteral("clearlogfile"),      QStringLiteral("testupdate"),
    QStringLiteral("testdailyreport"),   QStringLiteral("testuninstallreport"),
    QStringLiteral("testinstallreport"), QStringLiteral("changeupdateconfig")};

/// The commands in the order in which the bridge declares them.
QStringList commandNames()
{
    QStringList names;
    const QMetaObject &bridge = KVyrAssistantToolAPI::staticMetaObject;
    for (int index = bridge.methodOffset(); index < bridge.methodCount(); ++index) {
        const QMetaMethod method = bridge.method(index);
        if (method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Public &&
            method.parameterTypes() == QList<QByteArray>{"KxWebViewJSContext&"})
            names.append(QString::fromLatin1(method.name()));
    }
    return names;
}

/// Takes connections and does not answer, so that whoever tests it waits.
class SilentServer : public QTcpServer
{
public:
    SilentServer() { QVERIFY(listen(QHostAddress::LocalHost)); }

    QJsonObject test() const
    {
        return {
            {QStringLiteral("urlpath"), QStringLiteral("http://127.0.0.1:%1/").arg(serverPort())},
            {QStringLiteral("funcname"), QStringLiteral("saveURL")}};
    }
};

} // namespace

/// Commands that arrive while another one waits in an event loop of its own.
class NestedCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCommandIsAnsweredWhileAnotherWaits_data()
    {
        QTest::addColumn<QString>("outer");
        QTest::addColumn<QString>("inner");
        const QStringList commands = commandNames();
        QCOMPARE(commands.size(), 57);
        for (const QString &outer : nesting) {
            for (const QString &inner : commands) {
                if (!qEnvironmentVariableIsSet(privateRootVariable) &&
                    commandsWithFixedPlaces.contains(inner))
                    continue;
                QTest::addRow("%s in %s", qPrintable(inner), qPrintable(outer)) << outer << inner;
            }
        }
    }

    void everyCommandIsAnsweredWhileAnotherWaits()
    {
        QFETCH(QString, outer);
        QFETCH(QString, inner);
        // Nothing of the machine runs, whatever a command starts.
        const testsupport::FakePrograms programs;
        programs.hideOthers();
        const QString kept =
            testsupport::PrivateHome::current().writeFile(QStringLiteral("kept"), "mine");
        RecordingShell shell;
        SilentServer server;
        QJsonObject innerAnswer{{QStringLiteral("never"), true}};
        bool innerRanInside = false;
        bool outerIsAnswered = false;
        QTimer::singleShot(20, &server, [&] {
            innerAnswer = shell.call(inner);
            innerRanInside = !outerIsAnswered;
            server.close();
        });
        const QJsonObject outerAnswer = shell.call(outer, server.test());
        outerIsAnswered = true;
        QVERIFY(innerRanInside);
        QVERIFY(!innerAnswer.contains(QStringLiteral("never")));
        // "error" beside "result" would be the refusal of an unknown or a failed command.
        QVERIFY(!innerAnswer.contains(QStringLiteral("error")));
        const QString expected = outer == nesting[0]
                                     ? QStringLiteral("success")
                                     : QString::fromLatin1(QByteArray("0:").toBase64());
        QCOMPARE(outerAnswer.value(QLatin1String("result")).toString(), expected);
        QCOMPARE(testsupport::readFile(kept), QByteArray("mine"));
    }
};

HEADLESS_TEST_MAIN(NestedCommandsTest)
#include "tst_nestedcommands.moc"
