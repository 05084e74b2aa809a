#include "envcheck/vyrenvcheckthread.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <memory>

#include <unistd.h>

#include "tests/envcheck/recordingcheckpage.h"
#include "tests/support/lifeline.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/suiteprogram.h"

using OfficeAssiant::EnvironmentCheck;
using OfficeAssiant::VyrEnvCheckThread;
using testsupport::longestWaitMs;
using testsupport::PrivateHome;
using testsupport::SuiteProgram;

namespace {

const QString toolName = QStringLiteral("vyrEnvCheckTool");

/// Whether a thread of this program sleeps, as opposed to being runnable without a processor.
bool isAsleep(pid_t thread)
{
    const QByteArray status =
        testsupport::readFile(QStringLiteral("/proc/self/task/%1/stat").arg(thread));
    return status.mid(status.lastIndexOf(')') + 2).startsWith('S');
}

/// Returns once a thread waits for something: it is asleep at each of several looks.
void waitUntilWaiting(pid_t thread)
{
    const QDeadlineTimer deadline(longestWaitMs);
    for (int looks = 0; looks < 20 && !deadline.hasExpired();
         looks = isAsleep(thread) ? looks + 1 : 0)
        QThread::msleep(5);
}

} // namespace

/// The worker that runs the check tool: what it keeps, what it shows and what it drops.
class EnvCheckThreadTest : public QObject
{
    Q_OBJECT

private:
    static void writeAnswers(const QByteArray &content)
    {
        PrivateHome::current().writeFile(QStringLiteral(".local/share/Orvane/tmp/vyrEnv.ini"),
                                         content);
    }

    static EnvironmentCheck check(const char *type, const char *app, const char *argument = "")
    {
        return {QString::fromUtf8(type), QString::fromUtf8(app), QString::fromUtf8(argument)};
    }

    /// A tool that reports its start and runs until release().
    static QByteArray heldTool()
    {
        return "touch \"$HOME/runs\"\nwhile [ ! -e \"$HOME/go\" ]; do sleep 0.02; done";
    }

    static bool waitUntilHeld()
    {
        return QTest::qWaitFor(
            [] { return QFile::exists(PrivateHome::current().path() + QStringLiteral("/runs")); },
            longestWaitMs);
    }

