#include <QTest>

#include "doctor/journal/journal.h"
#include "tests/doctor/journal/repairtree.h"
#include "tests/doctor/journal/stoppedchild.h"

using doctor::Change;
using doctor::Journal;
using doctor::JournalEntry;
using doctor::JournalLimits;
using doctor::JournalResult;
using doctor::WatchResult;
using Outcome = JournalResult::Outcome;
using stoppedchild::Way;

namespace {

/// What a command of somebody else changes, and what it leaves alone.
class WatchedTree : public RepairTree
{
public:
    WatchedTree()
    {
        const QByteArray file =
            QFile::encodeName(write(QStringLiteral("settings.ini"), "a=1\nb=2\nc=3\n", 0640));
        ::setxattr(file.constData(), "user.note", "mine", 4, 0);
        write(QStringLiteral("real.ini"), "far away\n", 0600);
        link(QStringLiteral("link.ini"), "real.ini");
        write(QStringLiteral("old.desktop"), "[Desktop Entry]\n", 0755);
        link(QStringLiteral("old-link"), "nowhere");
        write(QStringLiteral("kept"), "kept\n");
    }

    QStringList paths() const
    {
        return {path(QStringLiteral("settings.ini")), path(QStringLiteral("link.ini")),
                path(QStringLiteral("old.desktop")),  path(QStringLiteral("old-link")),
                path(QStringLiteral("kept")),         path(QStringLiteral("new/deep/entry"))};
    }

    /// As programs save: through a new file, and through a link in place.
    void command() const
    {
        write(QStringLiteral("settings.part"), "a=1\nb=two\nc=3\n");
        ::rename(name("settings.part").constData(), name("settings.ini").constData());
        overwrite(QStringLiteral("link.ini"), "near\n");
        QFile::remove(path(QStringLiteral("old.desktop")));
        QFile::remove(path(QStringLiteral("old-link")));
        overwrite(QStringLiteral("kept"), "kept\n");
        write(QStringLiteral("new/deep/entry"), "fresh\n");
    }

    /// Times of what has the same bytes again are the command's.
    QMap<QString, QByteArray> comparable() const
    {
        auto entries = snapshot();
        entries.remove(QStringLiteral("kept"));
        return entries;
    }

    JournalResult begin(Journal &journal) const
    {
        return journal.beginWatch(QStringLiteral("shortcuts"), QStringLiteral("restore"), paths());
    }

    JournalEntry lastEntry() const
    {
        const QVector<JournalEntry> history = Journal(journalPath()).history();
        return history.isEmpty() ? JournalEntry() : history.last();
    }

private:
    QByteArray name(const char *file) const { return QFile::encodeName(path(QLatin1String(file))); }
};

QByteArray kindsOf(const QVector<Change> &changes, const RepairTree &tree)
{
    QByteArray text;
    for (const Change &change : changes)
        text += QByteArray::number(int(change.kind)) +
                QFile::encodeName(change.path.mid(tree.path().size())) + ' ';
    return text;
}

} // namespace

/// Changes that somebody else makes while the journal watches.
class WatchedRepairTest : public QObject
{
    Q_OBJECT

private slots:
    void whatACommandChangedIsListedAndUndone()
    {
        const WatchedTree tree;
        const auto before = tree.comparable();
        Journal journal(tree.journalPath());
        const JournalResult begun = tree.begin(journal);
        QVERIFY2(begun.outcome == Outcome::Applied, qPrintable(begun.reason));
        tree.command();
        const WatchResult watched = journal.endWatch();
        QCOMPARE(watched.journal.outcome, Outcome::Applied);
        QCOMPARE(watched.journal.number, begun.number);
        QCOMPARE(watched.journal.notes, QStringList());
        QCOMPARE(kindsOf(watched.changes, tree),
                 QByteArray("0/settings.ini 0/real.ini 2/old.desktop 2/old-link 1/new 1/new/deep "
                            "1/new/deep/entry "));
        QCOMPARE(watched.changes.first().before, QByteArray("a=1\nb=2\nc=3\n"));
        QCOMPARE(watched.changes.first().after, QByteArray("a=1\nb=two\nc=3\n"));
        QCOMPARE(tree.lastEntry().state, JournalEntry::State::Applied);
        QCOMPARE(tree.lastEntry().repair, QStringLiteral("restore"));

        const JournalResult undone = journal.undo(begun.number);
        QVERIFY2(undone.outcome == Outcome::Undone, qPrintable(undone.reason));
        QCOMPARE(tree.comparable(), before);
        QCOMPARE(tree.lastEntry().state, JournalEntry::State::Undone);
    }

