#include <QJsonArray>
#include <QJsonDocument>

#include <memory>

#include <stdexcept>

#include "bridge/answer.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewjsapihandler.h"
#include "host/kxwebviewjscontext.h"
#include "tests/support/headlesstest.h"
#include "tests/support/patience.h"
#include "tests/support/recordingcontainer.h"

using testsupport::RecordingContainer;

/// A script object with commands of the test's own.
class ProbeObject : public KxWebViewAsynJSObject
{
    Q_OBJECT

public:
    explicit ProbeObject(KxWebViewContainer *container)
        : KxWebViewAsynJSObject(container, container)
    {
    }

    int runs = 0;
    QMap<QString, QVariant> arguments;

public slots:
    void echo(KxWebViewJSContext &context)
    {
        ++runs;
        arguments = KxWebViewJSApiHandler::parseContextArgs(context, true);
        OfficeAssiant::setResult(context,
                                 OfficeAssiant::textArgument(context, QStringLiteral("value")));
    }
    void silent(KxWebViewJSContext &) { ++runs; }
    void throwsError(KxWebViewJSContext &) { throw std::runtime_error("out of luck"); }
    void throwsNumber(KxWebViewJSContext &) { throw 42; }
    void destroysItself(KxWebViewJSContext &) { delete this; }
    void withoutContext() { ++runs; }
    void byPointer(KxWebViewJSContext *) { ++runs; }
    void withMore(KxWebViewJSContext &, int) { ++runs; }

protected slots:
    void protectedSlot(KxWebViewJSContext &) { ++runs; }

private slots:
    void privateSlot(KxWebViewJSContext &) { ++runs; }

signals:
    void contextSignal(KxWebViewJSContext &context);
};

namespace {

/// A handler that answers for a command in place of a slot.
class FixedAnswer : public KxWebViewJSApiHandler
{
public:
    void call(KxWebViewJSContext &context) override
    {
        OfficeAssiant::setResult(context, QStringLiteral("fixed"));
    }
};

QString callText(const QString &command, const QJsonObject &args = {})
{
    const QJsonObject call{{QStringLiteral("command"), command},
                           {QStringLiteral("callback"), QStringLiteral("back")},
                           {QStringLiteral("args"), args}};
    return QString::fromUtf8(QJsonDocument(call).toJson(QJsonDocument::Compact));
}

QString base64(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

/// What a page may send, and what it gets for it.
class PageCallsTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_container = std::make_unique<RecordingContainer>();
        m_object = new ProbeObject(m_container.get());
    }

