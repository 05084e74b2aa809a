#include "tests/helio/runtime/search/searchplacetest.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::list;
using testsupport::SearchRecorder;
using testsupport::text;

/// The file search and its database, with the real plocate and updatedb.
class FileSearchTest : public testsupport::SearchPlaceTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

    void aFileIsFoundBeforeThereIsADatabase()
    {
        const QString path = m_place->makeFile("folder/report.txt");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")), list("report.txt"));
        QCOMPARE(recorder.paths, QStringList{path});
        QCOMPARE(recorder.keywords, list("report"));
        QVERIFY(m_place->databases().isEmpty());
    }

    void aFreshDatabaseAnswersWithoutAWalk()
    {
        m_place->makeFile("report-listed.txt");
        QVERIFY(m_place->refresh());
        m_place->makeFile("report-unlisted.txt");
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report-listed.txt"));
    }

    void aFileMadeAMinuteAgoIsFound()
    {
        m_place->makeFile("report-old.txt");
        QVERIFY(m_place->refresh());
        m_place->age(60);
        m_place->makeFile("report-new.txt");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")),
                 (QStringList{text("report-new.txt"), text("report-old.txt")}));
        QCOMPARE(recorder.ends, 1);
    }

    void whatARefreshAddsFollowsBeforeTheEnd()
    {
        m_place->makeFile("report-old.txt");
        QVERIFY(m_place->refresh());
        m_place->makeFile("report-new.txt");
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QCOMPARE(recorder.namesOf(text("report")),
                 (QStringList{text("report-new.txt"), text("report-old.txt")}));
    }

    void aDeletedFileIsNotReported()
    {
        const QString deleted = m_place->makeFile("report-deleted.txt");
        m_place->makeFile("report-kept.txt");
        QVERIFY(m_place->refresh());
        QVERIFY(QFile::remove(deleted));
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report-kept.txt"));
    }

    void deletedFilesAmongManyOfADirectoryAreNotReported()
    {
        for (int number = 0; number < 200; ++number)
            m_place->makeFile("many/report" + QByteArray::number(number));
        m_place->makeFile("many/report/folder/x");
        QVERIFY(m_place->refresh());
        for (int number = 100; number < 200; ++number)
            QVERIFY(QFile::remove(m_place->root() + text("/many/report%1").arg(number)));
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")).size(), 101);
        QCOMPARE(recorder.folders, QStringList{m_place->root() + text("/many/report")});
    }

    void theDatabaseIsReadableByTheUserAlone()
    {
        QVERIFY(m_place->refresh());
        struct stat status;
        QCOMPARE(::stat(QFile::encodeName(m_place->databaseDirectory()).constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777u, 0700u);
        const QFileInfoList files =
            QDir(m_place->databaseDirectory()).entryInfoList(QDir::Files | QDir::Hidden);
        QVERIFY(files.size() >= 2);
        for (const QFileInfo &file : files) {
            QCOMPARE(::stat(QFile::encodeName(file.filePath()).constData(), &status), 0);
            QCOMPARE(status.st_mode & 07777u, 0600u);
        }
    }

    void aCacheDirectoryMayHaveAnyName()
    {
        m_place->makeFile("report-listed");
        qputenv("XDG_CACHE_HOME",
                QFile::encodeName(m_place->outside(text("a b:c\\d'\"e\n*\xc3\xa4"))));
        QVERIFY(m_place->refresh());
        m_place->makeFile("report-unlisted");
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report-listed"));
    }

    void aDamagedDatabaseIsReplacedAfterAWalk()
    {
        m_place->makeFile("report");
        QVERIFY(m_place->refresh());
        const QString database = m_place->databases().constFirst();
        QFile damaged(database);
        QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
        damaged.write("\0plocate", 8);
        damaged.write(QByteArray(500, '\x7f'));
        damaged.close();
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report"));
        QVERIFY(QTest::qWaitFor([&] { return QFileInfo(database).size() != 508; },
                                testsupport::longestWaitMs));
    }

    void otherDatabasesOfTheEnvironmentAreNotAsked()
    {
        m_place->makeFile("report");
        QVERIFY(m_place->refresh());
        const QString other = m_place->outside(text("other.db"));
        QVERIFY(QFile::copy(m_place->databases().constFirst(), other));
        qputenv("LOCATE_PATH", QFile::encodeName(other));
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        qunsetenv("LOCATE_PATH");
        QCOMPARE(recorder.paths.size(), 1);
    }

    void nothingIsMadeWithoutACommand()
    {
        const KFsSearch search;
        QVERIFY(!QFile::exists(m_place->databaseDirectory()));
    }
};

HEADLESS_TEST_MAIN(FileSearchTest)
#include "tst_filesearch.moc"
