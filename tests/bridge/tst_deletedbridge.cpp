#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

#include "bridge/ktoolmanager.h"
#include "tests/bridge/guardedbridge.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"

using OfficeAssiant::KToolManager;

namespace {

/// A page of which the shell deletes the script bridge when something that it waits for happens.
class DoomedPage : public testsupport::RecordingContainer
{
public:
    explicit DoomedPage(const QString &deadlyEvent)
        : m_deadlyEvent(deadlyEvent), m_bridge(new GuardedBridge(this))
    {
        KToolManager::instance().setMainPageBridge(m_bridge);
        using Bridge = KVyrAssistantToolAPI;
        report(&Bridge::sigChangeHtmlPage, "sigChangeHtmlPage");
        report(&Bridge::sigShowChildWindow, "sigShowChildWindow");
        report(&Bridge::sigCloseChildWindow, "sigCloseChildWindow");
        report(&Bridge::sigShowMinimized, "sigShowMinimized");
        report(&Bridge::sigShowNormal, "sigShowNormal");
    }

    void call(const QString &text) { m_bridge->fromJSAsynCall(text); }

    void runCallback(const QString &callback, const QString &, bool) override { happen(callback); }

    void happen(const QString &event)
    {
        events.append(event);
        if (event == m_deadlyEvent)
            delete m_bridge;
    }

    bool isAlive() const { return m_bridge; }

    QStringList events;

private:
    template<typename Signal>
    void report(Signal signal, const char *name)
    {
        connect(m_bridge.data(), signal, this, [this, name] { happen(QLatin1String(name)); });
    }

    QString m_deadlyEvent;
    QPointer<KVyrAssistantToolAPI> m_bridge;
};

} // namespace

/// Commands that tell page or shell more than one thing, with a shell that deletes the bridge at
/// one of them.
class DeletedBridgeTest : public QObject
{
    Q_OBJECT

private slots:
    void nothingIsToldAfterTheDeletion_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QStringList>("events");
        const QString tip = QStringLiteral("hiddentipCallBack");
        for (const char *type : {"font", "crash", "searchfile"}) {
            QTest::addRow("router to %s", type)
                << QStringLiteral(R"({"command":"router","args":{"page":"a.html","type":"%1"}})")
                       .arg(QLatin1String(type))
                << QStringList{tip, QStringLiteral("sigChangeHtmlPage"),
                               QStringLiteral("sigShowChildWindow")};
        }
        for (const char *type : {"font", "crash", "vyrrunningcheck"}) {
            QTest::addRow("closechildwindow of %s", type)
                << QStringLiteral(R"({"command":"closechildwindow","args":{"type":"%1"}})")
                       .arg(QLatin1String(type))
                << QStringList{tip, QStringLiteral("sigCloseChildWindow")};
        }
        QTest::newRow("screenshots")
            << QStringLiteral(R"({"command":"screenshots"})")
            << QStringList{QStringLiteral("sigShowMinimized"), QStringLiteral("sigShowNormal")};
    }

    void nothingIsToldAfterTheDeletion()
    {
        QFETCH(QString, call);
        QFETCH(QStringList, events);
        for (int last = 0; last < events.size(); ++last) {
            DoomedPage page(events.at(last));
            page.call(call);
            QCOMPARE(page.events, events.mid(0, last + 1));
            QVERIFY(!page.isAlive());
            QVERIFY(!KToolManager::instance().mainPageBridge());
        }
        DoomedPage page(QString{});
        page.call(call);
        QCOMPARE(page.events, events);
        QVERIFY(page.isAlive());
    }
};

HEADLESS_TEST_MAIN(DeletedBridgeTest)
#include "tst_deletedbridge.moc"
