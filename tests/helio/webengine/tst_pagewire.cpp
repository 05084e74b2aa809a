#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include "helio/webengine/pagewire.h"
#include "helio/webengine/webenginecontainer.h"
#include "host/kxwebviewasynjsobject.h"
#include "host/kxwebviewjscontext.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

namespace {

/// A script object with one command, which counts its calls.
class Counter : public KxWebViewAsynJSObject
{
    Q_OBJECT

public:
    explicit Counter(KxWebViewContainer *container) : KxWebViewAsynJSObject(container, container) {}

    int calls = 0;

public slots:
    void count(KxWebViewJSContext &context) { context.result()["result"] = ++calls; }
};

const QString countCall = QStringLiteral(R"({"command":"count","callback":"counted"})");

} // namespace

class PageWireTest : public QObject
{
    Q_OBJECT

private slots:
    void thePageReachesTwoCallsOnePropertyAndTheAnswers();
    void aCallIsAnsweredThroughTheSignal();
    void aCallRunsAfterTheWireHasReturned();
    void aBase64CallIsTheSame();
    void aCallThatIsWrittenDownIsTheSame();
    void aForeignDocumentIsNeitherHeardNorAnswered();
    void withoutAScriptObjectNothingHappens();
};

void PageWireTest::thePageReachesTwoCallsOnePropertyAndTheAnswers()
{
    const QMetaObject &metaObject = helio::PageWire::staticMetaObject;
    QList<QByteArray> own;
    for (int index = metaObject.methodOffset(); index < metaObject.methodCount(); ++index)
        own.append(metaObject.method(index).methodSignature());
    QCOMPARE(own, (QList<QByteArray>{"callbackToJS(QString,QString,bool)", "jsAsynCallChanged()",
                                     "fromJSAsynCall(QString)", "fromJSAsynCallBase64(QString)"}));
    QCOMPARE(metaObject.propertyCount(), QObject::staticMetaObject.propertyCount() + 1);
    const QMetaProperty property = metaObject.property(metaObject.propertyOffset());
    QCOMPARE(property.name(), "jsAsynCall");
    // The channel warns of a property that changes unseen.
    QVERIFY(property.hasNotifySignal());
}

void PageWireTest::aCallIsAnsweredThroughTheSignal()
{
    helio::PageWire wire([] { return true; });
    helio::WebEngineContainer container(&wire);
    wire.setApi(new Counter(&container));
    QSignalSpy answers(&wire, &helio::PageWire::callbackToJS);
    wire.fromJSAsynCall(countCall);
    QVERIFY(answers.wait(testsupport::longestWaitMs));
    QCOMPARE(answers.first(),
             (QVariantList{QStringLiteral("counted"), QStringLiteral(R"({"result":1})"), false}));
}

void PageWireTest::aCallRunsAfterTheWireHasReturned()
{
    helio::PageWire wire([] { return true; });
    helio::WebEngineContainer container(&wire);
    auto *counter = new Counter(&container);
    wire.setApi(counter);
    wire.fromJSAsynCall(countCall);
    QCOMPARE(counter->calls, 0);
    QTRY_COMPARE_WITH_TIMEOUT(counter->calls, 1, testsupport::longestWaitMs);
}

void PageWireTest::aBase64CallIsTheSame()
{
    helio::PageWire wire([] { return true; });
    helio::WebEngineContainer container(&wire);
    auto *counter = new Counter(&container);
    wire.setApi(counter);
    wire.fromJSAsynCallBase64(QString::fromLatin1(countCall.toUtf8().toBase64()));
    QTRY_COMPARE_WITH_TIMEOUT(counter->calls, 1, testsupport::longestWaitMs);
}

void PageWireTest::aCallThatIsWrittenDownIsTheSame()
{
    helio::PageWire wire([] { return true; });
    helio::WebEngineContainer container(&wire);
    auto *counter = new Counter(&container);
    wire.setApi(counter);
    QSignalSpy changes(&wire, &helio::PageWire::jsAsynCallChanged);
    QVERIFY(wire.setProperty("jsAsynCall", countCall));
    QCOMPARE(counter->calls, 0);
    QTRY_COMPARE_WITH_TIMEOUT(counter->calls, 1, testsupport::longestWaitMs);
    // The channel would send the page its own call back.
    QCOMPARE(changes.count(), 0);
    QCOMPARE(wire.property("jsAsynCall"), QVariant(QString()));
}

void PageWireTest::aForeignDocumentIsNeitherHeardNorAnswered()
{
    bool isTrusted = false;
    helio::PageWire wire([&isTrusted] { return isTrusted; });
    helio::WebEngineContainer container(&wire);
    auto *counter = new Counter(&container);
    wire.setApi(counter);
    QSignalSpy answers(&wire, &helio::PageWire::callbackToJS);
    for (int call = 0; call < 3; ++call)
        QTest::ignoreMessage(QtWarningMsg,
                             "a call from a document outside the page directory was refused");
    wire.fromJSAsynCall(countCall);
    wire.fromJSAsynCallBase64(QString::fromLatin1(countCall.toUtf8().toBase64()));
    wire.setProperty("jsAsynCall", countCall);
    container.runCallback(QStringLiteral("later"), QStringLiteral("{}"), false);
    QCoreApplication::processEvents();
    QCOMPARE(counter->calls, 0);
    QCOMPARE(answers.count(), 0);

    isTrusted = true;
    container.runCallback(QStringLiteral("later"), QStringLiteral("{}"), false);
    QCOMPARE(answers.count(), 1);
}

void PageWireTest::withoutAScriptObjectNothingHappens()
{
    helio::PageWire wire([] { return true; });
    QSignalSpy answers(&wire, &helio::PageWire::callbackToJS);
    wire.fromJSAsynCall(countCall);
    {
        helio::WebEngineContainer container(&wire);
        wire.setApi(new Counter(&container));
    }
    wire.fromJSAsynCall(countCall);
    QCoreApplication::processEvents();
    QCOMPARE(answers.count(), 0);
}

HEADLESS_TEST_MAIN(PageWireTest)
#include "tst_pagewire.moc"
