#include "tests/bridge/pagecalltest.h"
#include "tests/support/shell/headlesstest.h"

/// How an unreadable call is answered.
class UnreadableCallsTest : public PageCallTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

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
};

HEADLESS_TEST_MAIN(UnreadableCallsTest)
#include "tst_unreadablecalls.moc"
