#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <vector>

#include "doctor/lines/linediff.h"
#include "doctor/lines/merge.h"
#include "doctor/lines/unifieddiff.h"
#include "tests/support/privatehome.h"

using doctor::lineChanges;
using doctor::mergedLines;
using doctor::unifiedDiff;

/// Changes by lines: found, merged, shown.
class LineChangesTest : public QObject
{
    Q_OBJECT

private slots:
    void changesLeadFromOneContentToTheOther();
    void noShorterListOfChangesIsThere();
    void hugeContentsAreComparedInBoundedTime();
    void mergeKeepsBothSides_data();
    void mergeKeepsBothSides();
    void mergeRefusesWhatContradicts_data();
    void mergeRefusesWhatContradicts();
    void mergeOfOneSideIsThatSide();
    void diffIsAppliedByPatch();
    void diffLooksLikeThatOfDiff();
    void diffOfFilesThatComeAndGo();
    void diffOfBinaryContentIsASentence();
};

namespace {

QByteArray randomContent(QRandomGenerator &random, int lines)
{
    QByteArray content;
    const int count = random.bounded(lines + 1);
    for (int line = 0; line < count; ++line)
        content += "line " + QByteArray::number(random.bounded(6)) + '\n';
    if (!content.isEmpty() && random.bounded(4) == 0)
        content.chop(1);
    return content;
}

/// A copy with some lines removed, doubled or replaced.
QByteArray edited(QRandomGenerator &random, const QByteArray &content)
{
    QByteArray result;
    for (const QByteArray &line : content.split('\n')) {
        const int what = random.bounded(12);
        if (what == 0)
            continue;
        result += (what == 1 ? "new " + line : line) + '\n';
        if (what == 2)
            result += "added\n";
    }
    return result;
}

QList<QByteArray> linesOf(const QByteArray &content)
{
    QList<QByteArray> lines;
    for (int begin = 0; begin < content.size();) {
        const int feed = content.indexOf('\n', begin);
        const int end = feed < 0 ? content.size() : feed + 1;
        lines.append(content.mid(begin, end - begin));
        begin = end;
    }
    return lines;
}

/// Length of the longest common subsequence, by the table that everyone knows.
int commonLines(const QList<QByteArray> &before, const QList<QByteArray> &after)
{
    std::vector<std::vector<int>> table(std::size_t(before.size()) + 1,
                                        std::vector<int>(std::size_t(after.size()) + 1));
    for (int x = 1; x <= before.size(); ++x)
        for (int y = 1; y <= after.size(); ++y) {
            const auto &above = table[std::size_t(x) - 1];
            const auto column = std::size_t(y);
            table[std::size_t(x)][column] =
                before[x - 1] == after[y - 1]
                    ? above[column - 1] + 1
                    : std::max(above[column], table[std::size_t(x)][column - 1]);
        }
    return table.back().back();
}

} // namespace

void LineChangesTest::changesLeadFromOneContentToTheOther()
{
    QRandomGenerator random(1);
    for (int round = 0; round < 3000; ++round) {
        const QByteArray before = randomContent(random, 30);
        const QByteArray after =
            round % 2 == 0 ? edited(random, before) : randomContent(random, 30);
        QByteArray result;
        int position = 0;
        for (const doctor::LineChange &change : lineChanges(before, after)) {
            QVERIFY(change.begin >= position);
            result += before.mid(position, change.begin - position);
            QCOMPARE(result.size(), change.newBegin);
            result += after.mid(change.newBegin, change.newEnd - change.newBegin);
            position = change.end;
        }
        QCOMPARE(result + before.mid(position), after);
    }
}

void LineChangesTest::noShorterListOfChangesIsThere()
{
    QRandomGenerator random(2);
    for (int round = 0; round < 2000; ++round) {
        const QByteArray before = randomContent(random, 20);
        const QByteArray after = randomContent(random, 20);
        const QList<QByteArray> lines = linesOf(before);
        int removed = 0;
        for (const doctor::LineChange &change : lineChanges(before, after))
            removed += linesOf(before.mid(change.begin, change.end - change.begin)).size();
        QCOMPARE(lines.size() - removed, commonLines(lines, linesOf(after)));
    }
}

void LineChangesTest::hugeContentsAreComparedInBoundedTime()
{
    QRandomGenerator random(3);
    QByteArray before;
    QByteArray after;
    for (int line = 0; line < 150000; ++line) {
        before += QByteArray::number(random.bounded(1000)) + '\n';
        after += QByteArray::number(random.bounded(1000)) + '\n';
    }
    QVERIFY(!lineChanges(before, after).isEmpty());
    QVERIFY(
        !lineChanges(QByteArray(32 << 20, '\n'), QByteArray("x\n").repeated(4 << 20)).isEmpty());
}

void LineChangesTest::mergeKeepsBothSides_data()
{
    QTest::addColumn<QByteArray>("base");
    QTest::addColumn<QByteArray>("ours");
    QTest::addColumn<QByteArray>("theirs");
    QTest::addColumn<QByteArray>("merged");
    QTest::newRow("places apart") << QByteArray("a\nb\nc\n") << QByteArray("A\nb\nc\n")
                                  << QByteArray("a\nb\nC\n") << QByteArray("A\nb\nC\n");
    QTest::newRow("neighbouring lines") << QByteArray("a\nb\n") << QByteArray("A\nb\n")
                                        << QByteArray("a\nB\n") << QByteArray("A\nB\n");
    QTest::newRow("added behind a removed line")
        << QByteArray("[s]\nold=1\n") << QByteArray("[s]\nold=1\nnew=2\n") << QByteArray("[s]\n")
        << QByteArray("[s]\nnew=2\n");
    QTest::newRow("same change twice") << QByteArray("a\nb\n") << QByteArray("x\nb\n")
                                       << QByteArray("x\nb\nc\n") << QByteArray("x\nb\nc\n");
    QTest::newRow("no last line feed") << QByteArray("a\nb\n") << QByteArray("a\nb\nc\n")
                                       << QByteArray("a\nB") << QByteArray("a\nB\nc\n");
    QTest::newRow("DOS lines without a last one")
        << QByteArray("a\r\nb\r\n") << QByteArray("a\r\nb\r\nc\r\n") << QByteArray("a\r\nB")
        << QByteArray("a\r\nB\r\nc\r\n");
}

