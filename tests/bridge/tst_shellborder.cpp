#include <QMap>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "host/krt.h"
#include "host/kxwebviewjscontext.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"
#include "tests/support/suiteprogram.h"

using OfficeAssiant::KToolManager;

namespace {

/// A text that a shell was passed: null and empty are told apart.
QString told(const QString &text)
{
    return text.isNull() ? QStringLiteral("(null)") : QLatin1Char('"') + text + QLatin1Char('"');
}

struct PublishedContext
{
    QString name;
    QMap<QString, QVariant> arguments;
    QVariant base64Property;
    bool base64Switch = true;
};

QStringList calls;
QMap<const KxWebViewJSContext *, bool> base64Switches;
/// By the page's function that is called.
QMap<QString, PublishedContext> published;

} // namespace

// The parts of a shell that are looked at, in place of those of the library that the test is linked
// with. This shell keeps a context's switch and its property of the same name apart.

QString krt::dirs::resources(const QString &sub, void *reserved)
{
    calls.append(QStringLiteral("resources ") + told(sub) + QString::number(reserved != nullptr));
    return QStringLiteral("/resources");
}

QString krt::dirs::frameworks(const QString &sub, void *reserved)
{
    calls.append(QStringLiteral("frameworks ") + told(sub) + QString::number(reserved != nullptr));
    return QStringLiteral("/frameworks");
}

bool krt::ksafe::KProcess::StartDetach(const QString &program, const QStringList &arguments,
                                       const QString &workingDirectory, qint64 *processId)
{
    calls.append(QStringLiteral("start %1 %2").arg(program, arguments.join(QLatin1Char(' '))));
    return workingDirectory.isEmpty() && !processId;
}

void KFsSearch::DoSearchFileName(const QString &keyword, const QString &directory,
                                 bool caseSensitive)
{
    calls.append(QStringLiteral("search ") + told(keyword) + told(directory) +
                 QString::number(static_cast<int>(caseSensitive)));
}

void KxWebViewJSContext::setIsResultBase64(bool base64)
{
    base64Switches.insert(this, base64);
}

void KxWebViewAsynJSObject::publishResult(const KxWebViewJSContext &context)
{
    published.insert(context.callback(),
                     {context.name(), context.arguments(), context.property("isResultBase64"),
                      base64Switches.value(&context, true)});
}

/// What a shell is passed at its border.
class ShellBorderTest : public QObject
{
    Q_OBJECT

private:
    testsupport::RecordingContainer m_container;
    KVyrAssistantToolAPI *m_bridge = new KVyrAssistantToolAPI(&m_container);

    void call(const QString &text) { m_bridge->fromJSAsynCall(text); }

private slots:
    void initTestCase()
    {
        // The bridge has made the manager, which looks for its screen-grab library.
        QCOMPARE(calls, QStringList{QStringLiteral("frameworks \"\"0")});
    }

    void init()
    {
        calls.clear();
        published.clear();
        KToolManager::instance().setMainPageBridge(m_bridge);
        KToolManager::instance().setChildPageBridge(m_bridge);
    }

    void theResourcesAreAskedForWithAnEmptyText()
    {
        call(QStringLiteral(R"({"command":"recordscreen"})"));
        QVERIFY(calls.contains(QStringLiteral("resources \"\"0")));
    }

    void everythingIsSearchedWithAnEmptyDirectory()
    {
        call(QStringLiteral(R"({"command":"startsearchfile","args":{"keyword":"a"}})"));
        QCOMPARE(calls, QStringList{QStringLiteral("search \"a\"\"\"0")});
    }

    void aLaterAnswerCarriesTheNameCallback_data()
    {
        QTest::addColumn<QString>("callback");
        for (const char *name : {"hiddentipCallBack", "startsearchfileCallBack", "searchfilefinish",
                                 "freshcrshpageCallBack"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }

    void aLaterAnswerCarriesTheNameCallback()
    {
        QFETCH(QString, callback);
        KToolManager &manager = KToolManager::instance();
        m_bridge->notifyHiddenTip(QStringLiteral("show"));
        emit manager.fsSearch.SigGetContentHasKey(QStringLiteral("/a/b"), {}, false);
        emit manager.fsSearch.searchFinished();
        emit manager.dumpHelp.sigdumpfileready();
        const PublishedContext context = published.value(callback);
        QCOMPARE(context.name, QStringLiteral("callback"));
        QVERIFY(context.arguments.isEmpty());
        QVERIFY(!context.base64Switch);
        QVERIFY(!context.base64Property.isValid());
    }

    void findingsCarryAnEmptyNameAndTheirBase64Property()
    {
        const testsupport::SuiteProgram tool(QStringLiteral("vyrEnvCheckTool"));
        KToolManager::instance().envCheckThread.check({QStringLiteral("t"), {}, {}});
        const QString callback = QStringLiteral("returnvyrenvcheck");
        QTRY_VERIFY_WITH_TIMEOUT(published.contains(callback), testsupport::longestWaitMs);
        const PublishedContext context = published.value(callback);
        QVERIFY(context.name.isEmpty());
        QVERIFY(!context.name.isNull());
        QVERIFY(context.arguments.isEmpty());
        QVERIFY(!context.base64Switch);
        QCOMPARE(context.base64Property, QVariant(false));
    }

    void aCommandsOwnAnswerKeepsTheNameOfTheCall()
    {
        call(QStringLiteral(R"({"command":"stoppreload","callback":"mine"})"));
        QCOMPARE(published.value(QStringLiteral("mine")).name, QStringLiteral("stoppreload"));
        QCOMPARE(calls, QStringList{QStringLiteral("start quickstartoffice stop false")});
    }
};

HEADLESS_TEST_MAIN(ShellBorderTest)
#include "tst_shellborder.moc"