    static void release() { PrivateHome::current().writeFile(QStringLiteral("go"), {}); }

private slots:
    void init()
    {
        QDir(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")).removeRecursively();
        QFile::remove(PrivateHome::current().path() + QStringLiteral("/runs"));
        QFile::remove(PrivateHome::current().path() + QStringLiteral("/go"));
    }

    void theToolGetsTypeAppAndArgumentEvenWhenThatIsEmpty()
    {
        const SuiteProgram tool(toolName);
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        thread.check(check("u", "tbl", "a b"));
        QVERIFY(thread.wait(longestWaitMs));
        const QString empty = QStringLiteral("");
        QCOMPARE(tool.calls(),
                 (QList<QStringList>{
                     {QStringLiteral("t"), QStringLiteral("vyr"), empty},
                     {QStringLiteral("u"), QStringLiteral("tbl"), QStringLiteral("a b")}}));
    }

    void theAnswerIsShownInBase64AndKeptUnderTypeAndApp()
    {
        const SuiteProgram tool(toolName);
        writeAnswers("[vyrEnv]\nvyr-t=ok\n");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(page.shown(),
                 (QList<QJsonObject>{{{QStringLiteral("value"), QStringLiteral("b2s=")},
                                      {QStringLiteral("cmd"), QStringLiteral("t")},
                                      {QStringLiteral("app"), QStringLiteral("vyr")}}}));
        QCOMPARE(thread.keptResults(),
                 (QJsonObject{{QStringLiteral("t-vyr"), QStringLiteral("ok")}}));
    }

    void withoutAnAnswerAnEmptyTextIsShownAndKept()
    {
        const SuiteProgram tool(toolName, "exit 3");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(page.shown().value(0).value(QLatin1String("value")), QJsonValue(QString()));
        QCOMPARE(thread.keptResults(), (QJsonObject{{QStringLiteral("t-vyr"), QString()}}));
    }

    void aMissingToolGivesWhatAnEarlierRunLeftBehind()
    {
        writeAnswers("[vyrEnv]\nvyr-t=earlier\n");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(page.shown().size(), 1);
        QCOMPARE(thread.keptResults().value(QLatin1String("t-vyr")).toString(),
                 QStringLiteral("earlier"));
    }

    void aToolThatCrashesIsLikeOneThatFails()
    {
        const SuiteProgram tool(toolName, "kill -SEGV $$");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(page.shown().size(), 1);
    }

    void aRepeatedCheckReplacesItsAnswerAndAnotherIsAdded()
    {
        const SuiteProgram tool(toolName);
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        QVERIFY(thread.keptResults().isEmpty());
        writeAnswers("[vyrEnv]\nvyr-t=first\n");
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        writeAnswers("[vyrEnv]\nvyr-t=second one\ntbl-t=third\n");
        thread.check(check("t", "vyr"));
        thread.wait(longestWaitMs);
        thread.check(check("t", "tbl"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(thread.keptResults(),
                 (QJsonObject{{QStringLiteral("t-tbl"), QStringLiteral("third")},
                              {QStringLiteral("t-vyr"), QStringLiteral("second one")}}));
    }

    void withoutAPageNothingIsKept()
    {
        const SuiteProgram tool(toolName);
        writeAnswers("[vyrEnv]\nvyr-t=ok\n");
        RecordingCheckPage page;
        page.setOpen(false);
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QVERIFY(thread.keptResults().isEmpty());
        QVERIFY(page.shown().isEmpty());
    }

    void aStoppedCheckEndsItsToolButIsNeitherKeptNorShown()
    {
        const SuiteProgram tool(toolName, heldTool() + "\ntouch \"$HOME/ended\"");
        writeAnswers("[vyrEnv]\nvyr-t=ok\n");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("t", "vyr"));
        QVERIFY(waitUntilHeld());
        thread.requestStop();
        QVERIFY(thread.isRunning());
        release();
        QVERIFY(thread.wait(longestWaitMs));
        QVERIFY(QFile::exists(PrivateHome::current().path() + QStringLiteral("/ended")));
        QVERIFY(thread.keptResults().isEmpty());
        QVERIFY(page.shown().isEmpty());
    }

    void aStopRightAfterTheStartIsNotLost()
    {
        const SuiteProgram tool(toolName);
        writeAnswers("[vyrEnv]\nvyr-t=ok\n");
        for (int round = 0; round < 20; ++round) {
            RecordingCheckPage page;
            VyrEnvCheckThread thread(page);
            thread.check(check("t", "vyr"));
            thread.requestStop();
            QVERIFY(thread.wait(longestWaitMs));
            QVERIFY(page.shown().isEmpty());
        }
    }

    void aStopAfterTheAnswerIsKeptOnlyHidesIt()
    {
        const SuiteProgram tool(toolName);
        writeAnswers("[vyrEnv]\nvyr-t=ok\n");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        page.whenAsked = [&thread] { thread.requestStop(); };
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(thread.keptResults().size(), 1);
        QVERIFY(page.shown().isEmpty());
    }

    void aStopWithoutACheckStopsNoLaterOne()
    {
        const SuiteProgram tool(toolName);
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.requestStop();
        thread.check(check("t", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(page.shown().size(), 1);
    }

    void aSecondCheckWaitsForTheFirstAndDropsItsAnswer()
    {
        const SuiteProgram tool(toolName, "[ \"$1\" = quick ] && exit\n" + heldTool());
        writeAnswers("[vyrEnv]\nvyr-slow=one\nvyr-quick=two\n");
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("slow", "vyr"));
        QVERIFY(waitUntilHeld());
        QScopedPointer<QThread> releaser(QThread::create([testThread = ::gettid()] {
            waitUntilWaiting(testThread);
            release();
        }));
        releaser->start();
        thread.check(check("quick", "vyr"));
        QVERIFY(QFile::exists(PrivateHome::current().path() + QStringLiteral("/go")));
        QVERIFY(releaser->wait(longestWaitMs));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(thread.keptResults(),
                 (QJsonObject{{QStringLiteral("quick-vyr"), QStringLiteral("two")}}));
        QCOMPARE(page.shown().size(), 1);
    }

    void manyChecksInARowAreAllMade()
    {
        const SuiteProgram tool(toolName);
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        for (int round = 0; round < 50; ++round) {
            thread.check(check("t", "vyr"));
            // The next check arrives while this one's thread is ending.
            while (page.shown().size() <= round && thread.isRunning())
                QThread::yieldCurrentThread();
        }
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(tool.calls().size(), 50);
    }

    void aToolThatHangsIsEndedWithItsHelpersWhenTheProcessEnds()
    {
        // Neither the tool nor its helper ends by itself or when asked to.
        const SuiteProgram tool(toolName, "trap '' TERM INT HUP\n" + heldTool() +
                                              " &\nhelper=$!\nwait $helper\n"
                                              "while :; do sleep 1; done");
        testsupport::Lifeline lifeline;
        RecordingCheckPage page;
        auto thread = std::make_unique<VyrEnvCheckThread>(page);
        thread->check(check("t", "vyr"));
        QVERIFY(waitUntilHeld());
        QElapsedTimer time;
        time.start();
        thread.reset();
        QVERIFY(time.elapsed() >= 2900);
        QVERIFY(lifeline.areAllGone());
        QVERIFY(page.shown().isEmpty());
    }

    void aToolThatEndsInTimeIsNotKilled()
    {
        const SuiteProgram tool(toolName, heldTool() + "\nsleep 1\ntouch \"$HOME/ended\"");
        RecordingCheckPage page;
        auto thread = std::make_unique<VyrEnvCheckThread>(page);
        thread->check(check("t", "vyr"));
        QVERIFY(waitUntilHeld());
        release();
        thread.reset();
        QVERIFY(QFile::exists(PrivateHome::current().path() + QStringLiteral("/ended")));
    }

    void namesInTheAnswerAreTheirUtf8BytesOneCharacterEach()
    {
        const SuiteProgram tool(toolName);
        RecordingCheckPage page;
        VyrEnvCheckThread thread(page);
        thread.check(check("字", "vyr"));
        QVERIFY(thread.wait(longestWaitMs));
        QCOMPARE(thread.keptResults().keys(), QStringList{QString::fromLatin1("\xe5\xad\x97-vyr")});
        QCOMPARE(page.shown().value(0).value(QLatin1String("cmd")).toString(),
                 QString::fromUtf8("字"));
    }
};

HEADLESS_TEST_MAIN(EnvCheckThreadTest)
#include "tst_envcheckthread.moc"
