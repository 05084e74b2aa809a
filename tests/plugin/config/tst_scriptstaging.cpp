#include <QDir>
#include <QResource>

#include <vector>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "plugin/config/directorylock.h"
#include "plugin/config/scriptstaging.h"
#include "tests/support/shell/headlesstest.h"

using namespace OfficeAssiant;
using testsupport::PrivateHome;
using testsupport::readFile;

namespace {

const QString script = QStringLiteral("getfileinfo.sh");

/// Without the type package, which a shell may register under the same prefix.
QStringList embeddedScripts()
{
    return QDir(QStringLiteral(":/config"), QStringLiteral("*.sh"), QDir::Name).entryList();
}

QString installedScripts()
{
    return QCoreApplication::applicationDirPath() +
           QStringLiteral("/addons/vyrassistanttool/officeassistant/resource/config");
}

QString stagedPath(const QString &name)
{
    return PrivateHome::current().suiteHome() + QStringLiteral("/tmp/officeassis_script/") + name;
}

/// Stages, uses and removes all scripts again and again. False if one was not there as it should
/// be.
bool stagesAndRemoves(int rounds)
{
    const QStringList names = embeddedScripts();
    for (int round = 0; round < rounds; ++round) {
        for (const QString &name : names) {
            const QString staged = stagedScript(name);
            if (staged.isEmpty() || !QFileInfo(staged).isExecutable() ||
                readFile(staged) != readFile(QStringLiteral(":/config/") + name))
                return false;
        }
        removeStagedScripts();
    }
    return true;
}

mode_t modeOf(const QString &path)
{
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        qFatal("%s is missing", qPrintable(path));
    return status.st_mode & 07777;
}

void writeFile(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

} // namespace

/// From a script's name to the path of a runnable file.
class ScriptStagingTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { cleanup(); }

