#include <QTest>

#include <sys/file.h>

#include "doctor/journal/tree/treestep.h"
#include "tests/doctor/journal/repairtree.h"

using namespace changes;
using doctor::Journal;
using doctor::JournalResult;
using Outcome = JournalResult::Outcome;

Q_DECLARE_METATYPE(doctor::Change)

/// What apply() changes, what it keeps, and what it refuses.
class ApplyRepairTest : public QObject
{
    Q_OBJECT

private slots:
    void rewrittenFileKeepsRightsAndAttributes();
    void newAccessListsOfTheDirectoryAreNotTakenOver();
    void linkStaysAndItsFileChanges();
    void fileWithTwoNamesKeepsBoth();
    void madeThingsHaveTheirRights();
    void laterChangesSeeEarlierOnes();
    void whatIsAlreadySoIsRefused();
    void refusesWhatChangedSinceThePlan_data();
    void refusesWhatChangedSinceThePlan();
    void refusesALinkThatLeadsElsewhereNow();
    void linksOfOthersLeadToTheirOwnFilesOnly();
    void directoriesBecomingLinksAreNotFollowed();
    void failureInTheMiddleTakesAllBack();
    void secondDoctorHasToWait();
    void refusedPlanLeavesNoTrace();
    void setUserIdIsLostWithTheOwner();
    void commandsAreLeftToTheAdministrator();
};

namespace {

/// An access control list as the kernel keeps it: rw for the owner, r for a user, none for others.
QByteArray accessList()
{
    return QByteArray::fromHex("02000000"
                               "01000600ffffffff"
                               "0200040039300000"
                               "04000400ffffffff"
                               "10000400ffffffff"
                               "20000000ffffffff");
}

void setAttribute(const QString &file, const char *name, const QByteArray &value)
{
    if (::setxattr(QFile::encodeName(file).constData(), name, value.constData(),
                   std::size_t(value.size()), 0) != 0)
        qFatal("no attribute %s for a test", name);
}

bool hasAttribute(const QString &file, const char *name)
{
    return ::getxattr(QFile::encodeName(file).constData(), name, nullptr, 0) >= 0;
}

mode_t modeOf(const QString &file)
{
    struct stat status = {};
    ::lstat(QFile::encodeName(file).constData(), &status);
    return status.st_mode & 07777;
}

bool giveTo(const QString &file, uid_t owner)
{
    return ::lchown(QFile::encodeName(file).constData(), owner, owner) == 0;
}

JournalResult apply(const RepairTree &tree, const QVector<doctor::Change> &all)
{
    return Journal(tree.journalPath()).apply(plan(all));
}

} // namespace

void ApplyRepairTest::rewrittenFileKeepsRightsAndAttributes()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n", 0640);
    setAttribute(file, "user.note", "mine");
    setAttribute(file, "system.posix_acl_access", accessList());
    const QByteArray before = tree.snapshot(false).value(QStringLiteral("file"));
    const JournalResult result = apply(tree, {rewrite(file, "old\n", "new\n")});
    QCOMPARE(result.outcome, Outcome::Applied);
    QCOMPARE(result.number, 1);
    QCOMPARE(tree.snapshot(false).value(QStringLiteral("file")),
             QByteArray(before).replace("[old\n]", "[new\n]"));
    QVERIFY(before.contains("posix_acl_access"));
    QCOMPARE(tree.snapshot().size(), 1);
}

void ApplyRepairTest::newAccessListsOfTheDirectoryAreNotTakenOver()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n", 0600);
    setAttribute(tree.path(), "system.posix_acl_default", accessList());
    QCOMPARE(apply(tree, {rewrite(file, "old\n", "new\n")}).outcome, Outcome::Applied);
    QVERIFY(!hasAttribute(file, "system.posix_acl_access"));
    QCOMPARE(modeOf(file), mode_t(0600));
    const QString made = tree.path(QStringLiteral("made"));
    QCOMPARE(apply(tree, {create(made, "x")}).outcome, Outcome::Applied);
    QVERIFY(hasAttribute(made, "system.posix_acl_access"));
}