void LineChangesTest::mergeKeepsBothSides()
{
    QFETCH(QByteArray, base);
    QFETCH(QByteArray, ours);
    QFETCH(QByteArray, theirs);
    QTEST(mergedLines(base, ours, theirs).value_or("conflict"), "merged");
    QTEST(mergedLines(base, theirs, ours).value_or("conflict"), "merged");
}

void LineChangesTest::mergeRefusesWhatContradicts_data()
{
    QTest::addColumn<QByteArray>("base");
    QTest::addColumn<QByteArray>("ours");
    QTest::addColumn<QByteArray>("theirs");
    QTest::newRow("same line") << QByteArray("a\n") << QByteArray("b\n") << QByteArray("c\n");
    QTest::newRow("same place") << QByteArray("a\n") << QByteArray("a\nb\n")
                                << QByteArray("a\nc\n");
    QTest::newRow("inside of what went")
        << QByteArray("a\nb\nc\n") << QByteArray("a\nb\nx\nc\n") << QByteArray();
    QTest::newRow("binary") << QByteArray("a\n\0b\n", 5) << QByteArray("A\n\0b\n", 5)
                            << QByteArray("a\n\0B\n", 5);
}

void LineChangesTest::mergeRefusesWhatContradicts()
{
    QFETCH(QByteArray, base);
    QFETCH(QByteArray, ours);
    QFETCH(QByteArray, theirs);
    QVERIFY(!mergedLines(base, ours, theirs));
    QVERIFY(!mergedLines(base, theirs, ours));
}

void LineChangesTest::mergeOfOneSideIsThatSide()
{
    QRandomGenerator random(4);
    for (int round = 0; round < 2000; ++round) {
        const QByteArray base = randomContent(random, 20);
        const QByteArray ours = randomContent(random, 20);
        QCOMPARE(mergedLines(base, ours, base), std::make_optional(ours));
        QCOMPARE(mergedLines(base, base, ours), std::make_optional(ours));
        QCOMPARE(mergedLines(base, ours, ours), std::make_optional(ours));
    }
}

void LineChangesTest::diffIsAppliedByPatch()
{
    const QString patch = QStandardPaths::findExecutable(QStringLiteral("patch"));
    if (patch.isEmpty())
        QSKIP("patch is not installed");
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("file"));
    const auto write = [](const QString &name, const QByteArray &content) {
        QFile file(name);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    };
    QRandomGenerator random(5);
    for (int round = 0; round < 150; ++round) {
        const QByteArray before = randomContent(random, 60) + "last";
        const QByteArray after = edited(random, before) + (round % 2 == 0 ? "end" : "");
        QVERIFY(write(path, before));
        QVERIFY(write(path + QLatin1String(".diff"), unifiedDiff(before, after, path)));
        QProcess process;
        process.start(patch, {QStringLiteral("--silent"), QStringLiteral("--fuzz=0"), path,
                              path + QLatin1String(".diff")});
        QVERIFY(process.waitForFinished() && process.exitCode() == 0);
        QCOMPARE(testsupport::readFile(path), after);
    }
}

void LineChangesTest::diffLooksLikeThatOfDiff()
{
    QCOMPARE(unifiedDiff(QByteArray("1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n"),
                         QByteArray("1\n2\n3\n4\n5\nsix\n7\n8\n9\n10\n11\n12\n13\n14"),
                         QStringLiteral("/etc/x")),
             QByteArray("--- /etc/x\n+++ /etc/x\n"
                        "@@ -3,7 +3,7 @@\n 3\n 4\n 5\n-6\n+six\n 7\n 8\n 9\n"
                        "@@ -11,3 +11,4 @@\n 11\n 12\n 13\n+14\n\\ No newline at end of file\n"));
    QCOMPARE(unifiedDiff(QByteArray("same"), QByteArray("same"), QStringLiteral("/x")),
             QByteArray());
}

void LineChangesTest::diffOfFilesThatComeAndGo()
{
    QCOMPARE(unifiedDiff({}, QByteArray("new\n"), QStringLiteral("/x")),
             QByteArray("--- /dev/null\n+++ /x\n@@ -0,0 +1 @@\n+new\n"));
    QCOMPARE(unifiedDiff(QByteArray("old\n"), {}, QStringLiteral("/x")),
             QByteArray("--- /x\n+++ /dev/null\n@@ -1 +0,0 @@\n-old\n"));
    QCOMPARE(unifiedDiff({}, QByteArray(), QStringLiteral("/x")),
             QByteArray("--- /dev/null\n+++ /x\n"));
}

void LineChangesTest::diffOfBinaryContentIsASentence()
{
    QCOMPARE(unifiedDiff(QByteArray("a\0b", 3), QByteArray("a"), QStringLiteral("/x")),
             QByteArray("Binary file /x differs\n"));
}

QTEST_GUILESS_MAIN(LineChangesTest)
#include "tst_linechanges.moc"
