#include <QTimer>

#include <memory>

#include <unistd.h>

#include "tests/helio/searchplace.h"
#include "tests/helio/searchrecorder.h"
#include "tests/support/headlesstest.h"

using testsupport::SearchPlace;
using testsupport::SearchRecorder;

namespace {

QStringList list(const char *name)
{
    return {QString::fromUtf8(name)};
}

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

/// The search for files by name, with the real plocate and updatedb.
class FileSearchTest : public QObject
{
    Q_OBJECT

private:
    /// Makes the database of what is there now.
    void refresh()
    {
        KFsSearch search;
        search.RunEverythingDaemon();
        QVERIFY(m_place->waitForDatabase());
    }

    std::unique_ptr<SearchPlace> m_place;

private slots:
    void init() { m_place = std::make_unique<SearchPlace>(); }
    void cleanup() { m_place.reset(); }

    void aFileIsFoundBeforeThereIsADatabase()
    {
        const QString path = m_place->makeFile("folder/report.txt");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")), list("report.txt"));
        QCOMPARE(recorder.paths, QStringList{path});
        QCOMPARE(recorder.keywords, list("report"));
        QVERIFY(m_place->databases().isEmpty());
    }

    void aFreshDatabaseAnswersWithoutLookingThroughTheDirectories()
    {
        m_place->makeFile("report-listed.txt");
        refresh();
        m_place->makeFile("report-unlisted.txt");
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report-listed.txt"));
    }

    void aFileMadeAMinuteAgoIsFound()
    {
        m_place->makeFile("report-old.txt");
        refresh();
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
        refresh();
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
        refresh();
        QVERIFY(QFile::remove(deleted));
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report-kept.txt"));
    }

    void deletedFilesAmongManyOfADirectoryAreNotReported()
    {
        for (int number = 0; number < 200; ++number)
            m_place->makeFile("many/report" + QByteArray::number(number));
        m_place->makeFile("many/report/folder/x");
        refresh();
        for (int number = 100; number < 200; ++number)
            QVERIFY(QFile::remove(m_place->root() + text("/many/report%1").arg(number)));
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")).size(), 101);
        QCOMPARE(recorder.folders, QStringList{m_place->root() + text("/many/report")});
    }