    void anArgumentOfEveryKindReadsAsText_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::addColumn<QString>("text");
        QTest::newRow("text") << QByteArray("\"a b\"") << QStringLiteral("a b");
        QTest::newRow("empty text") << QByteArray("\"\"") << QString();
        QTest::newRow("null") << QByteArray("null") << QString();
        QTest::newRow("true") << QByteArray("true") << QStringLiteral("true");
        QTest::newRow("false") << QByteArray("false") << QStringLiteral("false");
        QTest::newRow("whole number") << QByteArray("42") << QStringLiteral("42");
        QTest::newRow("negative number") << QByteArray("-7") << QStringLiteral("-7");
        QTest::newRow("fraction") << QByteArray("1.5") << QStringLiteral("1.5");
        QTest::newRow("array") << QByteArray("[\"a\", 1]") << QString();
        QTest::newRow("empty array") << QByteArray("[]") << QString();
        QTest::newRow("object") << QByteArray("{\"a\": 1}") << QString();
        QTest::newRow("Chinese") << QByteArray("\"\xe6\x96\x87\xe6\xa1\xa3\"")
                                 << QStringLiteral("\u6587\u6863");
        QTest::newRow("escaped pair")
            << QByteArray("\"\\ud83d\\ude00\"") << QString::fromUtf8("\xf0\x9f\x98\x80");
        QTest::newRow("zero inside")
            << QByteArray("\"a\\u0000b\"") << QString(QLatin1String("a\0b", 3));
        QTest::newRow("line separator")
            << QByteArray("\"\\u2028\\u2029</script>\"") << QStringLiteral("\u2028\u2029</script>");
        QTest::newRow("quotes and controls")
            << QByteArray("\"\\\"\\\\\\b\\f\\n\\r\\t'`\"") << QStringLiteral("\"\\\b\f\n\r\t'`");
    }

    void anArgumentOfEveryKindReadsAsText()
    {
        QFETCH(QByteArray, json);
        QFETCH(QString, text);
        m_object->fromJSAsynCall(QString::fromUtf8(
            "{\"command\":\"echo\",\"callback\":\"back\",\"args\":{\"value\":" + json + "}}"));
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("result"), text}}));
    }

    void aLoneSurrogateInAnArgumentIsAnswered()
    {
        m_object->fromJSAsynCall(QStringLiteral(
            "{\"command\":\"echo\",\"callback\":\"back\",\"args\":{\"value\":\"a\\ud800b\"}}"));
        const QString result = onlyAnswer().value(QLatin1String("result")).toString();
        QVERIFY(result.startsWith(QLatin1Char('a')) && result.endsWith(QLatin1Char('b')));
    }

    void anAbsentArgumentReadsAsAnEmptyText()
    {
        m_object->fromJSAsynCall(callText(QStringLiteral("echo")));
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("result"), QString()}}));
    }

    void argumentsMayBeLeftOutAltogether()
    {
        m_object->fromJSAsynCall(QStringLiteral("{\"command\":\"echo\",\"callback\":\"back\"}"));
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("result"), QString()}}));
    }

    void argumentsAreKeyedByTheirNames()
    {
        m_object->fromJSAsynCall(
            callText(QStringLiteral("echo"), {{QStringLiteral("value"), QStringLiteral("v")},
                                              {QString(), true},
                                              {QStringLiteral("Value"), 3}}));
        QCOMPARE(m_object->arguments,
                 (QMap<QString, QVariant>{{QString(), true},
                                          {QStringLiteral("Value"), 3},
                                          {QStringLiteral("value"), QStringLiteral("v")}}));
    }

    void argumentsCanBeReadByTheirPlace()
    {
        KxWebViewJSContext context;
        context.parse(QStringLiteral("echo"), QStringLiteral("back"),
                      {{QStringLiteral("b"), 2}, {QStringLiteral("a"), 1}});
        QCOMPARE(KxWebViewJSApiHandler::parseContextArgs(context, false),
                 (QMap<QString, QVariant>{{QStringLiteral("0"), 1}, {QStringLiteral("1"), 2}}));
    }

    void megabytesAreAnsweredWhole()
    {
        const QString large(3 << 20, QLatin1Char('x'));
        m_object->fromJSAsynCall(
            callText(QStringLiteral("echo"), {{QStringLiteral("value"), large}}));
        QCOMPARE(onlyAnswer().value(QLatin1String("result")).toString(), large);
    }

    void anUnreadableCallIsAnsweredToTheErrorCallback_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("error");
        const QString notJson = QStringLiteral("a call is not JSON: ");
        const QString notObject = QStringLiteral("a call is not a JSON object");
        QTest::newRow("empty") << QString() << notJson;
        QTest::newRow("blank") << QStringLiteral("  ") << notJson;
        QTest::newRow("words") << QStringLiteral("router") << notJson;
        QTest::newRow("cut off") << QStringLiteral("{\"command\":\"echo\"") << notJson;
        QTest::newRow("two objects") << QStringLiteral("{}{}") << notJson;
        QTest::newRow("zero inside") << QString(QLatin1String("{}\0{}", 5)) << notJson;
        QTest::newRow("array") << QStringLiteral("[]") << notObject;
        QTest::newRow("deeply nested")
            << QString(100000, QLatin1Char('[')) + QString(100000, QLatin1Char(']')) << notJson;
        QTest::newRow("deeply nested argument")
            << QStringLiteral("{\"command\":\"echo\",\"args\":{\"value\":") +
                   QStringLiteral("{\"a\":").repeated(100000) + QLatin1Char('1') +
                   QString(100002, QLatin1Char('}'))
            << notJson;
        QTest::newRow("no command")
            << QStringLiteral("{}") << QStringLiteral("a call needs the text \"command\"");
        QTest::newRow("command is a number") << QStringLiteral("{\"command\":1}")
                                             << QStringLiteral("a call needs the text \"command\"");
        QTest::newRow("callback is an object")
            << QStringLiteral("{\"command\":\"echo\",\"callback\":{}}")
            << QStringLiteral("\"callback\" is not a text");
        QTest::newRow("callback is null")
            << QStringLiteral("{\"command\":\"echo\",\"callback\":null}")
            << QStringLiteral("\"callback\" is not a text");
        QTest::newRow("args is an array") << QStringLiteral("{\"command\":\"echo\",\"args\":[]}")
                                          << QStringLiteral("\"args\" is not an object");
    }

    void anUnreadableCallIsAnsweredToTheErrorCallback()
    {
        QFETCH(QString, call);
        QFETCH(QString, error);
        m_object->fromJSAsynCall(call);
        QCOMPARE(m_object->runs, 0);
        const QString message = onlyAnswer(QStringLiteral("helioErrorCallBack"))
                                    .value(QLatin1String("error"))
                                    .toString();
        QVERIFY2(message.startsWith(error), qPrintable(message));
    }

    void aFaultyCallThatNamesACallbackIsAnsweredThere()
    {
        m_object->fromJSAsynCall(
            QStringLiteral("{\"command\":\"echo\",\"callback\":\"back\",\"args\":7}"));
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("error"),
                                             QStringLiteral("\"args\" is not an object")}}));
    }

    void aCallWithoutACallbackRunsAndIsNotAnswered()
    {
        m_object->fromJSAsynCall(QStringLiteral("{\"command\":\"echo\"}"));
        QCOMPARE(m_object->runs, 1);
        QVERIFY(m_container->calls.isEmpty());
    }

    void onlyPublicSlotsWithOneContextAreCommands_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"withoutContext", "byPointer", "withMore", "protectedSlot",
                                 "privateSlot", "contextSignal", "deleteLater", "destroyed"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void onlyPublicSlotsWithOneContextAreCommands()
    {
        QFETCH(QString, name);
        m_object->fromJSAsynCall(callText(name));
        QCOMPARE(m_object->runs, 0);
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("error"),
                                             QStringLiteral("unknown command: ") + name}}));
    }

    void aCommandThatThrowsIsAnswered()
    {
        m_object->fromJSAsynCall(callText(QStringLiteral("throwsError")));
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("error"),
                                             QStringLiteral("throwsError failed: out of luck")}}));
    }

    void aCommandThatThrowsSomethingElseIsAnsweredToo()
    {
        m_object->fromJSAsynCall(callText(QStringLiteral("throwsNumber")));
        QCOMPARE(onlyAnswer(),
                 QJsonObject({{QStringLiteral("error"), QStringLiteral("throwsNumber failed")}}));
    }

    void aCommandWithoutAResultIsAnsweredWithAnEmptyObject()
    {
        m_object->fromJSAsynCall(callText(QStringLiteral("silent")));
        QCOMPARE(m_container->calls.size(), 1);
        QCOMPARE(m_container->calls.first().json, QStringLiteral("{}"));
    }

    void anObjectThatIsDestroyedByItsCommandIsNotTouchedAgain()
    {
        m_object->fromJSAsynCall(callText(QStringLiteral("destroysItself")));
        QVERIFY(m_container->calls.isEmpty());
    }

    void aHandlerServesItsCommandBeforeTheSlot()
    {
        FixedAnswer handler;
        m_object->setHandler(QStringLiteral("echo"), &handler);
        QCOMPARE(m_object->findHandler(QStringLiteral("echo")), &handler);
        m_object->fromJSAsynCall(callText(QStringLiteral("echo")));
        QCOMPARE(onlyAnswer().value(QLatin1String("result")).toString(), QStringLiteral("fixed"));
        m_object->setHandler(QStringLiteral("echo"), nullptr);
        QVERIFY(!m_object->findHandler(QStringLiteral("echo")));
        m_object->fromJSAsynCall(callText(QStringLiteral("echo")));
        QCOMPARE(m_object->runs, 1);
    }

    void theFirstCallSetsTheHandlersUp()
    {
        QVERIFY(!m_object->isHandlersValid());
        m_object->fromJSAsynCall(callText(QStringLiteral("silent")));
        QVERIFY(m_object->isHandlersValid());
    }

    void aBase64CallIsTheSameCall()
    {
        m_object->fromJSAsynCallBase64(base64(
            callText(QStringLiteral("echo"), {{QStringLiteral("value"), QStringLiteral("\u6587")}})
                .toUtf8()));
        QCOMPARE(onlyAnswer(), QJsonObject({{QStringLiteral("result"), QStringLiteral("\u6587")}}));
    }

    void badBase64IsAnsweredToTheErrorCallback_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain JSON") << callText(QStringLiteral("echo"));
        QTest::newRow("bad character") << base64("{}") + QLatin1Char('!');
        QTest::newRow("bad length") << QStringLiteral("e");
        QTest::newRow("blank inside") << QStringLiteral("e3 0=");
        QTest::newRow("beyond Latin-1") << QStringLiteral("\u6587\u6863\u6587\u6863");
        QTest::newRow("empty") << QString();
        QTest::newRow("bytes that are not UTF-8") << base64("\xff\xfe{}");
        QTest::newRow("megabytes") << base64(QByteArray(3 << 20, '\0'));
    }

    void badBase64IsAnsweredToTheErrorCallback()
    {
        QFETCH(QString, text);
        m_object->fromJSAsynCallBase64(text);
        QCOMPARE(m_object->runs, 0);
        const QString message = onlyAnswer(QStringLiteral("helioErrorCallBack"))
                                    .value(QLatin1String("error"))
                                    .toString();
        QVERIFY2(message.startsWith(QLatin1String("a call is not ")), qPrintable(message));
    }

    void aQueuedCallRunsAtTheNextTurnOfTheEventLoop()
    {
        m_object->queueJSAsynCall(callText(QStringLiteral("echo")), false);
        m_object->queueJSAsynCall(base64(callText(QStringLiteral("echo")).toUtf8()), true);
        QCOMPARE(m_object->runs, 0);
        QTRY_COMPARE_WITH_TIMEOUT(m_object->runs, 2, testsupport::longestWaitMs);
    }

private:
    QJsonObject onlyAnswer(const QString &callback = QStringLiteral("back")) const
    {
        if (m_container->calls.size() != 1 || m_container->calls.first().callback != callback)
            return {{QStringLiteral("answers"), m_container->calls.size()}};
        return m_container->calls.first().answer();
    }

    std::unique_ptr<RecordingContainer> m_container;
    ProbeObject *m_object = nullptr;
};

HEADLESS_TEST_MAIN(PageCallsTest)
#include "tst_pagecalls.moc"