    void aCommandThatChangesNothingLeavesNoEntry()
    {
        const WatchedTree tree;
        Journal journal(tree.journalPath());
        QCOMPARE(tree.begin(journal).outcome, Outcome::Applied);
        tree.overwrite(QStringLiteral("stranger"), "of the user\n");
        const WatchResult watched = journal.endWatch();
        QCOMPARE(watched.journal.outcome, Outcome::Applied);
        QCOMPARE(watched.journal.number, 0);
        QVERIFY(watched.changes.isEmpty());
        QVERIFY(journal.history().isEmpty());
    }

    void laterChangesOfTheUserStayOrAreAConflict()
    {
        const WatchedTree tree;
        Journal journal(tree.journalPath());
        tree.begin(journal);
        tree.command();
        const int number = journal.endWatch().journal.number;
        tree.overwrite(QStringLiteral("settings.ini"), "a=1\nb=mine\nc=3\n");
        const JournalResult refused = journal.undo(number);
        QCOMPARE(refused.outcome, Outcome::Conflict);
        QCOMPARE(refused.kept, QStringList{tree.path(QStringLiteral("settings.ini"))});
        tree.overwrite(QStringLiteral("settings.ini"), "a=1\nb=two\nc=3\ny=mine\n");
        tree.write(QStringLiteral("new/mine"), "of the user\n");
        QCOMPARE(journal.undo(number).outcome, Outcome::Undone);
        QCOMPARE(tree.read(QStringLiteral("settings.ini")), QByteArray("a=1\nb=2\nc=3\ny=mine\n"));
        QVERIFY(!QFile::exists(tree.path(QStringLiteral("new/deep"))));
        QCOMPARE(tree.read(QStringLiteral("new/mine")), QByteArray("of the user\n"));
    }

    void twoWatchedRepairsAreUndoneInAnyOrder()
    {
        const WatchedTree tree;
        const QString file = QStringLiteral("settings.ini");
        Journal journal(tree.journalPath());
        QVector<int> numbers;
        for (const char *content : {"a=one\nb=2\nc=3\n", "a=one\nb=2\nc=three\n"}) {
            tree.begin(journal);
            tree.overwrite(file, content);
            numbers.append(journal.endWatch().journal.number);
        }
        QCOMPARE(journal.undo(numbers[0]).outcome, Outcome::Undone);
        QCOMPARE(tree.read(file), QByteArray("a=1\nb=2\nc=three\n"));
        QCOMPARE(journal.undo(numbers[1]).outcome, Outcome::Undone);
        QCOMPARE(tree.read(file), QByteArray("a=1\nb=2\nc=3\n"));
    }

    void otherRepairsWaitAndTheHistoryReads()
    {
        const WatchedTree tree;
        Journal journal(tree.journalPath());
        const int number = tree.begin(journal).number;
        Journal other(tree.journalPath());
        QCOMPARE(tree.begin(other).outcome, Outcome::Refused);
        const doctor::Plan plan =
            changes::plan({changes::create(tree.path(QStringLiteral("x")), "x")});
        QCOMPARE(other.apply(plan).outcome, Outcome::Refused);
        QCOMPARE(journal.apply(plan).outcome, Outcome::Refused);
        QCOMPARE(other.undo(number).outcome, Outcome::Failed);
        QCOMPARE(other.recover(), QStringList());
        QCOMPARE(tree.lastEntry().state, JournalEntry::State::Begun);
        journal.endWatch();
        QCOMPARE(other.apply(plan).outcome, Outcome::Applied);
    }

