#include <QSignalSpy>

#include <thread>

#include "bridge/ktoolmanager.h"
#include "bridge/kvyrassistanttoolapi.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/shell/recordingcontainer.h"
#include "tests/support/shell/recordingshell.h"

using OfficeAssiant::KToolManager;
using testsupport::RecordingContainer;

namespace {

QString base64(const QString &text)
{
    return QString::fromLatin1(text.toUtf8().toBase64());
}

} // namespace

/// How a file that the search found, and the end of the search, reach the pages.
class HitRecordTest : public QObject
{
    Q_OBJECT

private slots:
    void aHitIsOneMemberOfBase64NameAndDirectory_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("directory");
        QTest::newRow("blank in the name")
            << QStringLiteral("/home/u/a b.txt") << QStringLiteral("a b.txt")
            << QStringLiteral("/home/u");
        QTest::newRow("at the root")
            << QStringLiteral("/a.txt") << QStringLiteral("a.txt") << QStringLiteral("/");
        QTest::newRow("Chinese") << QStringLiteral("/\u6587/\u6863.docx")
                                 << QStringLiteral("\u6863.docx") << QStringLiteral("/\u6587");
        QTest::newRow("quotes and a line feed")
            << QStringLiteral("/d/\"a\\\n'b") << QStringLiteral("\"a\\\n'b")
            << QStringLiteral("/d");
        QTest::newRow("colon") << QStringLiteral("/d/:resource") << QStringLiteral(":resource")
                               << QStringLiteral("/d");
    }

    void aHitIsOneMemberOfBase64NameAndDirectory()
    {
        QFETCH(QString, path);
        QFETCH(QString, name);
        QFETCH(QString, directory);
        RecordingContainer container;
        KVyrAssistantToolAPI bridge(&container);
        bridge.onsearchfileresult(path, QStringLiteral("ignored"), true);
        QCOMPARE(container.calls.size(), 1);
        QCOMPARE(container.calls.first().callback, QStringLiteral("startsearchfileCallBack"));
        QVERIFY(!container.calls.first().base64);
        const QJsonObject hit{{base64(name), base64(directory)}};
        QCOMPARE(container.calls.first().answer(), QJsonObject({{QStringLiteral("result"), hit}}));
    }

    void theAnswerIsPlainJsonWithEncodedParts()
    {
        RecordingContainer container;
        KVyrAssistantToolAPI bridge(&container);
        bridge.onsearchfileresult(QStringLiteral("/home/u/a b.txt"), QString(), false);
        QCOMPARE(container.calls.value(0).json,
                 QStringLiteral(R"({"result":{"YSBiLnR4dA==":"L2hvbWUvdQ=="}})"));
    }

    void anEmptyPathIsNoHit()
    {
        RecordingContainer container;
        KVyrAssistantToolAPI bridge(&container);
        bridge.onsearchfileresult(QString(), QStringLiteral("text"), true);
        QVERIFY(container.calls.isEmpty());
    }

    void hitsAndTheEndReachEveryPageInOrderOnTheGuiThread()
    {
        testsupport::RecordingShell shell;
        shell.shell().page(QStringLiteral("child"));
        KFsSearch &search = KToolManager::instance().fsSearch;
        std::thread worker([&search] {
            emit search.SigGetContentHasKey(QStringLiteral("/d/a"), QString(), false);
            emit search.searchFinished();
        });
        worker.join();
        QVERIFY(shell.events().isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(shell.events(QStringLiteral("callback")).size(), 4,
                                  testsupport::longestWaitMs);
        for (const char *page : {"main", "child"}) {
            QStringList callbacks;
            const QList<QJsonObject> events = shell.events();
            for (const QJsonObject &event : events) {
                if (event.value(QLatin1String("page")) == QLatin1String(page))
                    callbacks.append(event.value(QLatin1String("callback")).toString());
            }
            QCOMPARE(callbacks, QStringList({QStringLiteral("startsearchfileCallBack"),
                                             QStringLiteral("searchfilefinish")}));
        }
    }

    void startingASearchSetsNoResult()
    {
        testsupport::RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("startsearchfile"),
                            {{QStringLiteral("keyword"), QStringLiteral("nothing-has-this-name")}}),
                 QJsonObject());
        shell.waitFor(QStringLiteral("callback"), QStringLiteral("searchfilefinish"));
    }

    void anEmptyKeywordStartsNoSearch()
    {
        testsupport::RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("startsearchfile")), QJsonObject());
        // A separate search shows how long one takes.
        KFsSearch other;
        QSignalSpy ended(&other, &KFsSearch::searchFinished);
        other.DoSearchFileName(QStringLiteral("nothing-has-this-name"), QString(), false);
        QVERIFY(ended.wait(testsupport::longestWaitMs));
        QVERIFY(shell.events().isEmpty());
    }

    void aSafeFileIsOpened()
    {
        const QString file =
            testsupport::PrivateHome::current().writeFile(QStringLiteral("a b#c.txt"), "text");
        testsupport::RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("opensearchfile"), {{QStringLiteral("file"), file}}),
                 QJsonObject({{QStringLiteral("result"), QStringLiteral("success")}}));
        QCOMPARE(shell.events().size(), 1);
        QCOMPARE(QUrl(shell.events().first().value(QLatin1String("url")).toString()).toLocalFile(),
                 file);
    }

    void aRefusedFileIsNotOpenedAndGetsNoResult_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("script") << testsupport::PrivateHome::current().writeFile(
            QStringLiteral("script.txt"), "#!/bin/sh\n");
        QTest::newRow("relative") << QStringLiteral("script.txt");
        QTest::newRow("address") << QStringLiteral("https://localhost/");
        QTest::newRow("device") << QStringLiteral("/dev/null");
        QTest::newRow("empty") << QString();
    }

    void aRefusedFileIsNotOpenedAndGetsNoResult()
    {
        QFETCH(QString, path);
        testsupport::RecordingShell shell;
        QCOMPARE(shell.call(QStringLiteral("opensearchfile"), {{QStringLiteral("file"), path}}),
                 QJsonObject());
        QVERIFY(shell.events().isEmpty());
    }
};

HEADLESS_TEST_MAIN(HitRecordTest)
#include "tst_hitrecord.moc"
