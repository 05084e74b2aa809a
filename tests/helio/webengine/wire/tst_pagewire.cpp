#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include "helio/doctor/doctoroperations.h"
#include "helio/webengine/wire/pagewire.h"
#include "helio/webengine/wire/webenginecontainer.h"
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

/// A wire with a script object behind it.
struct Wiring
{
    Wiring() { wire.setApi(counter); }

    bool isTrusted = true;
    helio::PageWire wire{[this] { return isTrusted; }};
    helio::WebEngineContainer container{&wire};
    /// Owned by the container.
    Counter *counter = new Counter(&container);
};

const QString countCall = QStringLiteral(R"({"command":"count","callback":"counted"})");

QJsonObject objectOf(const QString &call)
{
    return QJsonDocument::fromJson(call.toUtf8()).object();
}

} // namespace

class PageWireTest : public QObject
{
    Q_OBJECT

private slots:
    void thePageReachesTwoCallsOnePropertyAndTheAnswers();
    void aCallIsAnsweredThroughTheSignal();
    void aCallRunsAfterTheWireHasReturned();
    void aBase64CallIsTheSame();
    void aBase64AnswerIsDecoded();
    void callsAreMadeInTheirOrder();
    void aCallWrittenToThePropertyIsTheSame();
    void whatIsNoCallIsRefusedAsItsTextIs();
    void aForeignDocumentIsNeitherHeardNorAnswered();
    void withoutAScriptObjectNothingHappens();
    void operationsOfTheDoctorAreForTrustedDocumentsOnly();
    void operationsOfTheShellAreAnsweredAtOnce();
    void nothingIsSentToAPageThatHasStopped();
};

void PageWireTest::thePageReachesTwoCallsOnePropertyAndTheAnswers()
{
    const QMetaObject &metaObject = helio::PageWire::staticMetaObject;
    QList<QByteArray> own;
    for (int index = metaObject.methodOffset(); index < metaObject.methodCount(); ++index)
        own.append(metaObject.method(index).methodSignature());
    QCOMPARE(own, (QList<QByteArray>{"callbackToJS(QString,QString)", "jsAsynCallChanged()",
                                     "fromJSAsynCall(QString)", "fromJSAsynCallBase64(QString)"}));
    QCOMPARE(metaObject.propertyCount(), QObject::staticMetaObject.propertyCount() + 1);
    const QMetaProperty property = metaObject.property(metaObject.propertyOffset());
    QCOMPARE(property.name(), "jsAsynCall");
    // QWebChannel warns about properties without one.
    QVERIFY(property.hasNotifySignal());
}

void PageWireTest::aCallIsAnsweredThroughTheSignal()
{
    Wiring wiring;
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    wiring.wire.fromJSAsynCall(countCall);
    QVERIFY(answers.wait(testsupport::longestWaitMs));
    QCOMPARE(answers.first(),
             (QVariantList{QStringLiteral("counted"), QStringLiteral(R"({"result":1})")}));
}

void PageWireTest::aCallRunsAfterTheWireHasReturned()
{
    Wiring wiring;
    wiring.wire.fromJSAsynCall(countCall);
    QCOMPARE(wiring.counter->calls, 0);
    QTRY_COMPARE_WITH_TIMEOUT(wiring.counter->calls, 1, testsupport::longestWaitMs);
}

void PageWireTest::aBase64CallIsTheSame()
{
    Wiring wiring;
    wiring.wire.fromJSAsynCallBase64(QString::fromLatin1(countCall.toUtf8().toBase64()));
    QTRY_COMPARE_WITH_TIMEOUT(wiring.counter->calls, 1, testsupport::longestWaitMs);
}

void PageWireTest::aBase64AnswerIsDecoded()
{
    Wiring wiring;
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    const QString json = QStringLiteral(R"({"result":"\u00fc"})").append(QChar(0x4e2d));
    wiring.wire.deliver(QStringLiteral("told"), QString::fromLatin1(json.toUtf8().toBase64()),
                        true);
    QCOMPARE(answers.takeFirst(), (QVariantList{QStringLiteral("told"), json}));
}

void PageWireTest::callsAreMadeInTheirOrder()
{
    Wiring wiring;
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    const auto callTelling = [](const char *callback) {
        return QStringLiteral(R"({"command":"count","callback":"%1"})")
            .arg(QLatin1String(callback));
    };
    wiring.wire.addCall(objectOf(callTelling("first")));
    wiring.wire.fromJSAsynCall(callTelling("second"));
    wiring.wire.takeCall(objectOf(callTelling("third")));
    wiring.wire.fromJSAsynCallBase64(
        QString::fromLatin1(callTelling("fourth").toUtf8().toBase64()));
    QTRY_COMPARE_WITH_TIMEOUT(answers.count(), 4, testsupport::longestWaitMs);
    QStringList told;
    for (const QList<QVariant> &answer : qAsConst(answers))
        told.append(answer.first().toString());
    QCOMPARE(told, (QStringList{QStringLiteral("first"), QStringLiteral("second"),
                                QStringLiteral("third"), QStringLiteral("fourth")}));
}

void PageWireTest::aCallWrittenToThePropertyIsTheSame()
{
    Wiring wiring;
    QSignalSpy changes(&wiring.wire, &helio::PageWire::jsAsynCallChanged);
    QVERIFY(wiring.wire.setProperty("jsAsynCall", objectOf(countCall)));
    QCOMPARE(wiring.counter->calls, 0);
    QTRY_COMPARE_WITH_TIMEOUT(wiring.counter->calls, 1, testsupport::longestWaitMs);
    // QWebChannel would send the page its own call back.
    QCOMPARE(changes.count(), 0);
    QCOMPARE(wiring.wire.property("jsAsynCall"), QVariant(QJsonObject()));
}

