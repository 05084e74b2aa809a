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

/// Set if this program runs in a private root, where it may change everything.
const char privateRootVariable[] = "ASSISTANT_TEST_IN_PRIVATE_ROOT";

/// Commands that delete, write or start something at a fixed path: run only in a private root.
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

/// Accepts connections but never answers, so that a test of it keeps waiting.
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

/// Commands that arrive while another one waits in a nested event loop.
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
        // Hides the machine's programs from the commands.
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
        // An "error" member would mean that the command was refused.
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
