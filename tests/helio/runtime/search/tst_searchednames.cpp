#include "tests/helio/runtime/search/searchplacetest.h"
#include "tests/helio/runtime/search/searchrecorder.h"
#include "tests/support/shell/headlesstest.h"

using testsupport::list;
using testsupport::SearchRecorder;
using testsupport::text;

/// Which names a keyword matches, with the real plocate and updatedb.
class SearchedNamesTest : public testsupport::SearchPlaceTest
{
    Q_OBJECT

private slots:
    void init() { setUp(); }

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
        row("characters special to sh", "$(touch x);`id`", "touch id", "$(touch x);`id`");
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
        QVERIFY(m_place->refresh());
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
            QVERIFY(m_place->refresh());
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
        QVERIFY(m_place->refresh());
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
        QVERIFY(m_place->refresh());
        QCOMPARE(recorder.namesOf(text("report")), list("bad\xef\xbf\xbdreport.txt"));
    }

    void onlyTheLastPartOfAPathIsSearched()
    {
        m_place->makeFile("report/other.txt");
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(text("report")), list("report"));
        QCOMPARE(recorder.folders, recorder.paths);
        QVERIFY(m_place->refresh());
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
        QVERIFY(m_place->refresh());
        SearchRecorder recorder;
        QCOMPARE(recorder.namesOf(keyword), QStringList());
        QCOMPARE(recorder.ends, 1);
    }
};

HEADLESS_TEST_MAIN(SearchedNamesTest)
#include "tst_searchednames.moc"