void PageWireTest::whatIsNoCallIsRefusedAsItsTextIs()
{
    Wiring wiring;
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    for (const char *call :
         {R"({})", R"({"command":1,"callback":"told"})", R"({"command":"count","callback":1})",
          R"({"command":"count","callback":"told","args":[]})",
          R"({"command":"no","callback":"told"})"}) {
        const QString text = QString::fromUtf8(call);
        wiring.wire.fromJSAsynCall(text);
        wiring.wire.takeCall(objectOf(text));
        QTRY_COMPARE_WITH_TIMEOUT(answers.count(), 2, testsupport::longestWaitMs);
        QVERIFY(answers.first().at(1).toString().startsWith(QLatin1String(R"({"error":)")));
        QCOMPARE(answers.at(1), answers.first());
        answers.clear();
    }
    QCOMPARE(wiring.counter->calls, 0);
}

void PageWireTest::aForeignDocumentIsNeitherHeardNorAnswered()
{
    Wiring wiring;
    wiring.isTrusted = false;
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    for (int call = 0; call < 3; ++call)
        QTest::ignoreMessage(QtWarningMsg,
                             "a call from a document outside the page directory was refused");
    wiring.wire.fromJSAsynCall(countCall);
    wiring.wire.fromJSAsynCallBase64(QString::fromLatin1(countCall.toUtf8().toBase64()));
    wiring.wire.setProperty("jsAsynCall", objectOf(countCall));
    wiring.container.runCallback(QStringLiteral("later"), QStringLiteral("{}"), false);
    QCoreApplication::processEvents();
    QCOMPARE(wiring.counter->calls, 0);
    QCOMPARE(answers.count(), 0);

    wiring.isTrusted = true;
    wiring.container.runCallback(QStringLiteral("later"), QStringLiteral("{}"), false);
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

void PageWireTest::operationsOfTheDoctorAreForTrustedDocumentsOnly()
{
    helio::DoctorOperations doctor(QStringLiteral("/nonexistent"));
    Wiring wiring;
    wiring.wire.setDoctor(&doctor);
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    const QString call = QStringLiteral(R"({"command":"doctor.history","callback":"told"})");
    wiring.wire.fromJSAsynCall(call);
    wiring.wire.fromJSAsynCallBase64(QString::fromLatin1(call.toUtf8().toBase64()));
    wiring.wire.fromJSAsynCall(countCall);
    QTRY_COMPARE_WITH_TIMEOUT(answers.count(), 3, testsupport::longestWaitMs);
    QCOMPARE(wiring.counter->calls, 1);
    QVERIFY(answers.contains(
        QVariantList{QStringLiteral("told"), QStringLiteral(R"({"result":{"entries":[]}})")}));

    // A document that takes the trusted one's place does not get its answers either.
    wiring.wire.fromJSAsynCall(call);
    wiring.isTrusted = false;
    QTest::ignoreMessage(QtWarningMsg,
                         "a call from a document outside the page directory was refused");
    wiring.wire.fromJSAsynCall(call);
    bool isOver = false;
    QVERIFY(doctor.take(objectOf(call), this,
                        [&isOver](const QString &, const QString &) { isOver = true; }));
    QTRY_VERIFY_WITH_TIMEOUT(isOver, testsupport::longestWaitMs);
    QCOMPARE(answers.count(), 3);
}

void PageWireTest::operationsOfTheShellAreAnsweredAtOnce()
{
    Wiring wiring;
    wiring.wire.setOperations({{QStringLiteral("window.state"), [](const QJsonObject &arguments) {
                                    return QJsonObject{{QStringLiteral("given"), arguments}};
                                }}});
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    const QString call =
        QStringLiteral(R"({"command":"window.state","callback":"told","args":{"a":1}})");
    wiring.wire.fromJSAsynCall(call);
    QCOMPARE(answers.count(), 1);
    QCOMPARE(
        answers.takeFirst(),
        (QVariantList{QStringLiteral("told"), QStringLiteral(R"({"result":{"given":{"a":1}}})")}));

    wiring.wire.takeCall(objectOf(call));
    QCOMPARE(answers.count(), 1);
    answers.clear();

    // The name may also be in the arguments of a command.
    wiring.wire.fromJSAsynCall(
        QStringLiteral(R"({"command":"count","callback":"counted","args":{"of":"window.state"}})"));
    QVERIFY(answers.wait(testsupport::longestWaitMs));
    QCOMPARE(answers.takeFirst().first().toString(), QStringLiteral("counted"));

    wiring.isTrusted = false;
    QTest::ignoreMessage(QtWarningMsg,
                         "a call from a document outside the page directory was refused");
    wiring.wire.fromJSAsynCall(call);
    QVERIFY(answers.isEmpty());
}

void PageWireTest::nothingIsSentToAPageThatHasStopped()
{
    Wiring wiring;
    QSignalSpy answers(&wiring.wire, &helio::PageWire::callbackToJS);
    wiring.wire.forgetPage();
    wiring.wire.deliver(QStringLiteral("told"), QStringLiteral("{}"), false);
    QVERIFY(answers.isEmpty());
    wiring.wire.fromJSAsynCall(countCall);
    QVERIFY(answers.wait(testsupport::longestWaitMs));
}

HEADLESS_TEST_MAIN(PageWireTest)
#include "tst_pagewire.moc"
