#include <QJsonArray>
#include <QThread>

#include <memory>
#include <thread>

#include "bridge/answer.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "host/kxwebviewjscontext.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"

using testsupport::RecordingContainer;

namespace {

/// Records on which thread the page's functions are called.
class ThreadNotingContainer : public RecordingContainer
{
public:
    void runCallback(const QString &callback, const QString &json, bool base64) override
    {
        RecordingContainer::runCallback(callback, json, base64);
        isAlwaysOnGuiThread = isAlwaysOnGuiThread && QThread::currentThread() == qApp->thread();
    }

    bool isAlwaysOnGuiThread = true;
};

} // namespace

/// The result envelope and answers that come later.
class AnswersTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_container = std::make_unique<ThreadNotingContainer>();
        m_bridge = new KVyrAssistantToolAPI(m_container.get());
    }

    void theEnvelopeIsAnObjectWithOneResult_data()
    {
        QTest::addColumn<QJsonValue>("result");
        QTest::addColumn<QString>("json");
        QTest::newRow("text") << QJsonValue(QStringLiteral("success"))
                              << QStringLiteral(R"({"result":"success"})");
        QTest::newRow("empty text") << QJsonValue(QString()) << QStringLiteral(R"({"result":""})");
        QTest::newRow("truth") << QJsonValue(true) << QStringLiteral(R"({"result":true})");
        QTest::newRow("number") << QJsonValue(5) << QStringLiteral(R"({"result":5})");
        QTest::newRow("array") << QJsonValue(
                                      QJsonArray{QJsonObject{{QStringLiteral("1"), QString()}}})
                               << QStringLiteral(R"({"result":[{"1":""}]})");
        QTest::newRow("empty object")
            << QJsonValue(QJsonObject()) << QStringLiteral(R"({"result":{}})");
        QTest::newRow("beyond ASCII")
            << QJsonValue(QStringLiteral("\u6587")) << QStringLiteral("{\"result\":\"\u6587\"}");
    }

    void theEnvelopeIsAnObjectWithOneResult()
    {
        QFETCH(QJsonValue, result);
        QFETCH(QString, json);
        OfficeAssiant::publishAnswer(*m_bridge, QStringLiteral("later"), result);
        QCOMPARE(m_container->calls.size(), 1);
        QCOMPARE(m_container->calls.first().json, json);
        QVERIFY(!m_container->calls.first().base64);
    }

    void aLaterAnswerGoesToTheCallbackThatTheProgramNames()
    {
        m_bridge->fromJSAsynCall(
            QStringLiteral(R"({"command":"getcollectionpage","callback":"pagesOwn"})"));
        m_container->calls.clear();
        m_bridge->notifyHiddenTip(QStringLiteral("show"));
        QCOMPARE(m_container->calls.size(), 1);
        QCOMPARE(m_container->calls.first().callback, QStringLiteral("hiddentipCallBack"));
        QCOMPARE(m_container->calls.first().json, QStringLiteral(R"({"result":"show"})"));
    }

    void theHiddenTipWithAnEmptyTextIsStillPublished()
    {
        m_bridge->notifyHiddenTip(QString());
        QCOMPARE(m_container->calls.size(), 1);
        QCOMPARE(m_container->calls.first().json, QStringLiteral(R"({"result":""})"));
    }

    void anAnswerWithoutACallbackGoesNowhere()
    {
        OfficeAssiant::publishAnswer(*m_bridge, QString(), true);
        QVERIFY(m_container->calls.isEmpty());
    }

    void aBase64AnswerIsTheEncodedEnvelope()
    {
        KxWebViewJSContext context;
        context.parse(QStringLiteral("callback"), QStringLiteral("later"), {});
        context.setIsResultBase64(true);
        OfficeAssiant::setResult(context, QStringLiteral("\u6587"));
        m_bridge->publishResult(context);
        QCOMPARE(m_container->calls.size(), 1);
        QVERIFY(m_container->calls.first().base64);
        QCOMPARE(QByteArray::fromBase64(m_container->calls.first().json.toLatin1()),
                 QByteArray("{\"result\":\"\xe6\x96\x87\"}"));
    }

    void theBase64SwitchIsAPropertyAndOffAtFirst()
    {
        KxWebViewJSContext context;
        QVERIFY(!context.isResultBase64());
        context.setProperty("isResultBase64", true);
        QVERIFY(context.isResultBase64());
        context.setIsResultBase64(false);
        QCOMPARE(context.property("isResultBase64"), QVariant(false));
        QVERIFY(!context.property("other").isValid());
    }

    void aBase64ResultIsTheTextsUtf8()
    {
        KxWebViewJSContext context;
        OfficeAssiant::setBase64Result(context, QStringLiteral("/tmp/\u6587 a"));
        QCOMPARE(QByteArray::fromBase64(context.result()["result"].asCString()),
                 QByteArray("/tmp/\xe6\x96\x87 a"));
    }

    void truthArgumentsReadAsTruth_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("truth");
        QTest::newRow("true") << QVariant(true) << true;
        QTest::newRow("false") << QVariant(false) << false;
        QTest::newRow("text true") << QVariant(QStringLiteral("true")) << true;
        QTest::newRow("text false") << QVariant(QStringLiteral("false")) << false;
        QTest::newRow("text 0") << QVariant(QStringLiteral("0")) << false;
        QTest::newRow("empty text") << QVariant(QString()) << false;
        QTest::newRow("one") << QVariant(1.0) << true;
        QTest::newRow("zero") << QVariant(0.0) << false;
        QTest::newRow("list") << QVariant(QVariantList{true}) << false;
        QTest::newRow("nothing") << QVariant() << false;
    }

    void truthArgumentsReadAsTruth()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, truth);
        KxWebViewJSContext context;
        context.parse(QStringLiteral("any"), QString(), {{QStringLiteral("flag"), value}});
        QCOMPARE(OfficeAssiant::boolArgument(context, QStringLiteral("flag")), truth);
        QCOMPARE(OfficeAssiant::boolArgument(context, QStringLiteral("absent")), false);
    }

    void answersFromAnotherThreadArriveOnTheGuiThreadInOrder()
    {
        constexpr int count = 1000;
        std::thread worker([this] {
            for (int number = 0; number < count; ++number)
                OfficeAssiant::publishAnswer(*m_bridge, QStringLiteral("later"), number);
        });
        worker.join();
        QVERIFY(m_container->calls.isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(m_container->calls.size(), count, testsupport::longestWaitMs);
        QVERIFY(m_container->isAlwaysOnGuiThread);
        for (int number = 0; number < count; ++number)
            QCOMPARE(
                m_container->calls.at(number).answer().value(QLatin1String("result")).toInt(-1),
                number);
    }

    void answersOnTheirWayToAClosedPageAreDropped()
    {
        std::thread worker(
            [this] { OfficeAssiant::publishAnswer(*m_bridge, QStringLiteral("later"), true); });
        worker.join();
        delete m_bridge;
        QCoreApplication::processEvents();
        QVERIFY(m_container->calls.isEmpty());
    }

    void aBridgeWithoutAWebViewAnswersNobody()
    {
        m_bridge->setWebViewContainer(nullptr);
        m_bridge->notifyHiddenTip(QStringLiteral("show"));
        QVERIFY(m_container->calls.isEmpty());
    }

private:
    std::unique_ptr<ThreadNotingContainer> m_container;
    KVyrAssistantToolAPI *m_bridge = nullptr;
};

HEADLESS_TEST_MAIN(AnswersTest)
#include "tst_answers.moc"
