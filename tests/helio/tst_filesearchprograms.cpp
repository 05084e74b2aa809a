#include <csignal>
#include <memory>

#include "tests/helio/searchplace.h"
#include "tests/helio/searchrecorder.h"
#include "tests/support/fakeprograms.h"
#include "tests/support/headlesstest.h"

using testsupport::FakePrograms;
using testsupport::readFile;
using testsupport::SearchPlace;
using testsupport::SearchRecorder;

namespace {

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// Finds its --output, in the variable "output".
const char findOutput[] = "while [ $# -gt 0 ]; do\n"
                          "    if [ \"$1\" = --output ]; then output=$2; fi\n"
                          "    shift\n"
                          "done\n";

bool isRunning(const QByteArray &processId)
{
    return ::kill(processId.trimmed().toInt(), 0) == 0;
}

} // namespace

/// The search for files by name, with stand-ins for plocate and updatedb.
class FileSearchProgramsTest : public QObject
{
    Q_OBJECT

private:
    QByteArray outside(const char *name) const
    {
        return QFile::encodeName(m_place->outside(text(name)));
    }

    bool waitForFile(const char *name) const
    {
        return QTest::qWaitFor([&] { return QFileInfo(m_place->outside(text(name))).size() > 0; },
                               20000);
    }

    QByteArray contentOf(const char *name) const { return readFile(m_place->outside(text(name))); }

