#include <QTest>

#include <cerrno>
#include <cstring>
#include <functional>

#include "doctor/journal/journal.h"
#include "tests/doctor/journal/repairtree.h"
#include "tests/doctor/journal/stoppedchild.h"

using doctor::Journal;
using doctor::JournalEntry;
using doctor::JournalResult;
using Outcome = JournalResult::Outcome;
using stoppedchild::Way;

/// A repair, its undo and its recovery, stopped at each system call: the tree is as before or as
/// after. Every point is tried if EVERY_STOP is set, otherwise one in several.
class StoppedRepairTest : public QObject
{
    Q_OBJECT

private slots:
    void applyIsAllOrNothing_data();
    void applyIsAllOrNothing();
    void undoIsAllOrNothing_data();
    void undoIsAllOrNothing();
    void recoveryMayBeStoppedToo();
    void anyFailingCallIsTakenBack_data();
    void anyFailingCallIsTakenBack();
};

namespace {

using Snapshot = QMap<QString, QByteArray>;

int stride(int usual)
{
    return qEnvironmentVariableIsSet("EVERY_STOP") ? 1 : usual;
}

/// A tree with one of everything that a repair may meet.
class FullTree : public RepairTree
{
public:
    FullTree()
    {
        const QByteArray file =
            QFile::encodeName(write(QStringLiteral("settings.ini"), "[a]\nx=1\ny=2\n", 0640));
        ::setxattr(file.constData(), "user.note", "mine", 4, 0);
        write(QStringLiteral("real.ini"), "far away\n");
        link(QStringLiteral("link.ini"), "real.ini");
        write(QStringLiteral("twin-a"), "the same file twice, and it is longer\n");
        if (::link(name("twin-a").constData(), name("twin-b").constData()) != 0)
            qFatal("link: %s", std::strerror(errno));
        write(QStringLiteral("stale.lock"), "4711\n", 0600);
        link(QStringLiteral("stale-link"), "nowhere");
        QDir().mkpath(path(QStringLiteral("empty")));
        write(QStringLiteral("profile/inner/file"), "of the user\n");
        write(QStringLiteral("closed"), "unreadable\n", 0200);
    }

    doctor::Plan plan() const
    {
        using namespace changes;
        return changes::plan(
            {rewrite(at("settings.ini"), "[a]\nx=1\ny=2\n", "[a]\nx=1\ny=3\nz=4\n"),
             rewrite(at("link.ini"), "far away\n", "near\n"),
             rewrite(at("twin-a"), "the same file twice, and it is longer\n", "short now\n"),
             createDirectory(at("made")), create(at("made/file"), "new\n"),
             createLink(at("made/link"), QStringLiteral("file")), remove(at("stale.lock")),
             remove(at("stale-link"), Change::Entry::Link),
             remove(at("empty"), Change::Entry::Directory),
             move(at("profile"), at("profile.aside")), createDirectory(at("profile")),
             create(at("profile/file"), "fresh\n"), mode(at("closed"), 0644)});
    }

private:
    QString at(const char *name) const { return path(QLatin1String(name)); }
    QByteArray name(const char *file) const { return QFile::encodeName(at(file)); }
};

/// The snapshots of the tree before and after the repair.
struct Snapshots
{
    Snapshots()
    {
        const FullTree tree;
        before = tree.snapshot();
        if (Journal(tree.journalPath()).apply(tree.plan()).outcome != Outcome::Applied)
            qFatal("the repair of the tests does not work");
        after = tree.snapshot(false);
    }

