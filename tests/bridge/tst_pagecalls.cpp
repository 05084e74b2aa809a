#include "tests/bridge/pagecalltest.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

namespace {

/// A handler that serves a command instead of a slot.
class FixedAnswer : public KxWebViewJSApiHandler
{
public:
    void call(KxWebViewJSContext &context) override
    {
        OfficeAssiant::setResult(context, QStringLiteral("fixed"));
    }
};

} // namespace

/// Which commands a page can call, and how a call is answered.
class PageCallsTest : public PageCallTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

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

    void aQueuedCallRunsAtTheNextTurnOfTheEventLoop()
    {
        m_object->queueJSAsynCall(callText(QStringLiteral("echo")), false);
        m_object->queueJSAsynCall(base64(callText(QStringLiteral("echo")).toUtf8()), true);
        QCOMPARE(m_object->runs, 0);
        QTRY_COMPARE_WITH_TIMEOUT(m_object->runs, 2, testsupport::longestWaitMs);
    }
};

HEADLESS_TEST_MAIN(PageCallsTest)
#include "tst_pagecalls.moc"
