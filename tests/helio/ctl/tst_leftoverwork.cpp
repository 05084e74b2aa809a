#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <thread>

#include <sys/wait.h>

#include "helio/ctl/leftoverwork.h"
#include "host/krt.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"
#include "tests/support/unprivileged.h"

namespace {

/// A running process that the destructor kills.
class RunningProcess
{
public:
    RunningProcess(const QString &program, const QStringList &arguments)
    {
        m_process.start(program, arguments);
        if (!m_process.waitForStarted(5000))
            qFatal("cannot start %s", qPrintable(program));
    }

    ~RunningProcess()
    {
        m_process.kill();
        m_process.waitForFinished(5000);
    }

private:
    QProcess m_process;
};

} // namespace

/// Which processes assistantctl waits for before it ends.
class LeftoverWorkTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_directory = std::make_unique<QTemporaryDir>();
        QVERIFY(m_directory->isValid());
        QVERIFY(!ctl::isScriptRunningFrom(m_directory->path()));
    }

    void aScriptRunByAnInterpreterIsNoticedUntilItEnds()
    {
        const QString script = addScript(QStringLiteral("sleeper.sh"));
        {
            const RunningProcess process(QStringLiteral("bash"), {script, QStringLiteral("word")});
            QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(m_directory->path()),
                                     testsupport::longestWaitMs);
        }
        QVERIFY(!ctl::isScriptRunningFrom(m_directory->path()));
    }

    void aScriptRunByItselfIsNoticed()
    {
        const RunningProcess process(addScript(QStringLiteral("sleeper.sh")), {});
        QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(m_directory->path()),
                                 testsupport::longestWaitMs);
    }

    void aScriptRunByAScriptInPlaceOfTheInterpreterIsNoticed()
    {
        const QTemporaryDir programs;
        const QString interpreter = programs.filePath(QStringLiteral("bash"));
        QVERIFY(QFile::copy(addScript(QStringLiteral("sleeper.sh")), interpreter));
        const RunningProcess process(interpreter, {addScript(QStringLiteral("staged.sh"))});
        QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(m_directory->path()),
                                 testsupport::longestWaitMs);
    }

    void aCommandLineThatIsAboutToRunAScriptIsNoticed()
    {
        const RunningProcess process(
            QStringLiteral("sh"),
            {QStringLiteral("-c"),
             QStringLiteral("bash %1; true").arg(addScript(QStringLiteral("sleeper.sh")))});
        QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(m_directory->path()),
                                 testsupport::longestWaitMs);
    }

    void aScriptIsNoticedAtEveryMomentOfItsStart()
    {
        const QString mark = m_directory->filePath(QStringLiteral("ended"));
        const QString script =
            addScript(QStringLiteral("short.sh"), QStringLiteral("echo > %1").arg(mark));
        for (int round = 0; round < 100; ++round) {
            FILE *const output = ::popen(qPrintable(QStringLiteral("bash ") + script), "r");
            QVERIFY(output);
            while (ctl::isScriptRunningFrom(m_directory->path()))
                continue;
            const bool hasEnded = QFile::remove(mark);
            ::pclose(output);
            QVERIFY2(hasEnded, qPrintable(QStringLiteral("in round %1").arg(round)));
        }
    }

    void aProgramThatOnlyNamesTheDirectoryIsNotWaitedFor()
    {
        const QString file = addScript(QStringLiteral("viewed.sh"));
        const RunningProcess viewer(QStringLiteral("tail"),
                                    {QStringLiteral("-f"), QStringLiteral("-n0"), file});
        // A program that is still being loaded counts as a script.
        QTRY_VERIFY_WITH_TIMEOUT(!ctl::isScriptRunningFrom(m_directory->path()),
                                 testsupport::longestWaitMs);
    }

    void aDirectoryWhoseNameOnlyStartsAlikeIsAnother()
    {
        const RunningProcess process(QStringLiteral("bash"),
                                     {addScript(QStringLiteral("sleeper.sh"))});
        QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(m_directory->path()),
                                 testsupport::longestWaitMs);
        QTRY_VERIFY_WITH_TIMEOUT(!ctl::isScriptRunningFrom(m_directory->path().chopped(1)),
                                 testsupport::longestWaitMs);
    }

    void aScriptOfAnotherProgramIsNotWaitedFor()
    {
        const QString script = addScript(QStringLiteral("sleeper.sh"));
        const RunningProcess process(QStringLiteral("bash"), {script});
        QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(m_directory->path()),
                                 testsupport::longestWaitMs);
        // A new process has not started it.
        QVERIFY(testsupport::holdsUnprivileged(
            [this] { return !ctl::isScriptRunningFrom(m_directory->path()); }));
    }

    void aDetachedScriptIsFoundAndEnded()
    {
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/officeassis_script/stuck.sh"),
            "#!/bin/bash\nsleep 600 & sleep 600\n");
        const QString directory = testsupport::PrivateHome::current().suiteHome() +
                                  QStringLiteral("/tmp/officeassis_script");
        ctl::adoptLeftovers(qApp);
        QVERIFY(krt::ksafe::KProcess::StartDetach(
            QStringLiteral("bash"), {directory + QStringLiteral("/stuck.sh")}, QString(), nullptr));
        QTRY_VERIFY_WITH_TIMEOUT(ctl::isScriptRunningFrom(directory), testsupport::longestWaitMs);
        ctl::endStartedWork(SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(!ctl::isScriptRunningFrom(directory), testsupport::longestWaitMs);
        // What has ended is collected.
        QTRY_VERIFY_WITH_TIMEOUT(::waitid(P_ALL, 0, nullptr, WEXITED | WNOHANG | WNOWAIT) != 0,
                                 testsupport::longestWaitMs);
    }

    void nothingLeftMeansNoWait()
    {
        // Waiting in vain would use up all the time.
        QVERIFY(ctl::waitForLeftoverWork() > 0);
    }

    void whatAThreadReportedBeforeItEndedIsDelivered()
    {
        // In a new process, because the test has other threads.
        QVERIFY(testsupport::holdsUnprivileged([] {
            bool isDelivered = false;
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [&isDelivered] { isDelivered = true; },
                Qt::QueuedConnection);
            ctl::waitForLeftoverWork();
            return isDelivered;
        }));
    }

    void aStagedScriptIsWaitedFor()
    {
        testsupport::PrivateHome::current().writeFile(
            QStringLiteral(".local/share/Orvane/tmp/officeassis_script/short.sh"),
            "sleep 0.5; touch \"$HOME/ended\"\n");
        const QString script = testsupport::PrivateHome::current().suiteHome() +
                               QStringLiteral("/tmp/officeassis_script/short.sh");
        const RunningProcess process(QStringLiteral("bash"), {script});
        ctl::waitForLeftoverWork();
        QVERIFY(QFileInfo::exists(testsupport::PrivateHome::current().path() +
                                  QStringLiteral("/ended")));
    }

    void aThreadOnItsWayIsWaitedFor()
    {
        std::atomic<bool> hasArrived{false};
        std::thread busy([&hasArrived] {
            QElapsedTimer way;
            way.start();
            while (way.elapsed() < 500)
                continue;
            hasArrived = true;
        });
        ctl::waitForLeftoverWork();
        const bool hadArrived = hasArrived;
        busy.join();
        QVERIFY(hadArrived);
    }

private:
    /// By default a script that ends with its input, that is, with its RunningProcess.
    QString addScript(const QString &name, const QString &text = QStringLiteral("read line")) const
    {
        QFile script(m_directory->filePath(name));
        if (!script.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(script.fileName()));
        script.write("#!/bin/bash\n" + text.toUtf8() + '\n');
        script.close();
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return script.fileName();
    }

    std::unique_ptr<QTemporaryDir> m_directory;
};

HEADLESS_TEST_MAIN(LeftoverWorkTest)
#include "tst_leftoverwork.moc"
