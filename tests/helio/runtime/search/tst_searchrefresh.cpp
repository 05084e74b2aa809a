#include <memory>

#include "tests/helio/runtime/search/searchprogramstest.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/patience.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::readFile;
using testsupport::SearchPrograms;
using testsupport::SearchRecorder;
using testsupport::text;

namespace {

uint threadCount()
{
    return QDir(text("/proc/self/task")).count();
}

} // namespace

/// Refreshes of the file search's database, with fake plocate and updatedb.
class SearchRefreshTest : public testsupport::SearchProgramsTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theSystemsSettingsOfUpdatedbAreOverridden()
    {
        m_search->programs.add(text("plocate"), "exit 1");
        m_search->programs.add(text("updatedb"),
                               "printf '%s\\n' \"$@\" > " + m_search->outside("words"));
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(m_search->waitForFile("words"));
        const QList<QByteArray> words = m_search->contentOf("words").split('\n');
        const auto valueOf = [&words](const char *option) {
            return words.value(words.indexOf(option) + 1);
        };
        QCOMPARE(valueOf("--database-root"), QFile::encodeName(m_search->place.root()));
        QCOMPARE(valueOf("--require-visibility"), QByteArray("no"));
        QCOMPARE(valueOf("--prune-bind-mounts"), QByteArray("no"));
        QCOMPARE(valueOf("--prunenames"), QByteArray());
        QCOMPARE(valueOf("--prunepaths"), QByteArray());
        QCOMPARE(valueOf("--add-single-prunepath"),
                 QFile::encodeName(m_search->place.databaseDirectory()));
        const QList<QByteArray> fileSystems = valueOf("--prunefs").split(' ');
        for (const char *type : {"proc", "sysfs", "nfs", "cifs", "fuse.sshfs"})
            QVERIFY2(fileSystems.contains(type), type);
        for (const char *type : {"tmpfs", "ext4", "overlay", "fuse.gocryptfs", "ecryptfs"})
            QVERIFY2(!fileSystems.contains(type), type);
    }

    void aRefreshRunsDetachedAtIdlePriority()
    {
        m_search->place.useRealPriorities();
        m_search->programs.add(text("plocate"), "exit 1");
        m_search->programs.add(text("updatedb"), "{ nice; ionice -p $$; ps -o sid= -p $$; } > " +
                                                     m_search->outside("new") + "\nmv " +
                                                     m_search->outside("new") + ' ' +
                                                     m_search->outside("priority"));
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(m_search->waitForFile("priority"));
        const QList<QByteArray> lines = m_search->contentOf("priority").split('\n');
        QCOMPARE(lines.value(0), QByteArray("19"));
        QCOMPARE(lines.value(1), QByteArray("idle"));
        QVERIFY(lines.value(2).trimmed() != QByteArray::number(::getsid(0)));
    }

    void aRefreshStartsFromTheCurrentDatabase()
    {
        QVERIFY(m_search->makeDatabase());
        m_search->programs.add(text("plocate"), "exit 1");
        m_search->programs.add(text("updatedb"),
                               SearchPrograms::findOutput +
                                   ("cat \"$output\" > " + m_search->outside("found") +
                                    "\nrm \"$output\"\necho newer > \"$output\""));
        const QString database = m_search->place.databases().constFirst();
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(QTest::qWaitFor([&] { return readFile(database) == "newer\n"; },
                                testsupport::longestWaitMs));
        QCOMPARE(m_search->contentOf("found"), QByteArray("database\n"));
    }

    void aFailedRefreshKeepsTheDatabaseAndIsCleanedUp()
    {
        QVERIFY(m_search->makeDatabase());
        m_search->programs.add(text("plocate"), "exit 1");
        m_search->programs.add(text("updatedb"), SearchPrograms::findOutput +
                                                     ("echo rubbish > \"$output.XYZ\"\necho x > " +
                                                      m_search->outside("ran") + "\nexit 1"));
        const QString database = m_search->place.databases().constFirst();
        const QDir directory(m_search->place.databaseDirectory());
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(m_search->waitForFile("ran"));
        QVERIFY(QTest::qWaitFor([&] { return directory.entryList({text("*.new")}).isEmpty(); },
                                testsupport::longestWaitMs));
        QCOMPARE(readFile(database), QByteArray("database\n"));
        m_search->programs.add(text("updatedb"),
                               SearchPrograms::findOutput + QByteArray("echo newer > \"$output\""));
        SearchRecorder().namesOf(text("x"));
        QCOMPARE(readFile(database), QByteArray("newer\n"));
        QCOMPARE(directory.entryList(QDir::Files).filter(text(".new")), QStringList());
    }

    void oneRefreshRunsAtATime()
    {
        m_search->programs.add(text("plocate"), "exit 1");
        m_search->programs.add(text("updatedb"), m_search->waitingUpdater());
        KFsSearch one;
        KFsSearch other;
        one.RunEverythingDaemon();
        QVERIFY(m_search->waitForFile("updaters"));
        one.RunEverythingDaemon();
        other.RunEverythingDaemon();
        SearchRecorder().namesOf(text("x"));
        m_search->writeOutside("go");
        QVERIFY(QTest::qWaitFor([this] { return !m_search->place.databases().isEmpty(); },
                                testsupport::longestWaitMs));
        QCOMPARE(m_search->contentOf("updaters").count('\n'), 1);
    }

    void aRefreshOutlivesTheSearchThatStartedIt()
    {
        m_search->programs.add(text("plocate"), "exit 1");
        m_search->programs.add(text("updatedb"), m_search->waitingUpdater());
        {
            KFsSearch search;
            search.RunEverythingDaemon();
            QVERIFY(m_search->waitForFile("updaters"));
        }
        QVERIFY(m_search->place.databases().isEmpty());
        m_search->writeOutside("go");
        QVERIFY(QTest::qWaitFor([this] { return !m_search->place.databases().isEmpty(); },
                                testsupport::longestWaitMs));
    }

    void hitsDoNotWaitForARefreshButTheEndDoes()
    {
        QVERIFY(m_search->makeDatabase());
        const QString old = m_search->place.makeFile("report-old");
        const QString added = m_search->place.makeFile("report-new");
        m_search->programs.add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(old) +
                                                    "\nif [ -e " + m_search->outside("go") +
                                                    " ]; then printf '%s\\0' " +
                                                    QFile::encodeName(added) + "; fi");
        m_search->programs.add(text("updatedb"), m_search->waitingUpdater());
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        recorder.start(text("report"));
        QVERIFY(recorder.waitForHits(1));
        QVERIFY(m_search->waitForFile("updaters"));
        QCOMPARE(recorder.paths, QStringList{old});
        QCOMPARE(recorder.ends, 0);
        m_search->writeOutside("go");
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths, (QStringList{old, added}));
    }

    void aSearchThatWaitsForARefreshCanBeStopped()
    {
        QVERIFY(m_search->makeDatabase());
        m_search->place.age(100);
        const QString path = m_search->place.makeFile("report");
        m_search->programs.add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(path));
        m_search->programs.add(text("updatedb"), m_search->waitingUpdater());
        const uint threads = threadCount();
        auto recorder = std::make_unique<SearchRecorder>();
        recorder->start(text("report"));
        QVERIFY(recorder->waitForHits(1));
        QVERIFY(m_search->waitForFile("updaters"));
        recorder->search.StopSearch();
        recorder.reset();
        // A search that still waited for the refresh would have kept its thread.
        QVERIFY(QTest::qWaitFor([threads] { return threadCount() == threads; },
                                testsupport::longestWaitMs));
        m_search->writeOutside("go");
        QVERIFY(QTest::qWaitFor(
            [&] { return !SearchPrograms::isRunning(m_search->contentOf("updaters")); },
            testsupport::longestWaitMs));
    }

    void newFilesAreFoundThoughNoRefreshSucceeds_data()
    {
        QTest::addColumn<bool>("hasUpdater");
        QTest::newRow("updatedb is gone") << false;
        QTest::newRow("updatedb fails") << true;
    }
    void newFilesAreFoundThoughNoRefreshSucceeds()
    {
        QFETCH(bool, hasUpdater);
        QVERIFY(m_search->makeDatabase());
        m_search->place.age(100);
        const QString old = m_search->place.makeFile("report-old");
        const QString added = m_search->place.makeFile("report-new");
        m_search->programs.add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(old));
        if (hasUpdater)
            m_search->programs.add(text("updatedb"), "exit 1");
        else
            m_search->programs.hideOthers();
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, (QStringList{old, added}));
    }

    void theUpdatedbOfAnotherPackageIsNotUsed()
    {
        m_search->programs.add(text("plocate"), "exit 1");
        const QString other =
            m_search->programs.add(text("updatedb.mlocate"), m_search->unexpected());
        QVERIFY(QFile::link(other, QFileInfo(other).path() + text("/updatedb")));
        m_search->programs.add(text("updatedb.plocate"),
                               "echo x > " + m_search->outside("updated"));
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(m_search->waitForFile("updated"));
    }

    void aSearchWorksWithoutAWritableDatabase()
    {
        m_search->place.makeFile("report");
        const QByteArray cache = m_search->outside("cache");
        QFile file(QFile::decodeName(cache));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QTest::ignoreMessage(QtWarningMsg,
                             qPrintable(text("the file search cannot refresh its database of %1")
                                            .arg(m_search->place.root())));
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QCOMPARE(recorder.namesOf(text("report")), QStringList{text("report")});
    }
};

HEADLESS_TEST_MAIN(SearchRefreshTest)
#include "tst_searchrefresh.moc"
