#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

/// The notification that a child view opened or closed.
class HiddenTipTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyTextIsStillPublished()
    {
        testsupport::RecordingShell shell;
        OfficeAssiant::KToolManager::instance().mainPageBridge()->notifyHiddenTip(QString());
        const QJsonObject event = shell.events(QStringLiteral("callback")).value(0);
        QCOMPARE(event.value(QLatin1String("callback")).toString(),
                 QStringLiteral("hiddentipCallBack"));
        QCOMPARE(event.value(QLatin1String("result")), QJsonValue(QString()));
    }

    void closingTheChildViewTellsTheMainPage()
    {
        testsupport::RecordingShell shell;
        const QJsonObject envelope =
            shell.call(QStringLiteral("closechildwindow"), {}, {}, QStringLiteral("child"));
        QVERIFY(envelope.isEmpty());
        const QList<QJsonObject> callbacks = shell.events(QStringLiteral("callback"));
        QCOMPARE(callbacks.size(), 1);
        QCOMPARE(callbacks.first().value(QLatin1String("page")).toString(), QStringLiteral("main"));
        QCOMPARE(callbacks.first().value(QLatin1String("result")).toString(),
                 QStringLiteral("hide"));
    }
};

HEADLESS_TEST_MAIN(HiddenTipTest)
#include "tst_hiddentip.moc"
