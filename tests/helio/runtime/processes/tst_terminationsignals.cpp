#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "helio/runtime/processes/runningprocess.h"
#include "helio/runtime/processes/terminationsignals.h"
#include "info/runcommand.h"
#include "tests/support/lifeline.h"
#include "tests/support/patience.h"

using helio::TerminationSignals;

namespace {

/// How a forked program ends, as waitpid(2) tells.
template<typename Program>
int endOf(Program program)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(program());
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

/// Sends a signal to this process, from another one, and goes on at once.
void sendLater(const char *signal, const char *seconds = "0.2")
{
    OfficeAssiant::startCommand(
        QStringLiteral("sleep %1; kill -%2 %3")
            .arg(QLatin1String(seconds), QLatin1String(signal), QString::number(::getpid())),
        nullptr);
}

/// Unlike QSignalSpy::wait(), true also for a signal that another thread has sent before.
bool comes(const QSignalSpy &received)
{
    return QTest::qWaitFor([&received] { return received.count() == 1; },
                           testsupport::longestWaitMs);
}

} // namespace

/// The end of a program by a signal.
class TerminationSignalsTest : public QObject
{
    Q_OBJECT

private slots:
    void aSignalEndsTheCommandThatBlocksAndThenTheProgram_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QString>("command");
        QTest::newRow("TERM") << SIGTERM << QStringLiteral("echo read; sleep 600");
        QTest::newRow("INT") << SIGINT << QStringLiteral("echo read; sleep 600 & sleep 600");
        QTest::newRow("HUP") << SIGHUP << QStringLiteral("echo read; sleep 600");
        QTest::newRow("deaf command")
            << SIGTERM << QStringLiteral("trap '' TERM; echo read; sleep 600");
    }

    void aSignalEndsTheCommandThatBlocksAndThenTheProgram()
    {
        QFETCH(int, signal);
        QFETCH(QString, command);
        testsupport::Lifeline programs;
        const int status = endOf([signal, command] {
            const TerminationSignals watcher(helio::signalAwaitedGroups);
            QSignalSpy received(&watcher, &TerminationSignals::received);
            sendLater(QByteArray::number(signal).constData());
            const QString output = OfficeAssiant::runCommand(command);
            const bool isInOrder = comes(received);
            return output == QLatin1String("read") && isInOrder &&
                           TerminationSignals::first() == signal
                       ? 0
                       : 1;
        });
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        QVERIFY(programs.areAllGone());
    }

    void aSecondSignalEndsTheProgramAtOnce()
    {
        testsupport::Lifeline programs;
        const int status = endOf([] {
            const TerminationSignals watcher(helio::signalAwaitedGroups);
            sendLater("TERM");
            sendLater("INT", "0.6");
            ::alarm(20);
            for (;;)
                ::pause();
            return 0;
        });
        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGINT);
        QVERIFY(programs.areAllGone());
    }

    void aConsumerThatGoesCountsAsASignal()
    {
        const int status = endOf([] {
            int ends[2] = {-1, -1};
            if (::pipe(ends) != 0)
                return 2;
            const TerminationSignals watcher(helio::signalAwaitedGroups, ends[1]);
            QSignalSpy received(&watcher, &TerminationSignals::received);
            const bool isEarly = received.wait(100);
            ::close(ends[0]);
            const bool isReceived = comes(received);
            return !isEarly && isReceived && TerminationSignals::first() == SIGPIPE ? 0 : 1;
        });
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
    }

    void withoutASignalNothingIsEnded()
    {
        const TerminationSignals watcher([](int) { qFatal("nothing is to end"); });
        QCOMPARE(OfficeAssiant::runCommand(QStringLiteral("sleep 0.2; echo a")),
                 QStringLiteral("a"));
        QCOMPARE(TerminationSignals::first(), 0);
    }
};

QTEST_GUILESS_MAIN(TerminationSignalsTest)
#include "tst_terminationsignals.moc"
