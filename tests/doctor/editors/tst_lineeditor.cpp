#include <QTest>

#include "doctor/editors/lineeditor.h"
#include "tests/doctor/editors/generated.h"

using doctor::LineQuery;

namespace {

LineQuery whole(const QString &text)
{
    return {LineQuery::Kind::Whole, text};
}

LineQuery pattern(const QString &text)
{
    return {LineQuery::Kind::Pattern, text};
}

QByteArray changed(const doctor::EditedContent &edited)
{
    return edited.content.value_or("refused: " + edited.problem.toUtf8());
}

int lineOf(const QByteArray &content, const LineQuery &query)
{
    const auto found = doctor::findLine(content, query);
    return found.line ? found.line->line : 0;
}

} // namespace

class TestLineEditor : public QObject
{
    Q_OBJECT

private slots:
    void findsTheFirstLineThatFits();
    void readsLongLinesAsShortOnes();
    void changesExactlyOneLine_data();
    void changesExactlyOneLine();
    void changesOneLineOfMany();
    void leavesContentWithoutTheLine();
    void refusesBrokenQueries_data();
    void refusesBrokenQueries();
    void refusesMoreThanOneLine();
    void givesUpPatternsThatBacktrackForEver_data();
    void givesUpPatternsThatBacktrackForEver();
    void keepsItsLimitsAgainstThePattern();
};

void TestLineEditor::findsTheFirstLineThatFits()
{
    const QByteArray content("\xef\xbb\xbf# a\r\nkey = 1\nkey = \xe4\xb8\xad\n\nlast");
    QCOMPARE(lineOf(content, whole(QStringLiteral("# a"))), 1);
    QCOMPARE(lineOf(content, whole(QStringLiteral("key"))), 0);
    QCOMPARE(lineOf(content, whole(QString())), 4);
    QCOMPARE(lineOf(content, whole(QStringLiteral("last"))), 5);
    QCOMPARE(lineOf(content, {LineQuery::Kind::Part, QStringLiteral("= 中")}), 3);
    QCOMPARE(lineOf(content, pattern(QStringLiteral("^# a$"))), 1);
    QCOMPARE(lineOf(content, pattern(QStringLiteral("^key *= (?!1)"))), 3);
    QCOMPARE(lineOf(content, pattern(QStringLiteral("^$"))), 4);
    QCOMPARE(lineOf(content, pattern(QStringLiteral("KEY"))), 0);
    QCOMPARE(lineOf(content, pattern(QStringLiteral("(?i)KEY"))), 2);
    QCOMPARE(lineOf({}, pattern(QStringLiteral("^$"))), 0);
    const auto found = doctor::findLine(content, pattern(QStringLiteral("中$")));
    QCOMPARE(found.line->value, QStringLiteral("key = 中"));
    QVERIFY(found.problem.isEmpty());
    QCOMPARE(lineOf(QByteArray("a\0b\n", 4), pattern(QStringLiteral("b$"))), 1);
}

void TestLineEditor::readsLongLinesAsShortOnes()
{
    for (const int length : {10, 255, 256, 257, 5000}) {
        const QByteArray start = "first\n" + QByteArray(length, 'a');
        QCOMPARE(lineOf(start + "bc\n", pattern(QStringLiteral("abc$"))), 2);
        QCOMPARE(lineOf(start + "bc\n", pattern(QStringLiteral("^a+bc$"))), 2);
        QCOMPARE(lineOf(start + "bc\n", pattern(QStringLiteral("(?<=ab)c"))), 2);
        QCOMPARE(lineOf(start + "\xf0\x9f\x99\x82\n", pattern(QStringLiteral("[🙂]$"))), 2);
        QCOMPARE(lineOf(start + "\n", pattern(QStringLiteral("^a{10}b"))), 0);
        QCOMPARE(lineOf(start + "\n", pattern(QStringLiteral("$"))), 1);
    }
}

void TestLineEditor::changesExactlyOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("replaced");
    QTest::addColumn<QByteArray>("removed");
    const auto row = [](const char *name, const QByteArray &content, const QByteArray &replaced,
                        const QByteArray &removed) {
        QTest::newRow(name) << content << replaced << removed;
    };
    row("the first of two", "a\nx\nb\nx\n", "a\nnew\nb\nx\n", "a\nb\nx\n");
    row("a line end of DOS", "a\r\nx\r\nb\n", "a\r\nnew\r\nb\n", "a\r\nb\n");
    row("a last line without end", "a\nx", "a\nnew", "a\n");
    row("an only line", "x", "new", "");
    row("behind a mark", "\xef\xbb\xbfx\n", "\xef\xbb\xbfnew\n", "\xef\xbb\xbf");
    row("bytes that are not UTF-8", "\xff\nx\n\0z", "\xff\nnew\n", "\xff\n");
    row("a return is part of a line", "a\rx\nx\n", "a\rx\nnew\n", "a\rx\n");
}

