#include <QTest>

#include <csignal>
#include <functional>

#include <linux/fs.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "tests/doctor/journal/repairtree.h"
#include "tests/support/unprivileged.h"

using namespace changes;
using doctor::Journal;
using doctor::JournalResult;
using Outcome = JournalResult::Outcome;

/// Disks that are full, cannot be written, or protect a file: a clear sentence, and nothing is
/// lost.
class RepairDiskTest : public QObject
{
    Q_OBJECT

private slots:
    void fullDiskLosesNothing();
    void diskFullInTheMiddleLosesNothing();
    void fileSizeLimitLosesNothing();
    void readOnlyDiskIsNamed();
    void immutableFileIsNamed();
    void fileOfAnotherOwnerIsLeftAlone();
    void journalInAReadOnlyPlaceChangesNothing();
    void homeMayBeALink();
};

namespace {

enum ChildStatus {
    Held,
    Broken,
    NotPossible
};

bool writeLine(const char *path, const QByteArray &line)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(line) == line.size();
}

/// Mounts of one's own; who is not root is it there.
bool leaveMounts()
{
    const QByteArray user = "0 " + QByteArray::number(::geteuid()) + " 1";
    const QByteArray group = "0 " + QByteArray::number(::getegid()) + " 1";
    if (::geteuid() == 0)
        return ::unshare(CLONE_NEWNS) == 0;
    return ::unshare(CLONE_NEWNS | CLONE_NEWUSER) == 0 &&
           writeLine("/proc/self/setgroups", "deny") && writeLine("/proc/self/uid_map", user) &&
           writeLine("/proc/self/gid_map", group);
}

