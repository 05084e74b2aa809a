#include <QJsonDocument>
#include <QMetaMethod>
#include <QPointer>

#include "bridge/kvyrassistanttoolapi.h"
#include "helio/headless/headlesspage.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"
#include "tests/support/shell/recordingshell.h"

using testsupport::RecordingContainer;

namespace {

/// Pages rely on these names, misspelt ones included.
const QStringList commandNames{QStringLiteral("mousePress"),
                               QStringLiteral("mouseRelease"),
                               QStringLiteral("closemainwindow"),
                               QStringLiteral("showminimized"),
                               QStringLiteral("router"),
                               QStringLiteral("stoppreload"),
                               QStringLiteral("restartpreload"),
                               QStringLiteral("screenshots"),
                               QStringLiteral("recordscreen"),
                               QStringLiteral("contentreplace"),
                               QStringLiteral("apilog"),
                               QStringLiteral("exportsysinfo"),
                               QStringLiteral("exportoftenfileperm"),
                               QStringLiteral("exportspecialfileperm"),
                               QStringLiteral("closechildwindow"),
                               QStringLiteral("chooselayouterrorfile"),
                               QStringLiteral("comparefont"),
                               QStringLiteral("openlaytouerrorfile"),
                               QStringLiteral("getDumpState"),
                               QStringLiteral("startDump"),
                               QStringLiteral("stopDump"),
                               QStringLiteral("cleardumpdir"),
                               QStringLiteral("openprinterrorfile"),
                               QStringLiteral("getcpuinfo"),
                               QStringLiteral("getmemoryinfo"),
                               QStringLiteral("getcomputermemory"),
                               QStringLiteral("getlogfile"),
                               QStringLiteral("getupdatesupport"),
                               QStringLiteral("getupdateconfig"),
                               QStringLiteral("testupdate"),
                               QStringLiteral("clearlogfile"),
                               QStringLiteral("testdailyreport"),
                               QStringLiteral("testuninstallreport"),
                               QStringLiteral("testinstallreport"),
                               QStringLiteral("changeupdateconfig"),
                               QStringLiteral("getdesktopiconfile"),
                               QStringLiteral("fixfouricon"),
                               QStringLiteral("fixoneicon"),
                               QStringLiteral("getassoopen"),
                               QStringLiteral("getassomime"),
                               QStringLiteral("fileassorepair"),
                               QStringLiteral("openremoveurlcheck"),
                               QStringLiteral("getvyrenvcheckedresult"),
                               QStringLiteral("runfirefoxplugin"),
                               QStringLiteral("vyrenvcheck"),
                               QStringLiteral("copytoclipboard"),
                               QStringLiteral("stratcheckenv"),
                               QStringLiteral("stratextractfileinfo"),
                               QStringLiteral("addconfigfile"),
                               QStringLiteral("inputcheck"),
                               QStringLiteral("feedbacktovyr"),
                               QStringLiteral("getcollectionpage"),
                               QStringLiteral("choosesamplefile"),
                               QStringLiteral("archivepackage"),
                               QStringLiteral("chooseattachment"),
                               QStringLiteral("opensearchfile"),
                               QStringLiteral("startsearchfile")};

QByteArray signatureOf(const QMetaMethod &method)
{
    return method.methodSignature();
}

} // namespace

/// The bridge's methods, their order, and which of them a page can call.
class CommandTableTest : public QObject
{
    Q_OBJECT

private slots:
    void theSignalsStandInTheirOrder()
    {
        const QList<QByteArray> expected{"sigCloseMainWindow()",  "sigShowChildWindow(QString)",
                                         "sigShowMinimized()",    "sigShowNormal()",
                                         "sigMousePress()",       "sigMouseRelease()",
                                         "sigCloseChildWindow()", "sigChangeHtmlPage(QString)"};
        QCOMPARE(ownSignatures(QMetaMethod::Signal), expected);
    }

    void theCommandsStandInTheirOrderBeforeTheOtherSlots()
    {
        QList<QByteArray> expected;
        for (const QString &name : commandNames)
            expected.append(name.toLatin1() + "(KxWebViewJSContext&)");
        QCOMPARE(expected.size(), 57);
        expected +=
            {"onsearchfileresult(QString,QString,bool)", "onsearchfinished()", "ondumpfileready()"};
        QCOMPARE(ownSignatures(QMetaMethod::Slot), expected);
    }