void TestLineEditor::changesExactlyOneLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, replaced);
    QFETCH(QByteArray, removed);
    for (const LineQuery &query : {whole(QStringLiteral("x")), pattern(QStringLiteral("^x$"))}) {
        QCOMPARE(changed(doctor::replaceLine(content, query, QStringLiteral("new"))), replaced);
        QCOMPARE(changed(doctor::removeLine(content, query)), removed);
    }
}

void TestLineEditor::changesOneLineOfMany()
{
    generated::Chooser choose(1);
    for (int i = 0; i < 3000; ++i) {
        QByteArrayList texts;
        QByteArrayList lines;
        for (int count = 1 + choose.below(12); count > 0; --count) {
            texts.append(choose.of({"a", "b", "", " a", "k=v", "\xff", "\xe4\xb8\xad", "a\rb"}));
            lines.append(texts.last() + choose.of({"\n", "\n", "\r\n"}));
        }
        const QByteArray text = choose.of({"a", "b", "", "k=v", "\xe4\xb8\xad"});
        const LineQuery query = choose.percent(50)
                                    ? whole(QString::fromUtf8(text))
                                    : pattern(QStringLiteral("^%1$").arg(QString::fromUtf8(text)));
        const QByteArray content = lines.join();
        const int first = texts.indexOf(text);
        QCOMPARE(lineOf(content, query), first + 1);
        if (first >= 0)
            lines.removeAt(first);
        QCOMPARE(changed(doctor::removeLine(content, query)), lines.join());
    }
}

void TestLineEditor::leavesContentWithoutTheLine()
{
    QCOMPARE(changed(doctor::removeLine("a\n", whole(QStringLiteral("b")))), QByteArray("a\n"));
    QCOMPARE(changed(doctor::replaceLine("a\n", whole(QStringLiteral("b")), QStringLiteral("c"))),
             QByteArray("a\n"));
}

void TestLineEditor::refusesBrokenQueries_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("problem");
    QTest::newRow("an open bracket") << "a(b"
                                     << "The pattern is broken at character 4";
    QTest::newRow("a long pattern") << QString(5000, QLatin1Char('a')) << "4096";
    QTest::newRow("a pattern that grows") << "((((a{1,1000}){1,1000}){1,1000}){1,1000})"
                                          << "The pattern is broken";
    QTest::newRow("half a character") << QString(QChar(0xd800)) << "Unicode";
}

void TestLineEditor::refusesBrokenQueries()
{
    QFETCH(QString, text);
    QFETCH(QString, problem);
    const auto found = doctor::findLine("a\n", pattern(text));
    QVERIFY(!found.line);
    QVERIFY2(found.problem.contains(problem), qPrintable(found.problem));
    QVERIFY(!doctor::replaceLine("a\n", pattern(text), QString()).content);
    QVERIFY(!doctor::removeLine("a\n", pattern(text)).content);
}

void TestLineEditor::refusesMoreThanOneLine()
{
    const QString line = QStringLiteral("a");
    for (const char16_t character : {u'\n', u'\r', u'\0', u'\xd800'})
        QVERIFY(!doctor::replaceLine("a\n", whole(line), line + QChar(character)).content);
    QVERIFY(!doctor::removeLine(QByteArray(64 * 1024 * 1024 + 1, '\n'), whole(QString())).content);
}

void TestLineEditor::givesUpPatternsThatBacktrackForEver_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("content");
    const QByteArray line = QByteArray(60, 'a') + '\n';
    const QByteArray longLine = QByteArray(8 * 1024 * 1024, 'a') + '\n';
    QTest::newRow("a plus in a plus") << "(a+)+[bc]$" << line;
    QTest::newRow("a plus in a plus, in a long line") << "(a+)+[bc]" << longLine;
    QTest::newRow("words beside each other") << "(a|a|aa)+[bc]" << line;
    QTest::newRow("many lines of some steps") << "a*a*a*[bc]" << line.repeated(100000);
    QTest::newRow("a long line of some steps") << "(?:a{0,100}){2}[bc]" << longLine;
    QTest::newRow("a pattern that calls itself") << "(a(?1)?){5}[bc]" << line;
}

void TestLineEditor::givesUpPatternsThatBacktrackForEver()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, content);
    const auto found = doctor::findLine(content, pattern(text));
    QVERIFY(!found.line);
    QCOMPARE(found.problem, QStringLiteral("The pattern takes too long."));
}

void TestLineEditor::keepsItsLimitsAgainstThePattern()
{
    const QByteArray content = QByteArray(60, 'a') + '\n';
    const QString raised = QStringLiteral("(*LIMIT_MATCH=4000000000)(a+)+[bc]$");
    QCOMPARE(doctor::findLine(content, pattern(raised)).problem,
             QStringLiteral("The pattern takes too long."));
}

QTEST_GUILESS_MAIN(TestLineEditor)

#include "tst_lineeditor.moc"