    void aKeywordIsPlainText_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("decoy");
        QTest::addColumn<QString>("keyword");
        const auto row = [](const char *what, const char *name, const char *decoy,
                            const char *keyword) {
            QTest::newRow(what) << QByteArray(name) << QByteArray(decoy) << text(keyword);
        };
        row("blanks", "a b  c.txt", "a-b--c.txt", "b  c");
        row("a leading blank", "a report", "areport", " report");
        row("quotes", "say \"it's\".txt", "say its.txt", "\"it's\"");
        row("a line feed", "one\ntwo.txt", "one two.txt", "e\nt");
        row("an asterisk", "star*file.txt", "star-file.txt", "r*f");
        row("a question mark", "why?.txt", "why!.txt", "y?.");
        row("brackets", "one[1].txt", "one1.txt", "e[1]");
        row("a negated set", "x[!a].txt", "xb.txt", "x[!a]");
        row("a backslash", "back\\slash", "backslash", "k\\s");
        row("a trailing backslash", "back\\", "backx", "back\\");
        row("a leading hyphen", "-rf", "rf", "-rf");
        row("an option", "--help", "help", "--help");
        row("shell characters", "$(touch x);`id`", "touch id", "$(touch x);`id`");
        row("percent signs", "100%.txt", "100.txt", "0%.");
        row("other letters",
            "\xc3\x9c"
            "bersicht \xe6\x8a\xa5\xe5\x91\x8a.txt",
            "bersicht.txt",
            "\xc3\x9c"
            "bersicht \xe6\x8a\xa5");
        row("one letter", "q.dat", "w.dat", "q");
    }
    void aKeywordIsPlainText()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, decoy);
        QFETCH(QString, keyword);
        const QStringList expected{m_place->makeFile(name)};
        m_place->makeFile(decoy);
        SearchRecorder recorder;
        recorder.namesOf(keyword);
        QCOMPARE(recorder.paths, expected);
        refresh();
        m_place->makeFile("unlisted " + name);
        recorder.namesOf(keyword);
        QCOMPARE(recorder.paths, expected);
    }

    void theCaseOfLettersDoesNotMatter_data()
    {
        QTest::addColumn<bool>("withDatabase");
        QTest::newRow("with a database") << true;
        QTest::newRow("without a database") << false;
    }
    void theCaseOfLettersDoesNotMatter()
    {
        QFETCH(bool, withDatabase);
        m_place->makeFile("Report.TXT");
        m_place->makeFile("\xc3\x9c"
                          "BER.txt");
        if (withDatabase)
            refresh();
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("rEPORT.t")), list("Report.TXT"));
        QCOMPARE(recorder.namesOf(text("\xc3\xbc"
                                       "ber")),
                 list("\xc3\x9c"
                      "BER.txt"));
        QCOMPARE(recorder.namesOf(text("Report"), {}, true), list("Report.TXT"));
        QCOMPARE(recorder.namesOf(text("report"), {}, true), QStringList());
    }

    void lettersHaveCasesInAnyLocale()
    {
        m_place->makeFile("\xc3\x9c"
                          "BER.txt");
        refresh();
        qputenv("LC_ALL", "C");
        const QStringList names = SearchRecorder().namesOf(text("\xc3\xbc"
                                                                "ber"));
        qunsetenv("LC_ALL");
        QCOMPARE(names, list("\xc3\x9c"
                             "BER.txt"));
    }

    void aNameThatIsNotUtf8IsFoundByTheRestOfIt()
    {
        m_place->makeFile("bad\xff"
                          "report.txt");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")), list("bad\xef\xbf\xbdreport.txt"));
        refresh();
        QCOMPARE(recorder.namesOf(text("report")), list("bad\xef\xbf\xbdreport.txt"));
    }

    void onlyTheLastPartOfAPathIsSearched()
    {
        m_place->makeFile("report/other.txt");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")), list("report"));
        QCOMPARE(recorder.folders, recorder.paths);
        refresh();
        QCOMPARE(recorder.namesOf(text("report")), list("report"));
        QCOMPARE(recorder.folders, recorder.paths);
    }

    void aKeywordThatNoNameCanContainEndsTheSearchWithoutHits_data()
    {
        QTest::addColumn<QString>("keyword");
        QTest::newRow("a slash") << text("report/other");
        QTest::newRow("a null character") << QString(QChar::Null);
        QTest::newRow("longer than any name") << QString(200000, QLatin1Char('x'));
        QTest::newRow("nothing") << QString();
    }
    void aKeywordThatNoNameCanContainEndsTheSearchWithoutHits()
    {
        QFETCH(QString, keyword);
        m_place->makeFile("report/other.txt");
        refresh();
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(keyword), QStringList());
        QCOMPARE(recorder.ends, 1);
    }

    void aDirectoryLimitsTheSearch()
    {
        m_place->makeFile("in/deep/report1");
        m_place->makeFile("in-between/report2");
        m_place->makeFile("report3");
        SearchRecorder recorder;
        const QString directory = m_place->root() + text("/in");
        QCOMPARE(recorder.namesOf(text("report"), directory), list("report1"));
        refresh();
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
        QVERIFY(QTest::qWaitFor([this] { return m_place->databases().size() == 2; }, 20000));
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
        refresh();
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
        refresh();
        QCOMPARE(recorder.namesOf(text("report")), expected);
        QCOMPARE(recorder.folders, QStringList());
    }

    void aLinkToTheRootLeadsToTheSameDatabase()
    {
        const QString path = m_place->makeFile("report");
        refresh();
        const QString link = m_place->outside(text("link"));
        QVERIFY(QFile::link(m_place->root(), link));
        qputenv("HELIO_SEARCH_ROOTS", QFile::encodeName(link));
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, QStringList{path});
        QCOMPARE(m_place->databases().size(), 1);
    }

    void theDatabaseIsReadableByTheUserAlone()
    {
        refresh();
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

    void theDatabasesThemselvesAreNotFound()
    {
        qputenv("XDG_CACHE_HOME", QFile::encodeName(m_place->root()) + "/cache");
        refresh();
        const QString name = QFileInfo(m_place->databases().constFirst()).completeBaseName();
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(name), QStringList());
        m_place->age(100);
        QCOMPARE(recorder.namesOf(name), QStringList());
        QCOMPARE(recorder.namesOf(name, m_place->root()), QStringList());
    }

    void aCacheDirectoryMayHaveAnyName()
    {
        m_place->makeFile("report-listed");
        qputenv("XDG_CACHE_HOME",
                QFile::encodeName(m_place->outside(text("a b:c\\d'\"e\n*\xc3\xa4"))));
        refresh();
        m_place->makeFile("report-unlisted");
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report-listed"));
    }

    void aDamagedDatabaseIsReplacedAndTheDirectoriesAreLookedThrough()
    {
        m_place->makeFile("report");
        refresh();
        const QString database = m_place->databases().constFirst();
        QFile damaged(database);
        QVERIFY(damaged.open(QIODevice::WriteOnly | QIODevice::Truncate));
        damaged.write("\0plocate", 8);
        damaged.write(QByteArray(500, '\x7f'));
        damaged.close();
        QCOMPARE(SearchRecorder().namesOf(text("report")), list("report"));
        QVERIFY(QTest::qWaitFor([&] { return QFileInfo(database).size() != 508; }, 20000));
    }

    void otherDatabasesOfTheEnvironmentAreNotAsked()
    {
        m_place->makeFile("report");
        refresh();
        const QString other = m_place->outside(text("other.db"));
        QVERIFY(QFile::copy(m_place->databases().constFirst(), other));
        qputenv("LOCATE_PATH", QFile::encodeName(other));
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        qunsetenv("LOCATE_PATH");
        QCOMPARE(recorder.paths.size(), 1);
    }

    void stoppingReportsNothingMore()
    {
        for (int number = 0; number < 500; ++number)
            m_place->makeFile("report" + QByteArray::number(number));
        m_place->makeFile("other");
        refresh();
        SearchRecorder recorder;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search,
                         [&recorder] {
                             if (recorder.paths.size() == 3)
                                 recorder.search.StopSearch();
                         });
        recorder.start(text("report"));
        QVERIFY(recorder.waitForHits(3));
        recorder.search.DoSearchFileName(text("other"), {}, false);
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.ends, 1);
        QCOMPARE(recorder.paths.size(), 4);
        QVERIFY(recorder.paths.constLast().endsWith(text("/other")));
    }

    void aSearchEndsTheOneBeforeIt()
    {
        m_place->makeFile("report1");
        m_place->makeFile("other");
        refresh();
        SearchRecorder recorder;
        recorder.start(text("report1"));
        QCOMPARE(recorder.namesOf(text("other")), list("other"));
        QCOMPARE(recorder.keywords, list("other"));
        QCOMPARE(recorder.ends, 1);
    }

    void aHitMayStartTheNextSearch()
    {
        m_place->makeFile("report1");
        m_place->makeFile("report2");
        m_place->makeFile("other");
        refresh();
        SearchRecorder recorder;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search,
                         [&recorder](const QString &, const QString &keyword) {
                             if (keyword == text("report"))
                                 recorder.search.DoSearchFileName(text("other"), {}, false);
                         });
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.keywords, (QStringList{text("report"), text("other")}));
        QCOMPARE(recorder.ends, 1);
    }

    void anEventLoopInsideAHitKeepsTheOrder()
    {
        for (int number = 0; number < 20; ++number)
            m_place->makeFile("report" + QByteArray::number(number));
        refresh();
        SearchRecorder recorder;
        int endsInside = -1;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search,
                         [&recorder, &endsInside] {
                             if (endsInside < 0) {
                                 endsInside = 0;
                                 recorder.waitForEnd();
                                 endsInside = recorder.ends;
                             }
                         });
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QVERIFY(QTest::qWaitFor([&] { return endsInside > 0; }));
        QCOMPARE(recorder.ends, 1);
        QCOMPARE(recorder.paths.size(), 20);
    }

    void theSearchMayBeDeletedInsideAHit()
    {
        m_place->makeFile("report1");
        m_place->makeFile("report2");
        auto *search = new KFsSearch;
        int hits = 0;
        QObject::connect(search, &KFsSearch::SigGetContentHasKey, search, [&] {
            ++hits;
            delete search;
        });
        search->DoSearchFileName(text("report"), {}, false);
        QVERIFY(QTest::qWaitFor([&] { return hits > 0; }));
        QCoreApplication::processEvents();
        QCOMPARE(hits, 1);
    }

    void theEventLoopGoesOnBetweenHits()
    {
        for (int number = 0; number < 200; ++number)
            m_place->makeFile("report" + QByteArray::number(number));
        refresh();
        SearchRecorder recorder;
        QObject::connect(&recorder.search, &KFsSearch::SigGetContentHasKey, &recorder.search, [] {
            QElapsedTimer busy;
            busy.start();
            while (!busy.hasExpired(1)) {
            }
        });
        int turns = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
            if (!recorder.paths.isEmpty() && recorder.ends == 0)
                ++turns;
        });
        timer.start(0);
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths.size(), 200);
        QVERIFY2(turns >= 15, qPrintable(QString::number(turns)));
    }

    void nothingIsMadeWithoutACommand()
    {
        const KFsSearch search;
        QVERIFY(!QFile::exists(m_place->databaseDirectory()));
    }
};

HEADLESS_TEST_MAIN(FileSearchTest)
#include "tst_filesearch.moc"
