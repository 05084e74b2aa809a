#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

#include "info/runcommand.h"
#include "tests/support/lifeline.h"
#include "tests/support/nomoredescriptors.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;

namespace {

int openDescriptors()
{
    return static_cast<int>(QDir(QStringLiteral("/proc/self/fd")).count());
}

bool hasChildren()
{
    return ::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) == 0;
}

void ignoreChild(int, siginfo_t *, void *) {}

void ignoreSignal(int) {}

QString homePath(const char *name)
{
    return testsupport::PrivateHome::current().path() + QLatin1Char('/') + QLatin1String(name);
}

} // namespace

/// Running shell command lines.
class RunCommandTest : public QObject
{
    Q_OBJECT

private slots:
    void outputOfAnyLengthComesWhole_data()
    {
        QTest::addColumn<int>("length");
        for (const int length : {0, 1, 1023, 1024, 1025, 2048, 2049, 100000})
            QTest::addRow("%d bytes", length) << length;
    }

    void outputOfAnyLengthComesWhole()
    {
        QFETCH(int, length);
        QCOMPARE(runCommand(QStringLiteral("head -c %1 /dev/zero | tr '\\0' x").arg(length)),
                 QString(length, QLatin1Char('x')));
    }

    void aCharacterThatLiesAcrossTwoReadsIsDecoded_data()
    {
        QTest::addColumn<int>("before");
        for (const int before : {1021, 1022, 1023, 1024, 2046, 2047})
            QTest::addRow("after %d bytes", before) << before;
    }

    void aCharacterThatLiesAcrossTwoReadsIsDecoded()
    {
        QFETCH(int, before);
        const QString output = runCommand(
            QStringLiteral("head -c %1 /dev/zero | tr '\\0' x; printf '\\346\\226\\207!'")
                .arg(before));
        QCOMPARE(output, QString(before, QLatin1Char('x')) + QStringLiteral("\u6587!"));
    }

    void oneTrailingLineFeedIsTakenAway_data()
    {
        QTest::addColumn<QString>("printed");
        QTest::addColumn<QString>("output");
        QTest::newRow("none") << QStringLiteral("a") << QStringLiteral("a");
        QTest::newRow("one") << QStringLiteral("a\\n") << QStringLiteral("a");
        QTest::newRow("two") << QStringLiteral("a\\n\\n") << QStringLiteral("a\n");
        QTest::newRow("alone") << QStringLiteral("\\n") << QString();
        QTest::newRow("carriage return") << QStringLiteral("a\\r\\n") << QStringLiteral("a\r");
        QTest::newRow("inside") << QStringLiteral("a\\nb") << QStringLiteral("a\nb");
    }

    void oneTrailingLineFeedIsTakenAway()
    {
        QFETCH(QString, printed);
        QFETCH(QString, output);
        QCOMPARE(runCommand(QStringLiteral("printf '%1'").arg(printed)), output);
    }

    void aCommandThatFailsGivesWhatItPrinted()
    {
        QCOMPARE(runCommand(QStringLiteral("echo a; echo b >&2; exit 3")), QStringLiteral("a"));
        QCOMPARE(runCommand(QStringLiteral("printf a; kill -9 $$")), QStringLiteral("a"));
    }

    void aMissingProgramGivesNothing()
    {
        QCOMPARE(runCommand(QStringLiteral("no-such-program 2>/dev/null")), QString());
        QCOMPARE(runCommand(QString()), QString());
    }

    void zeroBytesAreKept()
    {
        QCOMPARE(runCommand(QStringLiteral("printf 'a\\000b\\n'")),
                 QString(QLatin1String("a\0b", 3)));
    }

    void bytesThatAreNoTextDoNotEndTheOutput()
    {
        const QString output = runCommand(QStringLiteral("printf 'a\\377\\376b'"));
        QVERIFY(output.startsWith(QLatin1Char('a')) && output.endsWith(QLatin1Char('b')));
    }

