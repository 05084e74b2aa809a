#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include "doctor/machine/processview.h"
#include "helio/suite/cleanstart.h"
#include "helio/suite/starttime.h"
#include "tests/support/patience.h"
#include "tests/support/privatehome.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::PrivateHome;
using testsupport::readFile;

namespace {

constexpr char recentLine[] =
    "<item oor:path=\"/org.openoffice.Office.Histories/Histories/"
    "org.openoffice.Office.Histories:HistoryInfo['PickList']/ItemList\"/>\n";

/// Finds its profile as the suite does.
constexpr char findsProfile[] = "#!/bin/sh\n"
                                "for word; do case $word in -env:UserInstallation=file://*)\n"
                                "profile=${word#*file://};; esac; done\n";

QString inHome(const char *name)
{
    return PrivateHome::current().path() + QLatin1Char('/') + QLatin1String(name);
}

} // namespace

/// Starts with other profiles than the user's, of a suite that is a script.
class SuiteStartTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        QDir(inHome("profile")).removeRecursively();
        QFile::remove(inHome("log"));
        write("profile/registrymodifications.xcu",
              QByteArray("<items>\n") + recentLine + "</items>\n");
        write("profile/uno_packages/cache/tidy.oxt", "extension");
        write("profile/backup/old.odt", "copy");
        QVERIFY(QFile::link(QStringLiteral("."), inHome("profile/loop")));
        QVERIFY(m_folders.isValid());
        qputenv("TMPDIR", m_folders.path().toUtf8());
    }

    void whatAPartCostsIsFoundByLeavingItOut()
    {
        suite(
            "case $profile in */0) mkdir -p \"$profile/user\"; echo clean >> \"$HOME/log\"; exit;; "
            "esac\ncd \"$profile/user\"\n"
            "echo $(ls) $(grep -c Histories registrymodifications.xcu 2>/dev/null) >> "
            "\"$HOME/log\"\n"
            "[ ! -e uno_packages ] || sleep 0.1\n");
        const auto times = helio::measuredStart(state(), [](int, int) { return true; });
        QCOMPARE(times.problem, QString());
        QCOMPARE(times.parts.size(), 3);
        QCOMPARE(times.parts.first().part, QStringLiteral("extensions"));
        QVERIFY(times.own > times.clean);
        const QStringList starts =
            QString::fromUtf8(readFile(inHome("log"))).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QCOMPARE(starts.mid(0, 5),
                 (QStringList{QStringLiteral("clean"),
                              QStringLiteral("registrymodifications.xcu uno_packages 1"),
                              QStringLiteral("registrymodifications.xcu 1"),
                              QStringLiteral("uno_packages"),
                              QStringLiteral("registrymodifications.xcu uno_packages 0")}));
        // The first round does not count.
        QCOMPARE(starts.size(), 20);
        QCOMPARE(leftFolders(), QStringList());
        QCOMPARE(QDir(inHome("profile")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(),
                 4);
    }

    void aHangingSuiteIsCancelledWithItsPrograms()
    {
        suite("echo start >> \"$HOME/log\"\nsleep 600\n");
        const auto times =
            helio::measuredStart(state(), [](int, int) { return !QFile::exists(inHome("log")); });
        QVERIFY(times.isCancelled);
        QCOMPARE(leftFolders(), QStringList());
    }

    void aSuiteThatFailsHasNoTimes()
    {
        suite("exit 77\n");
        const auto times = helio::measuredStart(state(), [](int, int) { return true; });
        QCOMPARE(times.problem, QStringLiteral("LibreOffice cannot be started"));
        QVERIFY(times.parts.isEmpty());
    }

    void aHangingSuiteIsGivenUp()
    {
        suite("echo start >> \"$HOME/log\"\nyes rubbish\n");
        constexpr int longestMs = 1000;
        const auto times = helio::measuredStart(
            state(), [](int, int) { return true; }, longestMs);
        QCOMPARE(times.problem,
                 QStringLiteral("LibreOffice did not come to its end within 1 seconds"));
        QCOMPARE(readFile(inHome("log")), QByteArray("start\n"));
        QCOMPARE(leftFolders(), QStringList());
    }

    void whatStartsNothingHasNoTimes()
    {
        suite("echo rubbish\n");
        const auto times = helio::measuredStart(state(), [](int, int) { return true; });
        QVERIFY2(
            times.problem.startsWith(QLatin1String("LibreOffice ended without having started: ")),
            qPrintable(times.problem));
        QVERIFY(times.parts.isEmpty());
    }

    void withoutAProfileThereIsNothingToMeasure()
    {
        suites::State unused = state();
        unused.profile.exists = false;
        const auto times = helio::measuredStart(unused, [](int, int) { return true; });
        QCOMPARE(times.problem, QStringLiteral("LibreOffice has no profile yet"));
    }

    void aCleanProfileIsGoneWithTheSuite()
    {
        suite("[ -d \"$profile\" ] || exit\necho made > \"$profile/made\"\n"
              "echo \"$profile $*\" > \"$HOME/part\"; mv \"$HOME/part\" \"$HOME/log\"\n"
              "until [ -e \"$HOME/end\" ]; do sleep 0.02; done\n");
        QCOMPARE(helio::startClean(state().installation), QString());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(inHome("log")), testsupport::longestWaitMs);
        const QString said = QString::fromUtf8(readFile(inHome("log")));
        QCOMPARE(leftFolders().size(), 1);
        QVERIFY(said.startsWith(m_folders.filePath(leftFolders().first())));
        QVERIFY(said.contains(QLatin1String("--norestore")));
        write("end", {});
        QTRY_COMPARE_WITH_TIMEOUT(leftFolders(), QStringList(), testsupport::longestWaitMs);
        QFile::remove(inHome("end"));
        QVERIFY(QFile::exists(inHome("profile/uno_packages/cache/tidy.oxt")));
    }

    void aProcessThatHasEndedIsNotRunning()
    {
        const pid_t ended = ::fork();
        if (ended == 0)
            ::_exit(0);
        siginfo_t information;
        QCOMPARE(::waitid(P_PID, static_cast<id_t>(ended), &information, WEXITED | WNOWAIT), 0);
        QVERIFY(!doctor::seesHome(doctor::thisMachine(), ended));
        QCOMPARE(::waitpid(ended, nullptr, 0), ended);
    }

    void aProcessWithAnotherHomeIsNotOfThisUser()
    {
        QProcess process;
        const QString sleep = QStringLiteral("sleep");
        process.start(sleep, {QStringLiteral("600")});
        QVERIFY(process.waitForStarted());
        QProcess other;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("HOME"), QStringLiteral("/"));
        other.setProcessEnvironment(environment);
        other.start(sleep, {QStringLiteral("600")});
        QVERIFY(other.waitForStarted());
        const doctor::Machine machine = doctor::thisMachine();
        QVERIFY(doctor::seesHome(machine, process.processId()));
        QVERIFY(!doctor::seesHome(machine, other.processId()));
        for (QProcess *one : {&process, &other}) {
            one->kill();
            QVERIFY(one->waitForFinished());
        }
    }

private:
    static void write(const char *name, const QByteArray &content)
    {
        PrivateHome::current().writeFile(QLatin1String(name), content);
    }

    static void suite(const QByteArray &script)
    {
        write("soffice", findsProfile + script);
        QFile(inHome("soffice"))
            .setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
    }

    static suites::State state()
    {
        suites::State state;
        state.installation.suite = QStringLiteral("libreoffice");
        state.installation.name = QStringLiteral("LibreOffice");
        state.installation.profile = inHome("profile");
        state.installation.command = QStringList(inHome("soffice"));
        state.profile = suites::profileOf(state.installation, doctor::thisMachine(),
                                          doctor::Deadline(std::chrono::seconds(10)));
        return state;
    }

    QStringList leftFolders() const
    {
        return QDir(m_folders.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    }

    QTemporaryDir m_folders;
};

HEADLESS_TEST_MAIN(SuiteStartTest)
#include "tst_suitestart.moc"
