#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingshell.h"

using testsupport::RecordingShell;

namespace {

const QString hitCallback = QStringLiteral("startsearchfileCallBack");
const QString endCallback = QStringLiteral("searchfilefinish");

QList<QJsonObject> callbacks(const RecordingShell &shell, const QString &callback)
{
    QList<QJsonObject> matching;
    const QList<QJsonObject> events = shell.events(QStringLiteral("callback"));
    for (const QJsonObject &event : events) {
        if (event.value(QLatin1String("callback")).toString() == callback)
            matching.append(event);
    }
    return matching;
}

QJsonObject keyword(const QString &text)
{
    return {{QStringLiteral("keyword"), text}};
}

} // namespace

/// Which search a command starts or stops, and which pages are told.
class SearchCommandsTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyKeywordStopsARunningSearchAndStartsNone()
    {
        testsupport::PrivateHome::current().writeFile(QStringLiteral("report"), "x");
        RecordingShell shell;
        QVERIFY(shell.call(QStringLiteral("startsearchfile"), keyword(QStringLiteral("report")))
                    .isEmpty());
        QVERIFY(shell.call(QStringLiteral("startsearchfile"), keyword(QString())).isEmpty());
        shell.call(QStringLiteral("startsearchfile"), keyword(QStringLiteral("no such name")));
        QVERIFY(!shell.waitFor(QStringLiteral("callback"), endCallback).isEmpty());
        QCOMPARE(callbacks(shell, hitCallback).size(), 0);
        QCOMPARE(callbacks(shell, endCallback).size(), 1);
    }

    void aSearchStartedByOnePageReachesBothPages()
    {
        testsupport::PrivateHome::current().writeFile(QStringLiteral("a report"), "x");
        RecordingShell shell;
        shell.call(QStringLiteral("getcollectionpage"), {}, {}, QStringLiteral("child"));
        shell.call(QStringLiteral("startsearchfile"), keyword(QStringLiteral("a report")));
        QVERIFY(!shell.waitFor(QStringLiteral("callback"), endCallback).isEmpty());
        for (const QString &callback : {hitCallback, endCallback}) {
            QStringList pages;
            const QList<QJsonObject> events = callbacks(shell, callback);
            for (const QJsonObject &event : events)
                pages.append(event.value(QLatin1String("page")).toString());
            pages.sort();
            QCOMPARE(pages, (QStringList{QStringLiteral("child"), QStringLiteral("main")}));
        }
    }
};

HEADLESS_TEST_MAIN(SearchCommandsTest)
#include "tst_searchcommands.moc"