    void writeOutside(const char *name) const
    {
        QFile file(m_place->outside(text(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("x");
    }

    /// A database that is up to date as far as its age tells.
    void makeDatabase()
    {
        const QString updater = m_programs->add(
            text("updatedb"), findOutput + QByteArray("echo database > \"$output\""));
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QVERIFY(m_place->waitForDatabase());
        m_programs->add(text("updatedb"), "echo unexpected >> " + outside("unexpected"));
    }

    /// An updatedb that tells its process number and waits for a file of the name "go".
    QByteArray waitingUpdater() const
    {
        return findOutput + ("echo $$ >> " + outside("updaters") + "\nuntil [ -e " + outside("go") +
                             " ]; do sleep 0.01; done\necho database > \"$output\"");
    }

    std::unique_ptr<SearchPlace> m_place;
    std::unique_ptr<FakePrograms> m_programs;

private slots:
    void init()
    {
        m_place = std::make_unique<SearchPlace>();
        m_programs = std::make_unique<FakePrograms>();
    }

    void cleanup()
    {
        QVERIFY(!QFile::exists(m_place->outside(text("unexpected"))));
        m_programs.reset();
        m_place.reset();
    }

    void theKeywordReachesPlocateAsALiteralPattern()
    {
        makeDatabase();
        m_programs->add(text("plocate"),
                        "printf '%s\\n' \"$LC_ALL\" \"$@\" > " + outside("asked") + "\nexit 1");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("-a *?[b]\\ 'c'")), QStringList());
        const QByteArray database = QFile::encodeName(m_place->databases().constFirst());
        QCOMPARE(contentOf("asked"), "C.UTF-8\n--null\n--basename\n--ignore-case\n--database\n" +
                                         database + "\n--\n*-a \\*\\?\\[b\\]\\\\ 'c'*\n");
        recorder.namesOf(text("A"), {}, true);
        QVERIFY(!contentOf("asked").contains("--ignore-case"));
    }

    void updatedbLeavesOutNothingThatTheSystemsSettingsName()
    {
        m_programs->add(text("plocate"), "exit 1");
        m_programs->add(text("updatedb"), "printf '%s\\n' \"$@\" > " + outside("words"));
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(waitForFile("words"));
        const QList<QByteArray> words = contentOf("words").split('\n');
        const auto valueOf = [&words](const char *option) {
            return words.value(words.indexOf(option) + 1);
        };
        QCOMPARE(valueOf("--database-root"), QFile::encodeName(m_place->root()));
        QCOMPARE(valueOf("--require-visibility"), QByteArray("no"));
        QCOMPARE(valueOf("--prune-bind-mounts"), QByteArray("no"));
        QCOMPARE(valueOf("--prunenames"), QByteArray());
        QCOMPARE(valueOf("--prunepaths"), QByteArray());
        QCOMPARE(valueOf("--add-single-prunepath"),
                 QFile::encodeName(m_place->databaseDirectory()));
        const QList<QByteArray> fileSystems = valueOf("--prunefs").split(' ');
        for (const char *type : {"proc", "sysfs", "nfs", "cifs", "fuse.sshfs"})
            QVERIFY2(fileSystems.contains(type), type);
        for (const char *type : {"tmpfs", "ext4", "overlay", "fuse.gocryptfs", "ecryptfs"})
            QVERIFY2(!fileSystems.contains(type), type);
    }

    void aRefreshRunsAtIdlePriorityAndByItself()
    {
        m_programs->add(text("plocate"), "exit 1");
        m_programs->add(text("updatedb"), "{ nice; ionice -p $$; ps -o sid= -p $$; } > " +
                                              outside("new") + "\nmv " + outside("new") + ' ' +
                                              outside("priority"));
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(waitForFile("priority"));
        const QList<QByteArray> lines = contentOf("priority").split('\n');
        QCOMPARE(lines.value(0), QByteArray("19"));
        QCOMPARE(lines.value(1), QByteArray("idle"));
        QVERIFY(lines.value(2).trimmed() != QByteArray::number(::getsid(0)));
    }

    void aRefreshTakesOverTheDatabaseThatThereIs()
    {
        makeDatabase();
        m_programs->add(text("plocate"), "exit 1");
        m_programs->add(text("updatedb"),
                        findOutput + ("cat \"$output\" > " + outside("found") +
                                      "\nrm \"$output\"\necho newer > \"$output\""));
        const QString database = m_place->databases().constFirst();
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(QTest::qWaitFor([&] { return readFile(database) == "newer\n"; }, 20000));
        QCOMPARE(contentOf("found"), QByteArray("database\n"));
    }

    void aFailedRefreshLeavesTheDatabaseAndNoRubbish()
    {
        makeDatabase();
        m_programs->add(text("plocate"), "exit 1");
        m_programs->add(text("updatedb"),
                        findOutput + ("echo rubbish > \"$output.XYZ\"\necho x > " + outside("ran") +
                                      "\nexit 1"));
        const QString database = m_place->databases().constFirst();
        const QDir directory(m_place->databaseDirectory());
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(waitForFile("ran"));
        QVERIFY(
            QTest::qWaitFor([&] { return directory.entryList({text("*.new")}).isEmpty(); }, 20000));
        QCOMPARE(readFile(database), QByteArray("database\n"));
        m_programs->add(text("updatedb"), findOutput + QByteArray("echo newer > \"$output\""));
        SearchRecorder().namesOf(text("x"));
        QCOMPARE(readFile(database), QByteArray("newer\n"));
        QCOMPARE(directory.entryList(QDir::Files).filter(text(".new")), QStringList());
    }

    void oneRefreshRunsAtATime()
    {
        m_programs->add(text("plocate"), "exit 1");
        m_programs->add(text("updatedb"), waitingUpdater());
        KFsSearch one;
        KFsSearch other;
        one.RunEverythingDaemon();
        QVERIFY(waitForFile("updaters"));
        one.RunEverythingDaemon();
        other.RunEverythingDaemon();
        SearchRecorder().namesOf(text("x"));
        writeOutside("go");
        QVERIFY(QTest::qWaitFor([this] { return !m_place->databases().isEmpty(); }, 20000));
        QCOMPARE(contentOf("updaters").count('\n'), 1);
    }

    void aRefreshOutlivesTheSearchThatStartedIt()
    {
        m_programs->add(text("plocate"), "exit 1");
        m_programs->add(text("updatedb"), waitingUpdater());
        {
            KFsSearch search;
            search.RunEverythingDaemon();
            QVERIFY(waitForFile("updaters"));
        }
        QVERIFY(m_place->databases().isEmpty());
        writeOutside("go");
        QVERIFY(QTest::qWaitFor([this] { return !m_place->databases().isEmpty(); }, 20000));
    }

    void hitsDoNotWaitForARefreshButTheEndDoes()
    {
        makeDatabase();
        const QString old = m_place->makeFile("report-old");
        const QString added = m_place->makeFile("report-new");
        m_programs->add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(old) + "\nif [ -e " +
                                             outside("go") + " ]; then printf '%s\\0' " +
                                             QFile::encodeName(added) + "; fi");
        m_programs->add(text("updatedb"), waitingUpdater());
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        recorder.start(text("report"));
        QVERIFY(recorder.waitForHits(1));
        QVERIFY(waitForFile("updaters"));
        QCOMPARE(recorder.paths, QStringList{old});
        QCOMPARE(recorder.ends, 0);
        writeOutside("go");
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths, (QStringList{old, added}));
    }

    void aSearchThatWaitsForARefreshCanBeStopped()
    {
        makeDatabase();
        m_place->age(100);
        const QString path = m_place->makeFile("report");
        m_programs->add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(path));
        m_programs->add(text("updatedb"), waitingUpdater());
        auto recorder = std::make_unique<SearchRecorder>();
        recorder->start(text("report"));
        QVERIFY(recorder->waitForHits(1));
        QVERIFY(waitForFile("updaters"));
        recorder->search.StopSearch();
        QElapsedTimer time;
        time.start();
        recorder.reset();
        QVERIFY(time.elapsed() < 2000);
        writeOutside("go");
        QVERIFY(QTest::qWaitFor([&] { return !isRunning(contentOf("updaters")); }, 20000));
    }

    void namesThatStraddleReadsAreWhole()
    {
        makeDatabase();
        const QByteArray path = QFile::encodeName(m_place->makeFile("report in two pieces"));
        // The second piece comes when the first hit has been taken.
        m_programs->add(text("plocate"), "printf '%s\\0%s' '" + path + "' '" + path.left(20) +
                                             "'\nuntil [ -e " + outside("go") +
                                             " ]; do sleep 0.01; done\nprintf '%s\\0' '" +
                                             path.mid(20) + '\'');
        SearchRecorder recorder;
        recorder.start(text("report"));
        QVERIFY(recorder.waitForHits(1));
        writeOutside("go");
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths, (QStringList{QFile::decodeName(path), QFile::decodeName(path)}));
    }

    void whenPlocateFailsTheDirectoriesAreLookedThroughForTheRest()
    {
        makeDatabase();
        const QString first = m_place->makeFile("report1");
        const QString second = m_place->makeFile("report2");
        m_programs->add(text("plocate"),
                        "printf '%s\\0' " + QFile::encodeName(first) + "\necho broken >&2\nexit 1");
        m_programs->add(text("updatedb"),
                        findOutput + ("touch \"$output\"\necho x > " + outside("refreshed")));
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, (QStringList{first, second}));
        QVERIFY(waitForFile("refreshed"));
    }

    void whenPlocateCrashesTheDirectoriesAreLookedThrough()
    {
        makeDatabase();
        m_place->makeFile("report");
        m_programs->add(text("plocate"), "kill -SEGV $$");
        m_programs->add(text("updatedb"), findOutput + QByteArray("touch \"$output\""));
        QCOMPARE(SearchRecorder().namesOf(text("report")), QStringList{text("report")});
    }

    void plocateEndsWithTheSearch_data()
    {
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("stopped") << false;
        QTest::newRow("deleted") << true;
    }
    void plocateEndsWithTheSearch()
    {
        QFETCH(bool, isDeleted);
        makeDatabase();
        const QString path = m_place->makeFile("report");
        m_programs->add(text("plocate"), "echo $$ > " + outside("asked") + "\nprintf '%s\\0' " +
                                             QFile::encodeName(path) + "\nexec sleep 60");
        auto recorder = std::make_unique<SearchRecorder>();
        recorder->start(text("report"));
        QVERIFY(recorder->waitForHits(1));
        QElapsedTimer time;
        time.start();
        recorder->search.StopSearch();
        QVERIFY(time.elapsed() < 100);
        if (isDeleted)
            recorder.reset();
        QVERIFY(QTest::qWaitFor([this] { return !isRunning(contentOf("asked")); }));
        QVERIFY(isDeleted || recorder->ends == 0);
    }

    void withoutItsProgramsTheDirectoriesAreLookedThrough_data()
    {
        QTest::addColumn<QString>("present");
        QTest::newRow("neither") << QString();
        QTest::newRow("plocate alone") << text("plocate");
        QTest::newRow("updatedb alone") << text("updatedb");
    }
    void withoutItsProgramsTheDirectoriesAreLookedThrough()
    {
        QFETCH(QString, present);
        m_place->makeFile("report");
        if (!present.isEmpty())
            m_programs->add(present, "echo unexpected >> " + outside("unexpected"));
        m_programs->hideOthers();
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QCOMPARE(recorder.namesOf(text("report")), QStringList{text("report")});
        QVERIFY(m_place->databases().isEmpty());
    }

    void aDatabaseThatNothingRefreshesAnyMoreIsNotReliedOn()
    {
        makeDatabase();
        m_place->age(100);
        const QString old = m_place->makeFile("report-old");
        const QString added = m_place->makeFile("report-new");
        m_programs->add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(old));
        m_programs->hideOthers();
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, (QStringList{old, added}));
    }

    void whenRefreshesFailNewFilesAreFoundAllTheSame()
    {
        makeDatabase();
        m_place->age(100);
        const QString old = m_place->makeFile("report-old");
        const QString added = m_place->makeFile("report-new");
        m_programs->add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(old));
        m_programs->add(text("updatedb"), "exit 1");
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, (QStringList{old, added}));
    }

    void theUpdatedbOfAnotherPackageIsNotUsed()
    {
        m_programs->add(text("plocate"), "exit 1");
        const QString other = m_programs->add(text("updatedb.mlocate"),
                                              "echo unexpected >> " + outside("unexpected"));
        QVERIFY(QFile::link(other, QFileInfo(other).path() + text("/updatedb")));
        m_programs->add(text("updatedb.plocate"), "echo x > " + outside("updated"));
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(waitForFile("updated"));
    }

    void aDatabaseThatCannotBeWrittenDoesNotHinderTheSearch()
    {
        m_place->makeFile("report");
        const QByteArray cache = outside("cache");
        QFile file(QFile::decodeName(cache));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QTest::ignoreMessage(
            QtWarningMsg,
            qPrintable(
                text("the file search cannot refresh its database of %1").arg(m_place->root())));
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QCOMPARE(recorder.namesOf(text("report")), QStringList{text("report")});
    }

    void aHundredThousandHitsArrive()
    {
        makeDatabase();
        const QByteArray path = QFile::encodeName(m_place->makeFile("report"));
        m_programs->add(text("plocate"), "yes '" + path + "' | head -n 100000 | tr '\\n' '\\0'");
        SearchRecorder recorder;
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths.size(), 100000);
    }
};

HEADLESS_TEST_MAIN(FileSearchProgramsTest)
#include "tst_filesearchprograms.moc"