    Snapshot before;
    Snapshot after;
};

const Snapshots &snapshots()
{
    static const Snapshots both;
    return both;
}

/// What must hold whenever a program was stopped; the sentence of what does not.
QByteArray brokenAfterStop(const FullTree &tree)
{
    Journal journal(tree.journalPath());
    QByteArray notes;
    for (const QString &note : journal.recover())
        notes += '\n' + note.toUtf8();
    for (const JournalEntry &entry : journal.history()) {
        if (entry.state == JournalEntry::State::Damaged)
            return "the journal does not read";
        if (entry.state == JournalEntry::State::Begun)
            return "the journal has a repair that is half done:" + notes;
    }
    const bool isAfter = tree.snapshot(false) == snapshots().after;
    if (!isAfter && tree.snapshot() != snapshots().before)
        return "the tree is neither as before nor as after:" +
               RepairTree::difference(tree.snapshot(), snapshots().before) +
               "\nand:" + RepairTree::difference(tree.snapshot(false), snapshots().after);
    if (!isAfter && journal.apply(tree.plan()).outcome != Outcome::Applied)
        return "the repair cannot be applied again";
    const int number = journal.history().last().number;
    const JournalResult undone = journal.undo(number);
    if (undone.outcome != Outcome::Undone)
        return "the repair cannot be undone: " + undone.reason.toUtf8();
    if (tree.snapshot() != snapshots().before)
        return "undo does not give the tree back:" +
               RepairTree::difference(tree.snapshot(), snapshots().before);
    return {};
}

void addWays()
{
    QTest::addColumn<int>("way");
    QTest::addColumn<int>("step");
    QTest::newRow("killed before a call") << int(Way::Kill) << stride(29);
    QTest::newRow("killed in a write") << int(Way::Tear) << 1;
}

/// Does @p code in a tree of its own, stopped at every point in turn; counts the points.
void stopEverywhere(Way way, int step, const std::function<void(const FullTree &)> &prepare,
                    const std::function<int(const FullTree &)> &code)
{
    if (way != Way::Kill && !stoppedchild::canChangeCalls)
        QSKIP("system calls are changed on x86-64 only");
    snapshots();
    int points = 0;
    for (int stopAt = 1;; stopAt += step) {
        const FullTree tree;
        prepare(tree);
        const auto ending = stoppedchild::run([&] { return code(tree); }, way, stopAt);
        const QByteArray broken = brokenAfterStop(tree);
        QVERIFY2(broken.isEmpty(),
                 (broken + " when stopped at call " + QByteArray::number(stopAt)).constData());
        if (ending.status >= 0) {
            QCOMPARE(ending.status, 0);
            qInfo("%d points of %d system calls", points, ending.calls);
            return;
        }
        ++points;
    }
}

} // namespace

void StoppedRepairTest::applyIsAllOrNothing_data()
{
    addWays();
}

void StoppedRepairTest::applyIsAllOrNothing()
{
    QFETCH(int, way);
    QFETCH(int, step);
    stopEverywhere(
        Way(way), step, [](const FullTree &) {},
        [](const FullTree &tree) {
            return Journal(tree.journalPath()).apply(tree.plan()).outcome != Outcome::Applied;
        });
}

void StoppedRepairTest::undoIsAllOrNothing_data()
{
    addWays();
}

void StoppedRepairTest::undoIsAllOrNothing()
{
    QFETCH(int, way);
    QFETCH(int, step);
    stopEverywhere(
        Way(way), step,
        [](const FullTree &tree) { Journal(tree.journalPath()).apply(tree.plan()); },
        [](const FullTree &tree) {
            return Journal(tree.journalPath()).undo(1).outcome != Outcome::Undone;
        });
}

void StoppedRepairTest::recoveryMayBeStoppedToo()
{
    const auto apply = [](const FullTree &tree) {
        return Journal(tree.journalPath()).apply(tree.plan()).outcome != Outcome::Applied;
    };
    const FullTree counted;
    const int calls = stoppedchild::run([&] { return apply(counted); }, Way::Kill, 0).calls;
    // Stopped late, there is most to take back; and once when all was done but for tidying up.
    for (const int first : {calls * 3 / 4, calls - 70})
        stopEverywhere(
            Way::Kill, stride(29),
            [&](const FullTree &tree) {
                stoppedchild::run([&] { return apply(tree); }, Way::Kill, first);
            },
            [](const FullTree &tree) {
                return int(Journal(tree.journalPath()).recover().isEmpty());
            });
}

void StoppedRepairTest::anyFailingCallIsTakenBack_data()
{
    QTest::addColumn<int>("error");
    QTest::newRow("disk full") << ENOSPC;
    QTest::newRow("forbidden") << EPERM;
    QTest::newRow("disk broken") << EIO;
}

void StoppedRepairTest::anyFailingCallIsTakenBack()
{
    if (!stoppedchild::canChangeCalls)
        QSKIP("system calls are changed on x86-64 only");
    QFETCH(int, error);
    snapshots();
    int points = 0;
    int failures = 0;
    for (int stopAt = 1;; stopAt += stride(31)) {
        const FullTree tree;
        const auto code = [&] {
            return Journal(tree.journalPath()).apply(tree.plan()).outcome == Outcome::Applied ? 0
                                                                                              : 1;
        };
        const auto ending = stoppedchild::run(code, Way::Fail, stopAt, error);
        QVERIFY2(ending.status >= 0, "crashed");
        const QByteArray broken = brokenAfterStop(tree);
        QVERIFY2(broken.isEmpty(),
                 (broken + " when this call failed: " + QByteArray::number(stopAt)).constData());
        failures += ending.status;
        if (ending.calls < stopAt)
            break;
        ++points;
    }
    QVERIFY(failures > points / 2);
    qInfo("%d failing calls, %d of them gave the repair up", points, failures);
}

QTEST_GUILESS_MAIN(StoppedRepairTest)
#include "tst_stoppedrepair.moc"
