#include "programs/process/boundedprogram.h"

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "programs/checktool/timelimit.h"
#include "tests/support/lifeline.h"
#include "tests/support/shell/headlesstest.h"

using programs::ProgramEnd;

/// Programs that end, crash, hang or leave processes behind.
class BoundedProgramTest : public QObject
{
    Q_OBJECT

private slots:
    void aProgramThatEndsGivesItsStatusAndOutput()
    {
        const ProgramEnd end = run("echo out; echo err >&2; exit 3");
        QCOMPARE(end.kind, ProgramEnd::Kind::Exited);
        QCOMPARE(end.status, 3);
        QCOMPARE(end.output, QByteArray("out\n"));
        QCOMPARE(end.errors, QByteArray("err\n"));
        QVERIFY(!end.hasSucceeded());
    }

    void aProgramThatIsMissingIsNotStarted()
    {
        QCOMPARE(programs::runBounded(QStringLiteral("/nowhere/program"), {}, {}, waitMs).kind,
                 ProgramEnd::Kind::NotStarted);
    }

    void aCrashIsNoExit() { QCOMPARE(run("kill -SEGV $$").kind, ProgramEnd::Kind::Crashed); }

    void aProgramThatHangsIsEndedWithAllThatItStarted()
    {
        testsupport::Lifeline lifeline;
        // The child ignores signals and holds the output open.
        const ProgramEnd end = run("(trap '' TERM HUP INT; exec sleep 600) & exec sleep 600", 1000);
        QCOMPARE(end.kind, ProgramEnd::Kind::TimedOut);
        QVERIFY(lifeline.areAllGone());
    }

    void whatAProgramLeavesBehindIsEnded()
    {
        testsupport::Lifeline lifeline;
        QVERIFY(run("sleep 600 &").hasSucceeded());
        QVERIFY(lifeline.areAllGone());
    }

    void muchOutputIsCut()
    {
        const ProgramEnd end = run("head -c 50000000 /dev/zero; head -c 50000000 /dev/zero >&2");
        QVERIFY(end.hasSucceeded());
        QCOMPARE(end.output.size(), 4 * 1024 * 1024);
        QCOMPARE(end.errors.size(), 4 * 1024 * 1024);
    }

    void inputIsEmpty() { QVERIFY(run("read line || exit 0; exit 1").hasSucceeded()); }

    void theToolItselfEndsWhenItsTimeIsOverWithAllThatItStarted()
    {
        testsupport::Lifeline lifeline;
        const pid_t child = fork();
        if (child == 0) {
            programs::limitTime(1);
            run("sleep 600 & exec sleep 600");
            _exit(2);
        }
        int status = 0;
        const bool hasEnded =
            QTest::qWaitFor([&] { return waitpid(child, &status, WNOHANG) == child; }, waitMs);
        if (!hasEnded)
            ::kill(child, SIGKILL);
        QVERIFY(hasEnded);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 1);
        QVERIFY(lifeline.areAllGone());
    }

    void theLastLineIsWhatCounts()
    {
        QCOMPARE(programs::lastLine("one\ntwo \n\n"), QStringLiteral("two"));
        QCOMPARE(programs::lastLine({}), QString());
    }

private:
    static constexpr int waitMs = 20000;

    static ProgramEnd run(const char *script, int timeoutMs = waitMs)
    {
        return programs::runBounded(QStringLiteral("/bin/sh"),
                                    {QStringLiteral("-c"), QString::fromLatin1(script)},
                                    QProcessEnvironment::systemEnvironment(), timeoutMs);
    }
};

HEADLESS_TEST_MAIN(BoundedProgramTest)
#include "tst_boundedprogram.moc"