    void cleanup()
    {
        qunsetenv("HELIO_SUITE_HOME");
        removeStagedScripts();
        QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/addons"))
            .removeRecursively();
        QDir(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")).removeRecursively();
    }

    void theTreeHoldsTheTwelveScriptsUncompressedAndUnchanged()
    {
        const QStringList names{
            QStringLiteral("archivepackage.sh"), QStringLiteral("assocheck.sh"),
            QStringLiteral("desktopcheck.sh"),   QStringLiteral("extractfont.sh"),
            QStringLiteral("getbrowserinfo.sh"), QStringLiteral("getdesktopfile.sh"),
            QStringLiteral("getdesktoppath.sh"), QStringLiteral("getfileinfo.sh"),
            QStringLiteral("getmimeinfo.sh"),    QStringLiteral("getopeninfo.sh"),
            QStringLiteral("recovericon.sh"),    QStringLiteral("repairasso.sh")};
        QCOMPARE(embeddedScripts(), names);
        for (const QString &name : names) {
            const QResource resource(QStringLiteral(":/config/") + name);
            QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
            QCOMPARE(readFile(QStringLiteral(":/config/") + name),
                     readFile(QStringLiteral(SUITE_OFFICE_DIR "/../../plugin/config/") + name));
        }
    }

    void everyScriptStagesWithItsEmbeddedBytes()
    {
        const QStringList names = embeddedScripts();
        for (const QString &name : names) {
            QCOMPARE(stagedScript(name), stagedPath(name));
            QCOMPARE(readFile(stagedPath(name)), readFile(QStringLiteral(":/config/") + name));
        }
    }

    void anInstalledCopyIsPreferredAndNothingIsStaged()
    {
        const QString installed = installedScripts() + QLatin1Char('/') + script;
        writeFile(installed, "echo installed\n");
        const mode_t mode = modeOf(installed);

        QCOMPARE(stagedScript(script), installed);
        QCOMPARE(modeOf(installed), mode);
        QCOMPARE(readFile(installed), QByteArray("echo installed\n"));
        QVERIFY(!QFileInfo::exists(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")));
    }

    void anInstalledScriptNeedNotBeEmbedded()
    {
        const QString installed = installedScripts() + QStringLiteral("/other.sh");
        writeFile(installed, "true\n");
        QCOMPARE(stagedScript(QStringLiteral("other.sh")), installed);
    }

    void aDirectoryOfTheScriptsNameCountsAsInstalled()
    {
        const QString installed = installedScripts() + QLatin1Char('/') + script;
        QDir().mkpath(installed);
        QCOMPARE(stagedScript(script), installed);
    }

    void anOlderStagedCopyIsUsedUnchanged()
    {
        writeFile(stagedPath(script), "echo older\n");
        QCOMPARE(stagedScript(script), stagedPath(script));
        QCOMPARE(readFile(stagedPath(script)), QByteArray("echo older\n"));
        QCOMPARE(modeOf(stagedPath(script)), mode_t(0550));
    }

    void theStagedFilesAreRemovedByTheLastProgramThatUsesThem()
    {
        QVERIFY(!stagedScript(script).isEmpty());
        const QString directory = scriptStagingDirectory();
        QVERIFY(QDir(directory).mkdir(QStringLiteral("kept")));
        {
            const DirectoryLock otherProgram(directory, DirectoryLock::Shared, 0);
            removeStagedScripts();
            QVERIFY(QFileInfo::exists(stagedPath(script)));
        }
        removeStagedScripts();
        QCOMPARE(QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{QStringLiteral("kept")});
    }

    void aProgramThatHasStagedNothingLeavesTheFilesOfAnother()
    {
        writeFile(stagedPath(script), "echo another's\n");
        {
            const DirectoryLock other(scriptStagingDirectory(), DirectoryLock::Shared, 0);
            removeStagedScripts();
            QVERIFY(QFileInfo::exists(stagedPath(script)));
        }
        removeStagedScripts();
        QVERIFY(!QFileInfo::exists(stagedPath(script)));
    }

    void twentyProgramsAtOnceDoNotTakeEachOthersScripts()
    {
        std::vector<pid_t> programs(20);
        for (pid_t &program : programs) {
            program = ::fork();
            if (program == 0)
                ::_exit(stagesAndRemoves(25) ? 0 : 1);
        }
        int wrong = 0;
        for (const pid_t program : programs) {
            int status = -1;
            QCOMPARE(::waitpid(program, &status, 0), program);
            wrong += status != 0;
        }
        QCOMPARE(wrong, 0);
        QVERIFY(QDir(scriptStagingDirectory()).isEmpty());
    }

    void aNameThatIsNotInTheTreeGivesAnEmptyPath()
    {
        QCOMPARE(stagedScript(QStringLiteral("missing.sh")), QString());
        QCOMPARE(stagedScript(QStringLiteral("GETFILEINFO.SH")), QString());
        QVERIFY(!QFileInfo::exists(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")));
    }

    void anAbsentTmpDirectoryIsMadeAndTheStagingDirectoryInIt()
    {
        const QString temporary = PrivateHome::current().suiteHome() + QStringLiteral("/tmp");
        QVERIFY(!QFileInfo::exists(temporary));
        QCOMPARE(stagedScript(script), stagedPath(script));
        QCOMPARE(QDir(temporary).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{QStringLiteral("officeassis_script")});
    }

    void aStagedFileHasMode0550()
    {
        QCOMPARE(modeOf(stagedScript(script)), mode_t(0550));
        // Asking again gives the same.
        QCOMPARE(modeOf(stagedScript(script)), mode_t(0550));
    }

    void anAbsentSuiteHomeGivesAnEmptyPath()
    {
        const QString absent = PrivateHome::current().path() + QStringLiteral("/absent");
        qputenv("HELIO_SUITE_HOME", QFile::encodeName(absent));
        QCOMPARE(stagedScript(script), QString());
        QVERIFY(!QFileInfo::exists(absent));
    }

    void aFileInPlaceOfTheStagingDirectoryGivesAnEmptyPath()
    {
        writeFile(PrivateHome::current().suiteHome() + QStringLiteral("/tmp/officeassis_script"),
                  "in the way");
        QCOMPARE(stagedScript(script), QString());
    }

    void aGivenTargetDirectoryIsUsedAndNotMade()
    {
        const QString target = PrivateHome::current().path() + QStringLiteral("/target");
        const QString resource = QStringLiteral(":/config/") + script;
        QCOMPARE(stageResource(resource, script, target), QString());
        QVERIFY(!QFileInfo::exists(target));
        QVERIFY(QDir().mkpath(target));
        QCOMPARE(stageResource(resource, QStringLiteral("renamed.sh"), target),
                 target + QStringLiteral("/renamed.sh"));
        QVERIFY(!QFileInfo::exists(PrivateHome::current().suiteHome() + QStringLiteral("/tmp")));
    }
};

HEADLESS_TEST_MAIN(ScriptStagingTest)
#include "tst_scriptstaging.moc"
