#include <memory>

#include "tests/helio/runtime/search/searchprogramstest.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::SearchPrograms;
using testsupport::SearchRecorder;
using testsupport::text;

/// How the file search uses plocate and updatedb, with fakes for both.
class FileSearchProgramsTest : public testsupport::SearchProgramsTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void theKeywordReachesPlocateAsALiteralPattern()
    {
        QVERIFY(m_search->makeDatabase());
        m_search->programs.add(text("plocate"), "printf '%s\\n' \"$LC_ALL\" \"$@\" > " +
                                                    m_search->outside("asked") + "\nexit 1");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("-a *?[b]\\ 'c'")), QStringList());
        const QByteArray database = QFile::encodeName(m_search->place.databases().constFirst());
        QCOMPARE(m_search->contentOf("asked"),
                 "C.UTF-8\n--null\n--basename\n--ignore-case\n--database\n" + database +
                     "\n--\n*-a \\*\\?\\[b\\]\\\\ 'c'*\n");
        recorder.namesOf(text("A"), {}, true);
        QVERIFY(!m_search->contentOf("asked").contains("--ignore-case"));
    }

    void namesThatStraddleReadsAreWhole()
    {
        QVERIFY(m_search->makeDatabase());
        const QByteArray path = QFile::encodeName(m_search->place.makeFile("report in two pieces"));
        // The second piece comes after the first hit has been reported.
        m_search->programs.add(text("plocate"), "printf '%s\\0%s' '" + path + "' '" +
                                                    path.left(20) + "'\n" + m_search->waitForGo() +
                                                    "\nprintf '%s\\0' '" + path.mid(20) + '\'');
        SearchRecorder recorder;
        recorder.start(text("report"));
        QVERIFY(recorder.waitForHits(1));
        m_search->writeOutside("go");
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths, (QStringList{QFile::decodeName(path), QFile::decodeName(path)}));
    }

    void whenPlocateFailsAWalkFindsTheRest()
    {
        QVERIFY(m_search->makeDatabase());
        const QString first = m_search->place.makeFile("report1");
        const QString second = m_search->place.makeFile("report2");
        m_search->programs.add(text("plocate"), "printf '%s\\0' " + QFile::encodeName(first) +
                                                    "\necho broken >&2\nexit 1");
        m_search->programs.add(text("updatedb"),
                               SearchPrograms::findOutput + ("touch \"$output\"\necho x > " +
                                                             m_search->outside("refreshed")));
        SearchRecorder recorder;
        recorder.namesOf(text("report"));
        QCOMPARE(recorder.paths, (QStringList{first, second}));
        QVERIFY(m_search->waitForFile("refreshed"));
    }

    void whenPlocateCrashesAWalkFindsTheFiles()
    {
        QVERIFY(m_search->makeDatabase());
        m_search->place.makeFile("report");
        m_search->programs.add(text("plocate"), "kill -SEGV $$");
        m_search->programs.add(text("updatedb"),
                               SearchPrograms::findOutput + QByteArray("touch \"$output\""));
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
        QVERIFY(m_search->makeDatabase());
        const QString path = m_search->place.makeFile("report");
        m_search->programs.add(text("plocate"), "echo $$ > " + m_search->outside("asked") +
                                                    "\nprintf '%s\\0' " + QFile::encodeName(path) +
                                                    "\nexec sleep 600");
        auto recorder = std::make_unique<SearchRecorder>();
        recorder->start(text("report"));
        QVERIFY(recorder->waitForHits(1));
        recorder->search.StopSearch();
        if (isDeleted)
            recorder.reset();
        QVERIFY(QTest::qWaitFor(
            [this] { return !SearchPrograms::isRunning(m_search->contentOf("asked")); },
            testsupport::longestWaitMs));
        QVERIFY(isDeleted || recorder->ends == 0);
    }

    void withoutItsProgramsAWalkFindsTheFiles_data()
    {
        QTest::addColumn<QString>("present");
        QTest::newRow("neither") << QString();
        QTest::newRow("plocate alone") << text("plocate");
        QTest::newRow("updatedb alone") << text("updatedb");
    }
    void withoutItsProgramsAWalkFindsTheFiles()
    {
        QFETCH(QString, present);
        m_search->place.makeFile("report");
        if (!present.isEmpty())
            m_search->programs.add(present, m_search->unexpected());
        m_search->programs.hideOthers();
        SearchRecorder recorder;
        recorder.search.RunEverythingDaemon();
        QCOMPARE(recorder.namesOf(text("report")), QStringList{text("report")});
        QVERIFY(m_search->place.databases().isEmpty());
    }

    void aHundredThousandHitsArrive()
    {
        QVERIFY(m_search->makeDatabase());
        const QByteArray path = QFile::encodeName(m_search->place.makeFile("report"));
        m_search->programs.add(text("plocate"),
                               "yes '" + path + "' | head -n 100000 | tr '\\n' '\\0'");
        SearchRecorder recorder;
        recorder.start(text("report"));
        QVERIFY(recorder.waitForEnd());
        QCOMPARE(recorder.paths.size(), 100000);
    }
};

HEADLESS_TEST_MAIN(FileSearchProgramsTest)
#include "tst_filesearchprograms.moc"