/// Runs @p check in a child with mounts of its own.
ChildStatus withOwnMounts(const std::function<bool()> &check)
{
    const pid_t child = ::fork();
    if (child == 0) {
        if (!leaveMounts() || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            ::_exit(NotPossible);
        ::_exit(check() ? Held : Broken);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? ChildStatus(WEXITSTATUS(status)) : Broken;
}

bool mountMemory(const QString &directory, int kilobytes)
{
    QDir().mkpath(directory);
    const QByteArray size = "size=" + QByteArray::number(kilobytes) + 'k';
    return ::mount("tmpfs", QFile::encodeName(directory).constData(), "tmpfs", 0,
                   size.constData()) == 0;
}

/// Three files of some pages, that all grow.
class GrowingTree : public RepairTree
{
public:
    explicit GrowingTree(const QString &place) : RepairTree(place) { fill(); }
    explicit GrowingTree(int kilobytes = 0)
    {
        if (kilobytes > 0 && !mountMemory(path(), kilobytes))
            qFatal("no disk for a test");
        fill();
    }

    doctor::Plan plan() const
    {
        QVector<doctor::Change> all;
        for (const char *name : {"one", "two", "three"})
            all.append(rewrite(path(QLatin1String(name)), content('a', 3), content('b', 4)));
        all.append(create(path(QStringLiteral("new")), content('c', 2)));
        return changes::plan(all);
    }

private:
    void fill() const
    {
        for (const char *name : {"one", "two", "three"})
            write(QLatin1String(name), content('a', 3));
    }

    static QByteArray content(char letter, int pages) { return QByteArray(pages * 4096, letter); }
};

bool isSame(const RepairTree &tree, const QMap<QString, QByteArray> &before)
{
    const QByteArray difference = RepairTree::difference(tree.snapshot(), before);
    if (!difference.isEmpty())
        qWarning("%s", difference.left(2000).constData());
    return difference.isEmpty();
}

/// A failed repair has lost nothing, and says what is full; one that worked can be undone.
bool losesNothing(const GrowingTree &tree, const QString &journalPath, const QString &reason,
                  int &failures)
{
    const auto before = tree.snapshot();
    Journal journal(journalPath);
    const JournalResult result = journal.apply(tree.plan());
    if (result.outcome == Outcome::Applied) {
        const auto after = tree.snapshot();
        const JournalResult undone = journal.undo(result.number);
        if (undone.outcome == Outcome::Undone)
            return isSame(tree, before);
        return undone.reason.contains(reason) && isSame(tree, after);
    }
    ++failures;
    if (!result.reason.contains(reason) || !result.notes.isEmpty()) {
        qWarning("%s", qPrintable(result.reason));
        return false;
    }
    return isSame(tree, before) && journal.recover().isEmpty();
}

} // namespace

void RepairDiskTest::fullDiskLosesNothing()
{
    // The journal on the same disk as the files.
    const ChildStatus status = withOwnMounts([] {
        int failures = 0;
        for (int kilobytes = 60; kilobytes <= 300; kilobytes += 4) {
            const QTemporaryDir disk;
            if (!mountMemory(disk.path(), kilobytes))
                return false;
            const GrowingTree tree(disk.path());
            const bool isHeld =
                losesNothing(tree, tree.journalPath(), QStringLiteral("is full."), failures);
            ::umount2(QFile::encodeName(disk.path()).constData(), MNT_DETACH);
            if (!isHeld) {
                qWarning("with %d kilobytes", kilobytes);
                return false;
            }
        }
        return failures > 5;
    });
    if (status == NotPossible)
        QSKIP("no mounts of one's own here");
    QCOMPARE(status, Held);
}

void RepairDiskTest::diskFullInTheMiddleLosesNothing()
{
    const ChildStatus status = withOwnMounts([] {
        int failures = 0;
        for (int kilobytes = 36; kilobytes <= 92; kilobytes += 4) {
            const GrowingTree tree(kilobytes);
            const bool isHeld =
                losesNothing(tree, tree.journalPath(), QStringLiteral("is full."), failures);
            ::umount(QFile::encodeName(tree.path()).constData());
            if (!isHeld) {
                qWarning("with %d kilobytes", kilobytes);
                return false;
            }
        }
        return failures > 3;
    });
    if (status == NotPossible)
        QSKIP("no mounts of one's own here");
    QCOMPARE(status, Held);
}

void RepairDiskTest::fileSizeLimitLosesNothing()
{
    const ChildStatus status = withOwnMounts([] {
        std::signal(SIGXFSZ, SIG_IGN);
        const GrowingTree tree;
        const rlimit limit{3 * 4096 + 100, 3 * 4096 + 100};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        int failures = 0;
        return losesNothing(tree, tree.journalPath(), QStringLiteral("than files may be here."),
                            failures) &&
               failures == 1;
    });
    if (status == NotPossible)
        QSKIP("no mounts of one's own here");
    QCOMPARE(status, Held);
}

void RepairDiskTest::readOnlyDiskIsNamed()
{
    const ChildStatus status = withOwnMounts([] {
        const GrowingTree tree(500);
        const auto before = tree.snapshot();
        const QByteArray path = QFile::encodeName(tree.path());
        if (::mount("tmpfs", path.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            return false;
        const JournalResult result = Journal(tree.journalPath()).apply(tree.plan());
        const bool isNamed =
            result.reason == QStringLiteral("%1 is on a disk that can only be read.")
                                 .arg(tree.path(QStringLiteral("one")));
        const bool isHeld = isNamed && result.outcome == Outcome::Failed &&
                            result.notes.isEmpty() && isSame(tree, before);
        ::umount(path.constData());
        return isHeld;
    });
    if (status == NotPossible)
        QSKIP("no mounts of one's own here");
    QCOMPARE(status, Held);
}

void RepairDiskTest::immutableFileIsNamed()
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("file"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.write("old\n") == 4 && file.flush());
    const auto setImmutable = [&file](bool isImmutable) {
        int flags = 0;
        ::ioctl(file.handle(), FS_IOC_GETFLAGS, &flags);
        flags = isImmutable ? flags | FS_IMMUTABLE_FL : flags & ~FS_IMMUTABLE_FL;
        return ::ioctl(file.handle(), FS_IOC_SETFLAGS, &flags) == 0;
    };
    if (!setImmutable(true))
        QSKIP("no immutable files here");
    Journal journal(directory.filePath(QStringLiteral("state")));
    const JournalResult written = journal.apply(plan({rewrite(path, "old\n", "new\n")}));
    const JournalResult removed = journal.apply(plan({remove(path)}));
    QVERIFY(setImmutable(false));
    const QString reason =
        QStringLiteral("%1 cannot be changed: it is protected (lsattr shows it) or "
                       "belongs to another user.")
            .arg(path);
    QCOMPARE(written.outcome, Outcome::Failed);
    QCOMPARE(written.reason, reason);
    QCOMPARE(removed.reason, reason);
    QVERIFY(written.notes.isEmpty() && removed.notes.isEmpty());
    QVERIFY(file.seek(0));
    QCOMPARE(file.readAll(), QByteArray("old\n"));
    QCOMPARE(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("file")});
}

void RepairDiskTest::fileOfAnotherOwnerIsLeftAlone()
{
    if (::geteuid() != 0)
        QSKIP("only root can make files of others");
    const RepairTree tree;
    const QString file = tree.write(QStringLiteral("file"), "old\n", 0644);
    QCOMPARE(::chown(QFile::encodeName(file).constData(), 12345, 12345), 0);
    const auto before = tree.snapshot();
    QVERIFY(testsupport::holdsUnprivileged([&] {
        const JournalResult result =
            Journal(tree.journalPath()).apply(plan({rewrite(file, "old\n", "new\n")}));
        return result.outcome == Outcome::Failed &&
               result.reason ==
                   QStringLiteral(
                       "Only the administrator can let %1 belong to its owner and group.")
                       .arg(file);
    }));
    QCOMPARE(tree.snapshot(), before);
}

void RepairDiskTest::journalInAReadOnlyPlaceChangesNothing()
{
    const ChildStatus status = withOwnMounts([] {
        const GrowingTree tree;
        const auto before = tree.snapshot();
        const QString state = tree.path() + QLatin1String("-state");
        const QByteArray path = QFile::encodeName(state);
        if (!mountMemory(state, 100) ||
            ::mount("tmpfs", path.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr) != 0)
            return false;
        const JournalResult result = Journal(state + QLatin1String("/repairs")).apply(tree.plan());
        ::umount(path.constData());
        return result.outcome == Outcome::Refused && isSame(tree, before) &&
               result.reason ==
                   QStringLiteral("%1/repairs is on a disk that can only be read.").arg(state);
    });
    if (status == NotPossible)
        QSKIP("no mounts of one's own here");
    QCOMPARE(status, Held);
}

void RepairDiskTest::homeMayBeALink()
{
    const RepairTree tree;
    tree.write(QStringLiteral("disk/user/file"), "old\n");
    const QString home = tree.link(QStringLiteral("home"), "disk/user");
    const auto before = tree.snapshot();
    Journal journal(home + QLatin1String("/.local/state/repairs"));
    QCOMPARE(
        journal.apply(plan({rewrite(home + QLatin1String("/file"), "old\n", "new\n")})).outcome,
        Outcome::Applied);
    QCOMPARE(tree.read(QStringLiteral("disk/user/file")), QByteArray("new\n"));
    QCOMPARE(journal.undo(1).outcome, Outcome::Undone);
    QVERIFY(QDir(tree.path(QStringLiteral("disk/user/.local"))).removeRecursively());
    QCOMPARE(tree.snapshot(), before);
}

QTEST_GUILESS_MAIN(RepairDiskTest)
#include "tst_repairdisk.moc"
