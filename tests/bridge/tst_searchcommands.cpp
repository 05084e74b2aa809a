#include "bridge/ktoolmanager.h"
#include "tests/support/headlesstest.h"
#include "tests/support/recordingshell.h"

using OfficeAssiant::KToolManager;
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

/// The commands and callbacks of the file search.
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

    void aHitIsOneMemberWithNameAndDirectoryInBase64()
    {
        RecordingShell shell;
        emit KToolManager::instance().fsSearch.SigGetContentHasKey(
            QStringLiteral("/home/u/a b.txt"), QStringLiteral("second"), true);
        const QJsonObject hit{{QStringLiteral("YSBiLnR4dA=="), QStringLiteral("L2hvbWUvdQ==")}};
        const QList<QJsonObject> hits = callbacks(shell, hitCallback);
        QCOMPARE(hits.size(), 1);
        QCOMPARE(hits.first().value(QLatin1String("result")).toObject(), hit);
    }

    void aHitWithoutPathIsNotPassedOn()
    {
        RecordingShell shell;
        emit KToolManager::instance().fsSearch.SigGetContentHasKey(QString(), QString(), false);
        QCOMPARE(callbacks(shell, hitCallback).size(), 0);
    }

    void aPathThatTheSafetyCheckRefusesIsNotOpenedAndGetsNoResult()
    {
        const QString script =
            testsupport::PrivateHome::current().writeFile(QStringLiteral("run.sh"), "#!/bin/sh\n");
        RecordingShell shell;
        const QJsonObject envelope =
            shell.call(QStringLiteral("opensearchfile"), {{QStringLiteral("file"), script}});
        QVERIFY(envelope.isEmpty());
        QCOMPARE(shell.events(QStringLiteral("opened")).size(), 0);
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