    void fiftyMegabytesComeWhole()
    {
        constexpr int size = 50 << 20;
        const QString output =
            runCommand(QStringLiteral("head -c %1 /dev/zero | tr '\\0' x").arg(size));
        QCOMPARE(output.size(), size);
        QCOMPARE(output.count(QLatin1Char('x')), size);
    }

    void aSignalWhileACommandIsReadDoesNotCutItsOutputOff()
    {
        struct sigaction hosts = {};
        struct sigaction before = {};
        hosts.sa_handler = ignoreSignal; // without SA_RESTART
        QCOMPARE(::sigaction(SIGUSR1, &hosts, &before), 0);
        // Each signal is sent after the earlier output has been read.
        const QString command =
            QStringLiteral("for i in 1 2 3; do printf $i; sleep 0.1; kill -USR1 %1; done; echo 4")
                .arg(::getpid());
        const QString text = runCommand(command);
        const auto bytes = readCommandOutput(command);
        ::sigaction(SIGUSR1, &before, nullptr);
        QCOMPARE(text, QStringLiteral("1234"));
        QCOMPARE(bytes, std::optional<QByteArray>("1234\n"));
    }

    void aCommandThatHangsIsGivenUpWithAllItsPrograms_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("output");
        QTest::newRow("silent") << QStringLiteral("echo a; sleep 600 & sleep 600")
                                << QStringLiteral("a");
        QTest::newRow("left behind")
            << QStringLiteral("echo a; sleep 600 & exit") << QStringLiteral("a");
        QTest::newRow("closed output")
            << QStringLiteral("echo a; exec >&-; sleep 600") << QStringLiteral("a");
        QTest::newRow("deaf") << QStringLiteral(
                                     "trap '' TERM HUP INT; echo a; while :; do sleep 1; done")
                              << QStringLiteral("a");
        QTest::newRow("endless") << QStringLiteral("printf x; exec cat /dev/zero") << QString();
    }

    void aCommandThatHangsIsGivenUpWithAllItsPrograms()
    {
        QFETCH(QString, command);
        QFETCH(QString, output);
        QElapsedTimer taken;
        taken.start();
        testsupport::Lifeline programs;
        const QString text = runCommand(command, 300);
        const auto bytes = readCommandOutput(command, 300);
        QVERIFY(taken.elapsed() >= 600);
        QVERIFY(programs.areAllGone());
        QVERIFY(!hasChildren());
        QVERIFY(bytes);
        if (output.isEmpty()) {
            QVERIFY(text.startsWith(QLatin1Char('x')) && bytes->startsWith('x'));
        } else {
            QCOMPARE(text, output);
            QCOMPARE(*bytes, output.toLatin1() + '\n');
        }
    }

    void aCommandHasNoInputAndAGroupOfItsOwn()
    {
        QCOMPARE(runCommand(QStringLiteral("cat")), QString());
        QCOMPARE(runCommand(QStringLiteral("[ $$ = $(cut -d' ' -f5 /proc/$$/stat) ] && echo own")),
                 QStringLiteral("own"));
    }

    void nothingIsLeftBehind()
    {
        const int before = openDescriptors();
        for (int count = 0; count < 20; ++count) {
            runCommand(QStringLiteral("echo a"));
            readCommandOutput(QStringLiteral("echo a"));
        }
        QCOMPARE(openDescriptors(), before);
        QVERIFY(!hasChildren());
    }

    void rawOutputIsAsItWasPrinted()
    {
        QCOMPARE(readCommandOutput(QStringLiteral("printf 'a\\000\\377\\n\\n'")),
                 std::optional<QByteArray>(QByteArray("a\0\xff\n\n", 5)));
        QCOMPARE(readCommandOutput(QStringLiteral("true")),
                 std::optional<QByteArray>(QByteArray()));
    }

    void theHostsChildHandlerIsRestoredWithItsFlags()
    {
        struct sigaction hosts = {};
        struct sigaction before = {};
        struct sigaction after = {};
        hosts.sa_sigaction = ignoreChild;
        hosts.sa_flags = SA_SIGINFO | SA_RESTART | SA_NOCLDSTOP;
        QCOMPARE(::sigaction(SIGCHLD, &hosts, &before), 0);
        readCommandOutput(QStringLiteral("true"));
        QCOMPARE(::sigaction(SIGCHLD, &before, &after), 0);
        QVERIFY(after.sa_sigaction == ignoreChild);
        constexpr int flags = SA_SIGINFO | SA_RESTART | SA_NOCLDSTOP;
        QCOMPARE(after.sa_flags & flags, flags);
    }

    void theChildHandlerIsTheDefaultOneMeanwhile()
    {
        struct sigaction ignored = {};
        struct sigaction before = {};
        ignored.sa_handler = SIG_IGN;
        QCOMPARE(::sigaction(SIGCHLD, &ignored, &before), 0);
        // Bit 17 of the inherited mask of ignored signals is SIGCHLD.
        const auto output = readCommandOutput(QStringLiteral("grep SigIgn /proc/self/status"));
        ::sigaction(SIGCHLD, &before, nullptr);
        QVERIFY(output);
        const quint64 mask = output->split('\t').value(1).trimmed().toULongLong(nullptr, 16);
        QVERIFY(!(mask & (1ULL << (SIGCHLD - 1))));
    }

    void aCommandThatCannotBeStartedGivesNothing()
    {
        QString output = QStringLiteral("untouched");
        QObject owner;
        {
            const testsupport::NoMoreDescriptors limit;
            output = runCommand(QStringLiteral("echo a"));
            startCommand(QStringLiteral("echo a"), &owner);
        }
        QCOMPARE(output, QString());
        QVERIFY(owner.children().isEmpty());
    }

    void aFailedStartLeavesTheChildHandlerAtItsDefault()
    {
        struct sigaction hosts = {};
        struct sigaction before = {};
        struct sigaction after = {};
        hosts.sa_handler = SIG_IGN;
        QCOMPARE(::sigaction(SIGCHLD, &hosts, &before), 0);
        std::optional<QByteArray> output;
        {
            const testsupport::NoMoreDescriptors limit;
            output = readCommandOutput(QStringLiteral("echo a"));
        }
        QCOMPARE(::sigaction(SIGCHLD, &before, &after), 0);
        QVERIFY(!output);
        QVERIFY(after.sa_handler == SIG_DFL);
    }

    void aStartedCommandIsNotWaitedForAndIsCollectedLater()
    {
        const int before = openDescriptors();
        const QString note = homePath("note");
        QObject owner;
        startCommand(QStringLiteral("cd; until [ -e go ]; do sleep 0.01; done; "
                                    "head -c 200000 /dev/zero; touch note"),
                     &owner);
        QVERIFY(!QFileInfo::exists(note));
        testsupport::PrivateHome::current().writeFile(QStringLiteral("go"), "");
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(note), testsupport::longestWaitMs);
        QTRY_VERIFY_WITH_TIMEOUT(!hasChildren(), testsupport::longestWaitMs);
        QTRY_COMPARE_WITH_TIMEOUT(openDescriptors(), before, testsupport::longestWaitMs);
        QTRY_VERIFY_WITH_TIMEOUT(owner.children().isEmpty(), testsupport::longestWaitMs);
    }

    void aStartedCommandThatClosesItsOutputDoesNotBlockTheEventLoop()
    {
        QObject owner;
        startCommand(QStringLiteral("exec >&-; touch \"$HOME/closed\"; sleep 5"), &owner);
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(homePath("closed")), testsupport::longestWaitMs);
        QTest::qWait(500);
        QVERIFY(hasChildren());
    }

    void aStartedCommandRunsOnWithoutItsOwner()
    {
        {
            QObject owner;
            // More than a pipe that nobody reads takes.
            startCommand(
                QStringLiteral("sleep 0.1; head -c 200000 /dev/zero; touch \"$HOME/later\""),
                &owner);
        }
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(homePath("later")), 10000);
    }
};

HEADLESS_TEST_MAIN(RunCommandTest)
#include "tst_runcommand.moc"