void ApplyRepairTest::linkStaysAndItsFileChanges()
{
    const RepairTree tree;
    tree.write(QStringLiteral("real/file"), "old\n");
    const QString link = tree.link(QStringLiteral("link"), "real/../real/./file");
    tree.link(QStringLiteral("directory"), tree.path(QStringLiteral("real")).toUtf8());
    QCOMPARE(apply(tree, {rewrite(link, "old\n", "new\n")}).outcome, Outcome::Applied);
    QCOMPARE(apply(tree, {rewrite(tree.path(QStringLiteral("directory/file")), "new\n", "newer\n")})
                 .outcome,
             Outcome::Applied);
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(tree.read(QStringLiteral("real/file")), QByteArray("newer\n"));
}

void ApplyRepairTest::fileWithTwoNamesKeepsBoth()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("one"), "old and longer\n", 0600);
    QCOMPARE(::link(QFile::encodeName(file).constData(),
                    QFile::encodeName(tree.path(QStringLiteral("two"))).constData()),
             0);
    const auto before = tree.snapshot();
    QCOMPARE(apply(tree, {rewrite(file, "old and longer\n", "new\n")}).outcome, Outcome::Applied);
    QCOMPARE(tree.read(QStringLiteral("two")), QByteArray("new\n"));
    QCOMPARE(Journal(tree.journalPath()).undo(1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void ApplyRepairTest::madeThingsHaveTheirRights()
{
    const RepairTree tree;
    doctor::Change closed = create(tree.path(QStringLiteral("directory/closed")), "x");
    closed.mode = 0600;
    doctor::Change directory = createDirectory(tree.path(QStringLiteral("directory")));
    directory.mode = 01777;
    const mode_t mask = ::umask(027);
    const JournalResult result =
        apply(tree, {directory, closed, create(tree.path(QStringLiteral("usual")), "y"),
                     createLink(tree.path(QStringLiteral("link")), QStringLiteral("usual"))});
    ::umask(mask);
    QCOMPARE(result.outcome, Outcome::Applied);
    QCOMPARE(modeOf(directory.path), mode_t(01777));
    QCOMPARE(modeOf(closed.path), mode_t(0600));
    QCOMPARE(modeOf(tree.path(QStringLiteral("usual"))), mode_t(0640));
    QCOMPARE(tree.read(QStringLiteral("link")), QByteArray("y"));
}

void ApplyRepairTest::laterChangesSeeEarlierOnes()
{
    const RepairTree tree;
    const QString profile = QFileInfo(tree.write(QStringLiteral("profile/file"), "old\n")).path();
    const QString file = tree.path(QStringLiteral("profile/file"));
    const auto before = tree.snapshot();
    const JournalResult result = apply(
        tree, {move(profile, tree.path(QStringLiteral("aside"))), createDirectory(profile),
               create(file, "one\n"), rewrite(file, "one\n", "two\n"), changes::mode(file, 0600)});
    QCOMPARE(result.reason, QString());
    QCOMPARE(tree.read(QStringLiteral("profile/file")), QByteArray("two\n"));
    QCOMPARE(tree.read(QStringLiteral("aside/file")), QByteArray("old\n"));
    QCOMPARE(modeOf(file), mode_t(0600));
    QCOMPARE(Journal(tree.journalPath()).undo(1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void ApplyRepairTest::whatIsAlreadySoIsRefused()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "same\n", 0644);
    const JournalResult result =
        apply(tree, {rewrite(file, "same\n", "same\n"), changes::mode(file, 0644)});
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.reason, QStringLiteral("There is nothing left to change."));
    QVERIFY(Journal(tree.journalPath()).history().isEmpty());
}

void ApplyRepairTest::refusesWhatChangedSinceThePlan_data()
{
    QTest::addColumn<doctor::Change>("change");
    QTest::addColumn<QString>("reason");
    doctor::Change removal = remove(QStringLiteral("file"));
    removal.before = "other\n";
    QTest::newRow("content") << rewrite(QStringLiteral("file"), "other\n", "new\n")
                             << "%1 was changed after this repair was planned. Check again.";
    QTest::newRow("content to be removed")
        << removal << "%1 was changed after this repair was planned. Check again.";
    QTest::newRow("gone") << rewrite(QStringLiteral("gone"), "old\n", "new\n")
                          << "%1 is not there any more.";
    QTest::newRow("a directory now")
        << remove(QStringLiteral("directory"))
        << "%1 was changed after this repair was planned. Check again.";
    QTest::newRow("made by another")
        << create(QStringLiteral("file"), "x") << "%1 is there already.";
    QTest::newRow("target taken") << move(QStringLiteral("directory"), QStringLiteral("file"))
                                  << "%2 is there already.";
    QTest::newRow("no directory") << create(QStringLiteral("no/file"), "x")
                                  << "The directory %3/no is not there.";
    QTest::newRow("upwards") << create(QStringLiteral("directory/../x"), "x")
                             << "\"%1\" is not a whole path of a file or directory.";
    QTest::newRow("device") << rewrite(QStringLiteral("pipe"), "", "x")
                            << "%1 is neither a file nor a directory nor a link.";
    QTest::newRow("circle") << rewrite(QStringLiteral("circle"), "", "x")
                            << "%1 leads through links that lead in a circle.";
    QTest::newRow("into itself") << move(QStringLiteral("directory"), QStringLiteral("directory/x"))
                                 << "%1 cannot be moved into itself.";
}

void ApplyRepairTest::refusesWhatChangedSinceThePlan()
{
    QFETCH(doctor::Change, change);
    QFETCH(QString, reason);
    const RepairTree tree;
    const QString first = tree.write(QStringLiteral("first"), "first\n");
    tree.write(QStringLiteral("file"), "old\n");
    tree.link(QStringLiteral("circle"), "circle");
    QDir().mkpath(tree.path(QStringLiteral("directory")));
    ::mkfifo(QFile::encodeName(tree.path(QStringLiteral("pipe"))).constData(), 0600);
    const auto before = tree.snapshot();
    change.path = tree.path(change.path);
    if (!change.target.isEmpty())
        change.target = tree.path(change.target);
    const JournalResult result = apply(tree, {rewrite(first, "first\n", "changed\n"), change});
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.reason, reason.replace(QLatin1String("%1"), change.path)
                                .replace(QLatin1String("%2"), change.target)
                                .replace(QLatin1String("%3"), tree.path()));
    QCOMPARE(tree.snapshot(), before);
    QCOMPARE(QDir(tree.journalPath()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList());
}

void ApplyRepairTest::refusesALinkThatLeadsElsewhereNow()
{
    const RepairTree tree;
    doctor::Change change = rewrite(tree.link(QStringLiteral("link"), "two"), "same\n", "new\n");
    change.resolved = tree.write(QStringLiteral("one"), "same\n");
    const QString two = tree.write(QStringLiteral("two"), "same\n");
    QCOMPARE(apply(tree, {change}).reason,
             QStringLiteral("%1 leads to %2 now, and led to %3 when this repair was planned.")
                 .arg(change.path, two, change.resolved));
    change.resolved = two;
    QCOMPARE(apply(tree, {change}).outcome, Outcome::Applied);
}

void ApplyRepairTest::linksOfOthersLeadToTheirOwnFilesOnly()
{
    if (::geteuid() != 0)
        QSKIP("only root can make files of others");
    constexpr uid_t other = 12345;
    const RepairTree tree;
    const QString ours = tree.write(QStringLiteral("ours"), "old\n");
    const QString link = tree.link(QStringLiteral("link"), "ours");
    QVERIFY(giveTo(link, other));
    const JournalResult result = apply(tree, {rewrite(link, "old\n", "new\n")});
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(
        result.reason,
        QStringLiteral("%1 leads through a link of another user to %2, which is not that user's.")
            .arg(link, ours));
    QVERIFY(giveTo(ours, other));
    QCOMPARE(apply(tree, {rewrite(link, "old\n", "new\n")}).outcome, Outcome::Applied);
}

void ApplyRepairTest::directoriesBecomingLinksAreNotFollowed()
{
    const RepairTree tree;
    tree.write(QStringLiteral("elsewhere/file"), "of somebody else\n");
    tree.link(QStringLiteral("directory"), "elsewhere");
    doctor::TreeStep step;
    step.path = QFile::encodeName(tree.path(QStringLiteral("directory/file")));
    step.temporary = ".temporary";
    step.from.kind = step.to.kind = doctor::Node::Kind::File;
    step.from.content = doctor::Content("of somebody else\n");
    step.to.content = doctor::Content("changed\n");
    const doctor::Problem problem = doctor::perform(step);
    QVERIFY(problem);
    QCOMPARE(*problem,
             QStringLiteral("A directory on the way to %1 was replaced by a link or a file.")
                 .arg(tree.path(QStringLiteral("directory/file"))));
    QCOMPARE(tree.read(QStringLiteral("elsewhere/file")), QByteArray("of somebody else\n"));
}

void ApplyRepairTest::failureInTheMiddleTakesAllBack()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n");
    tree.write(QStringLiteral("full/file"), "x");
    const auto before = tree.snapshot();
    const JournalResult result = apply(
        tree, {rewrite(file, "old\n", "new\n"), create(tree.path(QStringLiteral("made")), "x"),
               remove(tree.path(QStringLiteral("full")), doctor::Change::Entry::Directory)});
    QCOMPARE(result.outcome, Outcome::Failed);
    QCOMPARE(
        result.reason,
        QStringLiteral("The directory %1 is not empty.").arg(tree.path(QStringLiteral("full"))));
    QVERIFY(result.notes.isEmpty());
    QCOMPARE(tree.snapshot(), before);
    const auto history = Journal(tree.journalPath()).history();
    QCOMPARE(history.size(), 1);
    QCOMPARE(history[0].state, doctor::JournalEntry::State::TakenBack);
}

void ApplyRepairTest::secondDoctorHasToWait()
{
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n");
    QCOMPARE(apply(tree, {rewrite(file, "old\n", "new\n")}).outcome, Outcome::Applied);
    const QByteArray lock = QFile::encodeName(tree.journalPath() + QLatin1String("/lock"));
    const doctor::Descriptor held(::open(lock.constData(), O_RDWR | O_CLOEXEC));
    QCOMPARE(::flock(held.number(), LOCK_EX), 0);
    const JournalResult result = apply(tree, {rewrite(file, "new\n", "newer\n")});
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.reason,
             QStringLiteral("Another repair is under way. Try again when it is done."));
    QCOMPARE(Journal(tree.journalPath()).undo(1).reason, result.reason);
    QCOMPARE(Journal(tree.journalPath()).history().size(), 1);
    ::flock(held.number(), LOCK_UN);
    QCOMPARE(Journal(tree.journalPath()).undo(1).outcome, Outcome::Undone);
}

