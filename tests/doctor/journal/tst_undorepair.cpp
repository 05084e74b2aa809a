#include <QTest>

#include "tests/doctor/journal/repairtree.h"

using namespace changes;
using doctor::Journal;
using doctor::JournalResult;
using Outcome = JournalResult::Outcome;

/// What undo() gives back, and what of the user it keeps.
class UndoRepairTest : public QObject
{
    Q_OBJECT

private slots:
    void removedFileComesBackWhole();
    void repairsAreUndoneInAnyOrder();
    void laterChangesOfTheUserStay();
    void laterRightsStayToo();
    void conflictChangesNothingAndNamesTheBackup();
    void binaryFilesAreNotMerged();
    void theLaterRepairIsNamed();
    void rightsChangedTwiceAreAConflict();
    void madeDirectoryStaysWithWhatTheUserPutIntoIt();
    void movedAsideAndMadeAgainIsAConflict();
    void whatTheUserTookBackIsNotTouched();
    void undoneIsUndoneOnce();
};

namespace {

int applied(const RepairTree &tree, const QVector<doctor::Change> &all)
{
    const JournalResult result = Journal(tree.journalPath()).apply(plan(all));
    if (result.outcome != Outcome::Applied)
        qFatal("not applied: %s", qPrintable(result.reason));
    return result.number;
}

JournalResult undone(const RepairTree &tree, int number)
{
    return Journal(tree.journalPath()).undo(number);
}

} // namespace

void UndoRepairTest::removedFileComesBackWhole()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), QByteArray("a\0b\xff", 4), 02640);
    ::setxattr(QFile::encodeName(file).constData(), "user.note", "mine", 4, 0);
    if (::geteuid() == 0)
        QCOMPARE(::chown(QFile::encodeName(file).constData(), 12345, 54321), 0);
    ::chmod(QFile::encodeName(file).constData(), 02640);
    const auto before = tree.snapshot();
    applied(tree, {remove(file)});
    QVERIFY(tree.snapshot().isEmpty());
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void UndoRepairTest::repairsAreUndoneInAnyOrder()
{
    const QVector<QVector<int>> orders = {{1, 2, 3}, {1, 3, 2}, {2, 1, 3},
                                          {2, 3, 1}, {3, 1, 2}, {3, 2, 1}};
    for (const QVector<int> &order : orders) {
        const RepairTree tree;
        const QByteArray one = "[a]\nx=1\ny=1\nz=1\n";
        const QByteArray two = "[a]\nx=2\ny=1\nz=1\n";
        const QByteArray three = "[a]\nx=2\ny=2\nz=1\n";
        const QByteArray four = "[a]\nx=2\ny=2\nz=1\nnew=1\n";
        const QString file = tree.write(QStringLiteral("file"), one);
        const auto before = tree.snapshot();
        applied(tree, {rewrite(file, one, two)});
        applied(tree, {rewrite(file, two, three)});
        applied(tree, {rewrite(file, three, four)});
        for (const int number : order)
            QCOMPARE(undone(tree, number).outcome, Outcome::Undone);
        QCOMPARE(tree.snapshot(), before);
    }
}

void UndoRepairTest::laterChangesOfTheUserStay()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "a=1\nb=1\nc=1\n", 0600);
    const QString other = tree.write(QStringLiteral("other"), "old\n");
    applied(tree, {rewrite(file, "a=1\nb=1\nc=1\n", "a=1\nb=2\nc=1\n"),
                   rewrite(other, "old\n", "new\n")});
    tree.overwrite(QStringLiteral("file"), "a=of the user\nb=2\nc=1\nd=1\n");
    const JournalResult result = undone(tree, 1);
    QCOMPARE(result.outcome, Outcome::Undone);
    QCOMPARE(result.kept, QStringList{file});
    QCOMPARE(tree.read(QStringLiteral("file")), QByteArray("a=of the user\nb=1\nc=1\nd=1\n"));
    QCOMPARE(tree.read(QStringLiteral("other")), QByteArray("old\n"));
    QCOMPARE(tree.snapshot().size(), 2);
}

void UndoRepairTest::laterRightsStayToo()
{
    const RepairTree tree;
    const QByteArray file = QFile::encodeName(tree.write(QStringLiteral("file"), "old\n", 0644));
    applied(tree, {rewrite(QFile::decodeName(file), "old\n", "new\n")});
    ::chmod(file.constData(), 0600);
    ::setxattr(file.constData(), "user.note", "later", 5, 0);
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    const QByteArray after = tree.snapshot(false).value(QStringLiteral("file"));
    QVERIFY2(after.startsWith("100600 ") && after.contains("user.note=6c61746572") &&
                 after.endsWith("[old\n]"),
             after.constData());
}

