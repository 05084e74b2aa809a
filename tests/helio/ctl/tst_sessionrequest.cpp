#include <QJsonArray>

#include "helio/ctl/sessionrequest.h"
#include "tests/support/shell/headlesstest.h"

using ctl::parseSessionRequest;
using ctl::SessionRequest;

/// How the lines of a session are parsed.
class SessionRequestTest : public QObject
{
    Q_OBJECT

private slots:
    void aCommandMayBeBare()
    {
        const SessionRequest request = parseSessionRequest("{\"command\":\"router\"}");
        QCOMPARE(request.kind, SessionRequest::Command);
        QCOMPARE(request.command, QStringLiteral("router"));
        QCOMPARE(request.page, QStringLiteral("main"));
        QVERIFY(request.id.isNull());
        QVERIFY(request.args.isEmpty() && request.choices.isEmpty());
    }

    void aCommandMayHaveEverything()
    {
        const SessionRequest request = parseSessionRequest(
            "{\"id\":{\"n\":[1]},\"page\":\"child\",\"command\":\"router\","
            "\"args\":{\"page\":\"crash.html\",\"n\":5},\"choose\":[\"/tmp/a\",\"\"]}");
        QCOMPARE(request.kind, SessionRequest::Command);
        QCOMPARE(request.id, QJsonValue(QJsonObject{{QStringLiteral("n"), QJsonArray{1}}}));
        QCOMPARE(request.page, QStringLiteral("child"));
        QCOMPARE(request.args, (QJsonObject{{QStringLiteral("page"), QStringLiteral("crash.html")},
                                            {QStringLiteral("n"), 5}}));
        QCOMPARE(request.choices, QStringList({QStringLiteral("/tmp/a"), QString()}));
    }

    void waitsAreRead()
    {
        QCOMPARE(parseSessionRequest("{\"wait\":500}").kind, SessionRequest::Wait);
        QCOMPARE(parseSessionRequest("{\"wait\":500}").durationMs, 500);
        QCOMPARE(parseSessionRequest("{\"wait\":0}").durationMs, 0);
    }

    void untilsAreReadAndLastThirtySecondsAtMostByDefault()
    {
        const SessionRequest request =
            parseSessionRequest("{\"until\":\"searchfilefinish\",\"timeout\":5000}");
        QCOMPARE(request.kind, SessionRequest::Until);
        QCOMPARE(request.callback, QStringLiteral("searchfilefinish"));
        QCOMPARE(request.durationMs, 5000);
        QCOMPARE(parseSessionRequest("{\"until\":\"x\"}").durationMs, 30000);
    }

    void aFaultyLineIsExplainedAndKeepsItsId_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QJsonValue>("id");
        const QJsonValue none;
        const auto row = [](const char *tag, const QByteArray &line, const QJsonValue &id) {
            QTest::newRow(tag) << line << id;
        };
        row("words", "router", none);
        row("cut off", "{\"id\":1,\"command\":", none);
        row("array", "[1]", none);
        row("number", "5", none);
        row("two objects", "{}{}", none);
        row("zero inside", QByteArray("{}\0{}", 5), none);
        row("not UTF-8", "{\"command\":\"\xff\xfe\"}", none);
        row("deep", QByteArray(100000, '['), none);
        row("nothing asked", "{\"id\":7}", 7);
        row("command is a number", "{\"id\":\"a\",\"command\":1}", QStringLiteral("a"));
        row("command is empty", "{\"id\":1,\"command\":\"\"}", 1);
        row("unknown page", "{\"id\":1,\"command\":\"x\",\"page\":\"other\"}", 1);
        row("page is null", "{\"id\":1,\"command\":\"x\",\"page\":null}", 1);
        row("args is an array", "{\"id\":1,\"command\":\"x\",\"args\":[]}", 1);
        row("args is null", "{\"id\":1,\"command\":\"x\",\"args\":null}", 1);
        row("choose is a text", "{\"id\":1,\"command\":\"x\",\"choose\":\"/a\"}", 1);
        row("choose has a number", "{\"id\":1,\"command\":\"x\",\"choose\":[\"/a\",1]}", 1);
        row("wait is a text", "{\"id\":1,\"wait\":\"5\"}", 1);
        row("wait is negative", "{\"id\":1,\"wait\":-1}", 1);
        row("wait is too long", "{\"id\":1,\"wait\":1e10}", 1);
        row("until is empty", "{\"id\":1,\"until\":\"\"}", 1);
        row("until is a number", "{\"id\":1,\"until\":5}", 1);
        row("timeout is a text", "{\"id\":1,\"until\":\"x\",\"timeout\":\"5\"}", 1);
        row("timeout is negative", "{\"id\":1,\"until\":\"x\",\"timeout\":-5}", 1);
    }

    void aFaultyLineIsExplainedAndKeepsItsId()
    {
        QFETCH(QByteArray, line);
        QFETCH(QJsonValue, id);
        const SessionRequest request = parseSessionRequest(line);
        QCOMPARE(request.kind, SessionRequest::Faulty);
        QVERIFY(!request.fault.isEmpty());
        QCOMPARE(request.id, id);
    }

    void aCommandGoesBeforeAWait()
    {
        QCOMPARE(parseSessionRequest("{\"command\":\"x\",\"wait\":5,\"until\":\"y\"}").kind,
                 SessionRequest::Command);
    }
};

HEADLESS_TEST_MAIN(SessionRequestTest)
#include "tst_sessionrequest.moc"
