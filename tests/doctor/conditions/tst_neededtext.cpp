#include <QTest>

#include "doctor/conditions/neededtext.h"
#include "doctor/conditions/pattern.h"

class NeededTextTest : public QObject
{
    Q_OBJECT

private slots:
    void theLongestTextOutsideGroupsIsNeeded_data()
    {
        QTest::addColumn<QString>("pattern");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *pattern, const char *text) {
            QTest::newRow(pattern) << QString::fromUtf8(pattern) << QString::fromUtf8(text);
        };
        row("^name=(.*)$", "name=");
        row("\\['List'\\]/Items\"><node name=\"(file:[^\"]*)\"", "['List']/Items\"><node name=\"");
        row("^\\s*(?:export\\s+)?NAME(?:=|\\s+DEFAULT=)x", "NAME");
        row("abcd?", "abc");
        row("abcd*efg", "abc");
        row("abcd+", "abcd");
        row("abcd{0,3}x", "abc");
        row("(?=.*long text)abc", "abc");
        row("[]abc]xyz", "xyz");
        row("[^\\]abc]xyz", "xyz");
        row("\\.deb\\b", ".deb");
        row("füllen", "llen");
        // Nothing is known for certain.
        row("one|three", "");
        row("(?i)name", "");
        row("(?<x>a)name", "");
        row("\\x41name", "");
        row("\\Qna.me\\E", "");
        row("na{|}me", "");
        row("[[:alpha:]name]", "");
        row("(one", "");
        row("name\\", "");
        row("ab", "");
    }

    void theLongestTextOutsideGroupsIsNeeded()
    {
        QFETCH(QString, pattern);
        QTEST(doctor::NeededText(pattern).longest(), "text");
    }

    void groupsAtTheTopMayHaveAlternatives()
    {
        const doctor::Pattern pattern(QStringLiteral("(a|b)name"));
        QCOMPARE(pattern.neededText(), QStringLiteral("name"));
        QVERIFY(pattern.match(QStringLiteral("bname")).hasMatched);
    }
};

QTEST_GUILESS_MAIN(NeededTextTest)
#include "tst_neededtext.moc"