void UndoRepairTest::conflictChangesNothingAndNamesTheBackup()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "a=1\n");
    const QString other = tree.write(QStringLiteral("other"), "old\n");
    applied(tree, {rewrite(file, "a=1\n", "a=2\n"), rewrite(other, "old\n", "new\n")});
    tree.overwrite(QStringLiteral("file"), "a=3\n");
    const auto before = tree.snapshot();
    const JournalResult result = undone(tree, 1);
    QCOMPARE(result.outcome, Outcome::Conflict);
    QCOMPARE(result.kept, QStringList{file});
    QCOMPARE(result.reason, QStringLiteral("%1 was changed later in the same place.").arg(file));
    QCOMPARE(result.notes.size(), 1);
    const QString note = result.notes[0];
    QVERIFY(note.startsWith(QStringLiteral("What %1 was before the repair is in ").arg(file)));
    QFile backup(note.mid(note.lastIndexOf(QLatin1Char(' ')) + 1).chopped(1));
    QVERIFY(backup.open(QIODevice::ReadOnly));
    QCOMPARE(backup.readAll(), QByteArray("a=1\n"));
    QCOMPARE(tree.snapshot(), before);
    tree.overwrite(QStringLiteral("file"), "a=2\n");
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
}

void UndoRepairTest::binaryFilesAreNotMerged()
{
    const RepairTree tree;
    const QByteArray one("\0one\nx\nsame\n", 12);
    const QByteArray two("\0two\nx\nsame\n", 12);
    const QString file = tree.write(QStringLiteral("file"), one);
    applied(tree, {rewrite(file, one, two)});
    tree.overwrite(QStringLiteral("file"), two + "more\n");
    QCOMPARE(undone(tree, 1).outcome, Outcome::Conflict);
    tree.overwrite(QStringLiteral("file"), two);
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(tree.read(QStringLiteral("file")), one);
}

void UndoRepairTest::theLaterRepairIsNamed()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "a=1\n");
    applied(tree, {rewrite(file, "a=1\n", "a=2\n")});
    applied(tree, {rewrite(file, "a=2\n", "a=3\n")});
    QCOMPARE(undone(tree, 1).reason,
             QStringLiteral("%1 was changed by the later repair 2. Undo that first.").arg(file));
    QCOMPARE(undone(tree, 2).outcome, Outcome::Undone);
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(tree.read(QStringLiteral("file")), QByteArray("a=1\n"));
}

void UndoRepairTest::rightsChangedTwiceAreAConflict()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "x", 0400);
    const auto before = tree.snapshot();
    applied(tree, {changes::mode(file, 0644)});
    ::chmod(QFile::encodeName(file).constData(), 0600);
    const JournalResult result = undone(tree, 1);
    QCOMPARE(result.outcome, Outcome::Conflict);
    QCOMPARE(result.reason,
             QStringLiteral("The rights of %1 were changed after the repair.").arg(file));
    ::chmod(QFile::encodeName(file).constData(), 0644);
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void UndoRepairTest::madeDirectoryStaysWithWhatTheUserPutIntoIt()
{
    const RepairTree tree;
    const QString directory = tree.path(QStringLiteral("made"));
    applied(tree, {createDirectory(directory), create(directory + QLatin1String("/ours"), "x")});
    tree.write(QStringLiteral("made/theirs"), "of the user\n");
    const JournalResult result = undone(tree, 1);
    QCOMPARE(result.outcome, Outcome::Undone);
    QCOMPARE(result.kept, QStringList{directory});
    QCOMPARE(tree.snapshot().keys(),
             (QStringList{QStringLiteral("made"), QStringLiteral("made/theirs")}));
}

void UndoRepairTest::movedAsideAndMadeAgainIsAConflict()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n");
    const QString aside = tree.path(QStringLiteral("aside"));
    const auto before = tree.snapshot();
    applied(tree, {move(file, aside)});
    tree.write(QStringLiteral("file"), "made by the program\n");
    const JournalResult result = undone(tree, 1);
    QCOMPARE(result.outcome, Outcome::Conflict);
    QCOMPARE(result.reason,
             QStringLiteral("%1 is there again. What was there before is %2.").arg(file, aside));
    QVERIFY(QFile::remove(file));
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void UndoRepairTest::whatTheUserTookBackIsNotTouched()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n");
    const QString made = tree.path(QStringLiteral("made"));
    const QString removed = tree.write(QStringLiteral("removed"), "again\n");
    applied(tree, {rewrite(file, "old\n", "new\n"), create(made, "x"), remove(removed)});
    tree.overwrite(QStringLiteral("file"), "old\n");
    QVERIFY(QFile::remove(made));
    tree.write(QStringLiteral("removed"), "again\n");
    const auto before = tree.snapshot();
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void UndoRepairTest::undoneIsUndoneOnce()
{
    const RepairTree tree;
    applied(tree, {create(tree.path(QStringLiteral("file")), "x")});
    QCOMPARE(undone(tree, 1).outcome, Outcome::Undone);
    QCOMPARE(undone(tree, 1).reason, QStringLiteral("Repair 1 is undone already."));
    QCOMPARE(undone(tree, 7).reason, QStringLiteral("There is no repair 7."));
    QCOMPARE(Journal(tree.journalPath()).history().first().state,
             doctor::JournalEntry::State::Undone);
}

QTEST_GUILESS_MAIN(UndoRepairTest)
#include "tst_undorepair.moc"
