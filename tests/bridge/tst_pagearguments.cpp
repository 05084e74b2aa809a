#include "tests/bridge/pagecalltest.h"
#include "tests/support/shell/headlesstest.h"

/// How a command reads what a page sends with it.
class PageArgumentsTest : public PageCallTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

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
};

HEADLESS_TEST_MAIN(PageArgumentsTest)
#include "tst_pagearguments.moc"