    void theBridgeHasNoOtherMethodOfItsOwn()
    {
        QCOMPARE(ownSignatures(QMetaMethod::Method).size() +
                     ownSignatures(QMetaMethod::Constructor).size(),
                 0);
        QCOMPARE(KVyrAssistantToolAPI::staticMetaObject.superClass(),
                 &KxWebViewAsynJSObject::staticMetaObject);
    }

    void theCommandLineListsExactlyTheTable()
    {
        testsupport::RecordingShell shell;
        QCOMPARE(shell.shell().page(QStringLiteral("main"))->commands(), commandNames);
    }

    void nothingElseCanBeCalledFromAPage_data()
    {
        QTest::addColumn<QString>("name");
        const QMetaObject &metaObject = KVyrAssistantToolAPI::staticMetaObject;
        for (int index = 0; index < metaObject.methodCount(); ++index) {
            const QMetaMethod method = metaObject.method(index);
            const QString name = QString::fromLatin1(method.name());
            QTest::addRow("signature %s", signatureOf(method).constData())
                << QString::fromLatin1(signatureOf(method));
            if (!commandNames.contains(name))
                QTest::addRow("name of %s", signatureOf(method).constData()) << name;
        }
        for (const QString &name : commandNames) {
            if (name.toUpper() != name)
                QTest::addRow("upper case %s", qPrintable(name)) << name.toUpper();
        }
        QTest::newRow("lower case") << QStringLiteral("mousepress");
        QTest::newRow("empty") << QString();
        QTest::newRow("blank behind") << QStringLiteral("router ");
        QTest::newRow("blank before") << QStringLiteral(" router");
        QTest::newRow("line feed behind") << QStringLiteral("router\n");
        QTest::newRow("embedded zero") << QString(QLatin1String("router\0(x", 9));
        QTest::newRow("zero behind") << QString(QLatin1String("router\0", 7));
        QTest::newRow("class name") << QStringLiteral("KVyrAssistantToolAPI::router");
        QTest::newRow("beyond ASCII") << QStringLiteral("r\u00f6uter");
        QTest::newRow("full width") << QString(QChar(0xff52)) + QStringLiteral("outer");
        QTest::newRow("very long") << QString(1 << 20, QLatin1Char('a'));
        QTest::newRow("property") << QStringLiteral("objectName");
        QTest::newRow("virtual function") << QStringLiteral("fromJSAsynCall");
        QTest::newRow("helper") << QStringLiteral("notifyHiddenTip");
    }

    void nothingElseCanBeCalledFromAPage()
    {
        QFETCH(QString, name);
        RecordingContainer container;
        QPointer<KVyrAssistantToolAPI> bridge = new KVyrAssistantToolAPI(&container);
        const QJsonObject call{{QStringLiteral("command"), name},
                               {QStringLiteral("callback"), QStringLiteral("back")}};
        bridge->fromJSAsynCall(QString::fromUtf8(QJsonDocument(call).toJson()));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(bridge);
        QCOMPARE(container.calls.size(), 1);
        QCOMPARE(container.calls.first().callback, QStringLiteral("back"));
        const QJsonObject answer = container.calls.first().answer();
        QCOMPARE(answer.keys(), QStringList{QStringLiteral("error")});
        QVERIFY(answer.value(QLatin1String("error"))
                    .toString()
                    .startsWith(QLatin1String("unknown command: ")));
    }

private:
    static QList<QByteArray> ownSignatures(QMetaMethod::MethodType kind)
    {
        QList<QByteArray> signatures;
        const QMetaObject &metaObject = KVyrAssistantToolAPI::staticMetaObject;
        for (int index = metaObject.methodOffset(); index < metaObject.methodCount(); ++index) {
            const QMetaMethod method = metaObject.method(index);
            if (method.methodType() == kind)
                signatures.append(method.methodSignature());
        }
        return signatures;
    }
};

HEADLESS_TEST_MAIN(CommandTableTest)
#include "tst_commandtable.moc"
