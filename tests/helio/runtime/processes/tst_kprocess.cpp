#include <QDir>
#include <QSignalSpy>

#include <thread>

#include "helio/runtime/hostevents.h"
#include "helio/runtime/processes/awaitedprograms.h"
#include "host/krt.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/lifeline.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

using krt::ksafe::KProcess;
using testsupport::FakePrograms;
using testsupport::PrivateHome;
using testsupport::readFile;

namespace {

QString homePath(const char *name)
{
    return PrivateHome::current().path() + QLatin1Char('/') + QLatin1String(name);
}

bool waitForAwaitedProgram()
{
    return QTest::qWaitFor([] { return helio::awaitedProgramCount() == 1; },
                           testsupport::longestWaitMs);
}

} // namespace

/// Starting programs, detached or awaited.
class KProcessTest : public QObject
{
    Q_OBJECT

private slots:
    void aDetachedProgramHasItsStreamsAtTheNullDevice()
    {
        const FakePrograms programs;
        programs.add(
            QStringLiteral("probe"),
            "exec 9> \"$HOME/part\"\n"
            "for n in 0 1 2; do link=$(readlink /proc/$$/fd/$n); echo \"$link\" >&9; done\n"
            "mv \"$HOME/part\" \"$HOME/streams\"");
        QVERIFY(KProcess::StartDetach(QStringLiteral("probe"), {}, QString(), nullptr));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(homePath("streams")),
                                 testsupport::longestWaitMs);
        QCOMPARE(readFile(homePath("streams")), QByteArray("/dev/null\n/dev/null\n/dev/null\n"));
    }

    void aDetachedProgramGetsArgumentsDirectoryAndId()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("probe"),
                     "{ printf '%s\\n' \"$$\" \"$#\" \"$@\"; pwd; } > \"$HOME/part\"\n"
                     "mv \"$HOME/part\" \"$HOME/told\"");
        QDir().mkpath(homePath("some where"));
        qint64 id = 0;
        QVERIFY(KProcess::StartDetach(
            QStringLiteral("probe"),
            {QStringLiteral("a b"), QStringLiteral("$(touch x);\"'*"), QString()},
            homePath("some where"), &id));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(homePath("told")), testsupport::longestWaitMs);
        QCOMPARE(readFile(homePath("told")), QByteArray::number(id) +
                                                 "\n3\na b\n$(touch x);\"'*\n\n" +
                                                 homePath("some where").toUtf8() + '\n');
    }

    void anEmptyDirectoryIsTheCurrentOne()
    {
        const FakePrograms programs;
        programs.add(QStringLiteral("probe"),
                     "pwd > \"$HOME/part\"; mv \"$HOME/part\" \"$HOME/directory\"");
        QVERIFY(KProcess::StartDetach(QStringLiteral("probe"), {}, QString(), nullptr));
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(homePath("directory")),
                                 testsupport::longestWaitMs);
        QCOMPARE(readFile(homePath("directory")).trimmed(), QFile::encodeName(QDir::currentPath()));
    }

    void aProgramThatCannotBeStartedIsReported_data()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("missing") << QStringLiteral("no-such-program");
        QTest::newRow("missing path") << QStringLiteral("/nonexistent/program");
        QTest::newRow("directory") << QStringLiteral("/tmp");
        QTest::newRow("not executable")
            << PrivateHome::current().writeFile(QStringLiteral("plain"), "text");
        QTest::newRow("empty") << QString();
    }

    void aProgramThatCannotBeStartedIsReported()
    {
        QFETCH(QString, program);
        qint64 id = 77;
        QVERIFY(!KProcess::StartDetach(program, {}, QString(), &id));
        QCOMPARE(KProcess::Execute(program, {}), -2);
    }

    void anAwaitedProgramGivesItsExitCode_data()
    {
        QTest::addColumn<QString>("script");
        QTest::addColumn<int>("code");
        QTest::newRow("success") << QStringLiteral("exit 0") << 0;
        QTest::newRow("failure") << QStringLiteral("exit 7") << 7;
        QTest::newRow("largest") << QStringLiteral("exit 255") << 255;
        QTest::newRow("crash") << QStringLiteral("kill -SEGV $$") << -1;
        QTest::newRow("killed") << QStringLiteral("kill -9 $$") << -1;
        QTest::newRow("reads its input") << QStringLiteral("cat") << 0;
        QTest::newRow("prints a lot") << QStringLiteral("head -c 1000000 /dev/zero") << 0;
    }

    void anAwaitedProgramGivesItsExitCode()
    {
        QFETCH(QString, script);
        QFETCH(int, code);
        QCOMPARE(KProcess::Execute(QStringLiteral("sh"), {QStringLiteral("-c"), script}), code);
        QCOMPARE(helio::awaitedProgramCount(), 0);
    }

    void programsCanBeAwaitedInAnotherThread()
    {
        int code = -5;
        std::thread worker([&code] {
            code = KProcess::Execute(
                QStringLiteral("sh"),
                {QStringLiteral("-c"),
                 QStringLiteral("until [ -e \"$HOME/go\" ] || [ ! -d \"$HOME\" ]; "
                                "do sleep 0.01; done; exit 3")});
        });
        const bool wasCounted = waitForAwaitedProgram();
        PrivateHome::current().writeFile(QStringLiteral("go"), {});
        worker.join();
        QVERIFY(wasCounted);
        QCOMPARE(code, 3);
        QCOMPARE(helio::awaitedProgramCount(), 0);
    }

    void everyAttemptIsReported()
    {
        const QSignalSpy told(&helio::HostEvents::instance(), &helio::HostEvents::programStarting);
        KProcess::StartDetach(QStringLiteral("no-such-program"), {QStringLiteral("a")},
                              QStringLiteral("/tmp"), nullptr);
        KProcess::Execute(QStringLiteral("true"), {QStringLiteral("b")});
        QCOMPARE(told.count(), 2);
        QCOMPARE(told.at(0),
                 QVariantList({QStringLiteral("no-such-program"), QStringList{QStringLiteral("a")},
                               QStringLiteral("/tmp"), true}));
        QCOMPARE(told.at(1), QVariantList({QStringLiteral("true"), QStringList{QStringLiteral("b")},
                                           QString(), false}));
    }

    /// Must be the last test: every awaited program is killed from here on.
    void awaitedProgramsEndWithTheShell()
    {
        int code = 0;
        testsupport::Lifeline programs;
        std::thread worker([&code] {
            code = KProcess::Execute(
                QStringLiteral("bash"),
                {QStringLiteral("-c"), QStringLiteral("sleep 600 & sleep 600; exit")});
        });
        const bool wasCounted = waitForAwaitedProgram();
        helio::endAwaitedPrograms();
        worker.join();
        QVERIFY(wasCounted);
        QCOMPARE(code, -1);
        QVERIFY(programs.areAllGone());
        QCOMPARE(KProcess::Execute(QStringLiteral("sleep"), {QStringLiteral("600")}), -1);
    }
};

HEADLESS_TEST_MAIN(KProcessTest)
#include "tst_kprocess.moc"