void ApplyRepairTest::refusedPlanLeavesNoTrace()
{
    const RepairTree tree;
    doctor::Plan refused = plan({create(tree.path(QStringLiteral("file")), "x")});
    refused.refusal = QStringLiteral("There is no 100%1 plan.");
    Journal journal(tree.journalPath());
    const JournalResult result = journal.apply(refused);
    QCOMPARE(result.outcome, Outcome::Refused);
    QCOMPARE(result.reason, refused.refusal);
    QVERIFY(journal.recover().isEmpty());
    QVERIFY(journal.history().isEmpty());
    QCOMPARE(journal.undo(1).reason, QStringLiteral("There is no repair 1."));
    QVERIFY(!QFileInfo::exists(tree.journalPath()));
}

void ApplyRepairTest::setUserIdIsLostWithTheOwner()
{
    if (::geteuid() != 0)
        QSKIP("only root can give files away");
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("program"), "x", 04755);
    doctor::Change change = changes::mode(file, 0);
    change.mode.reset();
    change.owner = 12345;
    const auto before = tree.snapshot();
    QCOMPARE(apply(tree, {change}).outcome, Outcome::Applied);
    QCOMPARE(modeOf(file), mode_t(0755));
    QCOMPARE(QFileInfo(file).ownerId(), 12345U);
    QCOMPARE(Journal(tree.journalPath()).undo(1).outcome, Outcome::Undone);
    QCOMPARE(tree.snapshot(), before);
}

void ApplyRepairTest::commandsAreLeftToTheAdministrator()
{
    const RepairTree tree;
    doctor::Change command;
    command.kind = doctor::Change::Kind::Command;
    command.command = QStringList{QStringLiteral("touch"), tree.path(QStringLiteral("file"))};
    QCOMPARE(apply(tree, {command}).outcome, Outcome::Refused);
    QCOMPARE(apply(tree, {command, create(tree.path(QStringLiteral("made")), "x")}).outcome,
             Outcome::Applied);
    QCOMPARE(tree.snapshot().keys(), QStringList{QStringLiteral("made")});
}

QTEST_GUILESS_MAIN(ApplyRepairTest)
#include "tst_applyrepair.moc"