    void whatIsTooLargeOrCannotBeReadIsRefusedBefore()
    {
        const WatchedTree tree;
        JournalLimits limits;
        limits.watched = 20;
        Journal journal(tree.journalPath(), limits);
        QVERIFY(journal.watchRefusal(tree.paths()));
        QVERIFY(!journal.watchRefusal({tree.path(QStringLiteral("settings.ini"))}));
        QVERIFY(journal.watchRefusal({QStringLiteral("relative")}));
        QVERIFY(journal.watchRefusal({QStringLiteral("/dev/null")}));
        QCOMPARE(tree.begin(journal).outcome, Outcome::Refused);
        QVERIFY(journal.history().isEmpty());
        QVERIFY(!journal.endWatch().journal.reason.isEmpty());
    }

    void whatCannotBeReadAfterwardsIsNamedAndItsBackupStays()
    {
        const WatchedTree tree;
        Journal journal(tree.journalPath());
        tree.begin(journal);
        tree.command();
        const QString socket = tree.path(QStringLiteral("settings.ini"));
        QFile::remove(socket);
        QCOMPARE(::mkfifo(QFile::encodeName(socket).constData(), 0600), 0);
        const WatchResult watched = journal.endWatch();
        QCOMPARE(watched.journal.notes.size(), 1);
        QVERIFY(watched.journal.notes.first().contains(socket));
        QCOMPARE(journal.undo(watched.journal.number).outcome, Outcome::Undone);
        QVERIFY(QFile::exists(tree.path(QStringLiteral("old.desktop"))));
    }

    /// EVERY_STOP tries each point.
    void stoppedAnywhereTheNextStartAdoptsOrDropsIt()
    {
        const int stride = qEnvironmentVariableIsSet("EVERY_STOP") ? 1 : 13;
        for (int stopAt = 1;; stopAt += stride) {
            const WatchedTree tree;
            const auto before = tree.comparable();
            const auto ending = stoppedchild::run(
                [&tree] {
                    Journal journal(tree.journalPath());
                    tree.begin(journal);
                    tree.command();
                    return int(journal.endWatch().journal.outcome);
                },
                Way::Kill, stopAt);
            const QByteArray broken = brokenAfterStop(tree, before);
            QVERIFY2(broken.isEmpty(), (broken + " at " + QByteArray::number(stopAt)).constData());
            if (ending.status >= 0) {
                QCOMPARE(ending.status, int(Outcome::Applied));
                qInfo("%d system calls", ending.calls);
                return;
            }
        }
    }

private:
    /// The sentence of what does not hold.
    static QByteArray brokenAfterStop(const WatchedTree &tree,
                                      const QMap<QString, QByteArray> &before)
    {
        const auto stopped = tree.snapshot();
        // A file of the command itself, and rights that it had not given yet.
        const bool isHalfway = stopped.contains(QStringLiteral("settings.part"));
        Journal journal(tree.journalPath());
        const JournalEntry begun = tree.lastEntry();
        const bool wasBegun = begun.state == JournalEntry::State::Begun && begun.number > 0;
        const QStringList notes = journal.recover();
        if (tree.snapshot() != stopped)
            return "recovery changed the tree:" + RepairTree::difference(tree.snapshot(), stopped);
        if (wasBegun != (notes.size() == 1))
            return "recovery does not say what it did";
        const JournalEntry entry = tree.lastEntry();
        if (tree.comparable() == before)
            return entry.number == 0 ? QByteArray() : QByteArray("nothing changed, but is listed");
        if (isHalfway && entry.number == 0)
            return {};
        if (entry.state != JournalEntry::State::Applied)
            return "what changed is not listed";
        const JournalResult undone = journal.undo(entry.number);
        if (undone.outcome != Outcome::Undone)
            return "it cannot be undone: " + undone.reason.toUtf8();
        auto now = tree.comparable();
        now.remove(QStringLiteral("settings.part"));
        return now == before
                   ? QByteArray()
                   : "undo gives back something else:" + RepairTree::difference(now, before);
    }
};

QTEST_GUILESS_MAIN(WatchedRepairTest)
#include "tst_watchedrepair.moc"
