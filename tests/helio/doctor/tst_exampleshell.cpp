#include <QProcess>
#include <QTest>

#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

class ExampleShellTest : public QObject
{
    Q_OBJECT

private slots:
    void theGuideShowsTheProgramThatRuns()
    {
        const QByteArray guide =
            testsupport::readFile(QStringLiteral(TEST_DATA_DIR "/../docs/host.md"));
        const QByteArray source =
            testsupport::readFile(QStringLiteral(TEST_DATA_DIR "/helio/doctor/exampleshell.cpp"));
        QVERIFY(guide.contains("```cpp\n" + source + "```\n"));
    }

    void aLookIsAnsweredLineByLine()
    {
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".config/office-assistant/checks.d/own.json"),
            R"({"id": "own.list", "title": "There is a list",
                "look": {"file": "$HOME/list", "exists": false},
                "finding": {"text": "There is no list."}})");
        QProcess shell;
        shell.start(QStringLiteral(EXAMPLE_SHELL), {});
        QVERIFY(shell.waitForFinished(testsupport::longestWaitMs));
        QCOMPARE(shell.exitCode(), 0);
        const QList<QByteArray> lines = shell.readAllStandardOutput().trimmed().split('\n');
        QCOMPARE(lines.size(), 4);
        QVERIFY(lines.at(0).startsWith("for the plug-in: "));
        QVERIFY(lines.at(1).startsWith(R"(second {"line":{"check":"own.list")"));
        QVERIFY(lines.at(2).contains(R"("text":"There is no list.")"));
        QCOMPARE(lines.at(3), QByteArray(R"(second {"result":{"checks":1,"failed":0,"findings":1,)"
                                         R"("type":"summary"}})"));
    }
};

HEADLESS_TEST_MAIN(ExampleShellTest)
#include "tst_exampleshell.moc"
