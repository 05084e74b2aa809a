#include "tests/helio/runtime/search/searchplacetest.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::list;
using testsupport::SearchRecorder;
using testsupport::text;

/// Where the file search looks, with the real plocate and updatedb.
class SearchedPlacesTest : public testsupport::SearchPlaceTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

    void aDirectoryLimitsTheSearch()
    {
        m_place->makeFile("in/deep/report1");
        m_place->makeFile("in-between/report2");
        m_place->makeFile("report3");
        SearchRecorder recorder;
        const QString directory = m_place->root() + text("/in");
        QCOMPARE(recorder.namesOf(text("report"), directory), list("report1"));
        QVERIFY(m_place->refresh());
        QCOMPARE(recorder.namesOf(text("report"), directory + text("/")), list("report1"));
        QCOMPARE(recorder.namesOf(text("report"), m_place->outside(text("missing"))),
                 QStringList());
    }

    void aDirectoryOutsideOfTheRootsIsSearchedToo()
    {
        QDir().mkpath(m_place->outside(text("elsewhere/report")));
        QCOMPARE(SearchRecorder().namesOf(text("report"), m_place->outside(text("elsewhere"))),
                 list("report"));
    }

    void eachRootIsSearchedOnce()
    {
        m_place->makeFile("one/report1");
        m_place->makeFile("two/inner/report2");
        m_place->makeFile("three/report3");
        const QByteArray root = QFile::encodeName(m_place->root());
        qputenv("HELIO_SEARCH_ROOTS", root + "/one, " + root + "/two," + root + "/two/inner," +
                                          root + "/two,relative," + root + "/missing");
        const QStringList expected{text("report1"), text("report2")};
        QCOMPARE(SearchRecorder().namesOf(text("report")), expected);
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QVERIFY(QTest::qWaitFor([this] { return m_place->databases().size() == 2; },
                                testsupport::longestWaitMs));
        QCOMPARE(recorder.namesOf(text("report")), expected);
    }

    void theUsersHomeIsSearchedByDefault()
    {
        qunsetenv("HELIO_SEARCH_ROOTS");
        const QString path =
            testsupport::PrivateHome::current().writeFile(text("at-home.txt"), "x");
        SearchRecorder recorder;
        recorder.namesOf(text("at-home"));
        QCOMPARE(recorder.paths, QStringList{path});
    }

    void versionControlFoldersAreSearched()
    {
        for (const char *folder : {".git", ".hg", ".svn", ".bzr", "CVS"})
            m_place->makeFile(QByteArray(folder) + "/report");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")).size(), 5);
        QVERIFY(m_place->refresh());
        QCOMPARE(recorder.namesOf(text("report")).size(), 5);
    }

    void linksAreReportedButNotFollowed()
    {
        m_place->makeFile("folder/report1");
        const QString link = m_place->root() + text("/report-link");
        QVERIFY(QFile::link(m_place->root() + text("/folder"), link));
        SearchRecorder recorder;
        const QStringList expected{text("report-link"), text("report1")};
        QCOMPARE(recorder.namesOf(text("report")), expected);
        QCOMPARE(recorder.folders, QStringList());
        QVERIFY(m_place->refresh());
        QCOMPARE(recorder.namesOf(text("report")), expected);
        QCOMPARE(recorder.folders, QStringList());
    }

    void aLinkToTheRootLeadsToTheSameDatabase()
    {
        const QString path = m_place->makeFile("report");
        QVERIFY(m_place->refresh());
        const QString link = m_place->outside(text("link"));
        QVERIFY(QFile::link(m_place->root(), link));
        qputenv("HELIO_SEARCH_ROOTS", QFile::encodeName(link));
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, QStringList{path});
        QCOMPARE(m_place->databases().size(), 1);
    }

    void theDatabasesThemselvesAreNotFound()
    {
        qputenv("XDG_CACHE_HOME", QFile::encodeName(m_place->root()) + "/cache");
        QVERIFY(m_place->refresh());
        const QString name = QFileInfo(m_place->databases().constFirst()).completeBaseName();
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(name), QStringList());
        m_place->age(100);
        QCOMPARE(recorder.namesOf(name), QStringList());
        QCOMPARE(recorder.namesOf(name, m_place->root()), QStringList());
    }
};

HEADLESS_TEST_MAIN(SearchedPlacesTest)
#include "tst_searchedplaces.moc"
