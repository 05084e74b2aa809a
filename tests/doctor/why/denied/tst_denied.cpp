#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <linux/capability.h>
#include <linux/landlock.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "doctor/why/denied/denied.h"
#include "tests/doctor/why/denied/actor.h"

using doctor::Access;
using doctor::Denial;
using doctor::Obstacle;

namespace {

const Actor stranger{2001, {}, {}};

QByteArray told(const Denial &denial)
{
    const QString command =
        denial.remedy ? denial.remedy->command.join(QLatin1Char(' ')) : QString();
    return (QStringLiteral("%1|%2|").arg(int(denial.passage.obstacle)).arg(denial.text) + command)
        .toUtf8();
}

QByteArray expected(Obstacle obstacle, const QString &text, const QString &command = {})
{
    return (QStringLiteral("%1|%2|").arg(int(obstacle)).arg(text) + command).toUtf8();
}

const QByteArray granted = expected(Obstacle::None, {});

/// Without QProcess, which does not work in a forked child.
bool runs(const QStringList &command)
{
    QVector<QByteArray> words;
    for (const QString &word : command)
        words.append(QFile::encodeName(word));
    QVector<char *> arguments;
    for (QByteArray &word : words)
        arguments.append(word.data());
    arguments.append(nullptr);
    pid_t child = 0;
    int status = 0;
    return ::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0 &&
           ::waitpid(child, &status, 0) == child && status == 0;
}

/// What is said before and after the remedy.
QByteArray toldAndOpened(const QByteArray &path, Access access)
{
    const Denial denial = doctor::whyDenied(path, access);
    const bool ran = denial.remedy && runs(denial.remedy->command);
    return told(denial) + (ran ? '\n' + told(doctor::whyDenied(path, access)) : QByteArray());
}

/// In a child of root with mounts of its own.
QByteArray withMounts(const std::function<QByteArray()> &work)
{
    const QVector<int> allowed{CAP_SYS_ADMIN, CAP_DAC_OVERRIDE};
    return asActor({0, {}, allowed}, "/", [&]() -> QByteArray {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return "no mounts";
        return work();
    });
}

} // namespace

/// What blocks a path beside the rights on it.
class DeniedTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void pipesAreNotWaitedFor();
    void namesMayHoldAnyByte();
    void tooLongPathsAndNamesAreSaid();
    void endedProcessesAreMissing();
    void othersProcessesArePrivate();
    void linksOfProcessesAreFollowed();
    void readOnlyMountsAreNamedAndOpened();
    void readOnlyDisksAreNamedAndOpened();
    void programsOnNoexecMountsAreExplained();
    void mountsWithoutLinksAreExplained();
    void immutableFilesAreOpenedByChattr();
    void filesToAppendToAreSaid();
    void fullDisksBlockWriting();
    void disksWithoutInodesBlockNewFiles();
    void linksOfOthersInSharedDirectoriesAreProtected();
    void unknownIdsLeaveRootOfAContainerWithoutRights();
    void refusalsOfOtherKindsAreSaidToBeUnexplained();

private:
    QByteArray file(const char *name, mode_t mode = 0644) const;
    QString path(const char *name) const { return m_root.filePath(QLatin1String(name)); }
    QByteArray bytes(const char *name) const { return QFile::encodeName(path(name)); }

    QTemporaryDir m_root;
};

void DeniedTest::init()
{
    if (::geteuid() != 0)
        QSKIP("only root can be other users and mount");
    QVERIFY(m_root.isValid());
    QCOMPARE(::chmod(QFile::encodeName(m_root.path()).constData(), 0755), 0);
}

QByteArray DeniedTest::file(const char *name, mode_t mode) const
{
    QFile created(path(name));
    if (!created.open(QIODevice::WriteOnly) || ::chmod(bytes(name).constData(), mode) != 0)
        qFatal("no file for a test");
    return bytes(name);
}

void DeniedTest::pipesAreNotWaitedFor()
{
    QCOMPARE(::mkfifo(bytes("pipe").constData(), 0644), 0);
    QCOMPARE(told(doctor::whyDenied(bytes("pipe"), Access::Read)), granted);
    QCOMPARE(told(doctor::whyDenied(bytes("pipe"), Access::Run)),
             expected(Obstacle::NotProgram,
                      path("pipe") + QStringLiteral(" is neither a file nor a directory.")));
}

void DeniedTest::namesMayHoldAnyByte()
{
    const QByteArray text = file("line\nfeed\x1b[31m", 0600);
    const QByteArray noText = QFile::encodeName(m_root.path()) + "/\xff\xfe";
    QCOMPARE(::mkdir(noText.constData(), 0700), 0);
    for (const QByteArray &name : {text, QByteArray(noText + "/x")}) {
        const QByteArray answer = asActor(stranger, "/", [&name] {
            const Denial denial = doctor::whyDenied(name, Access::Read);
            return QByteArray::number(int(denial.passage.obstacle)) +
                   (denial.remedy ? " remedy" : " none");
        });
        // A command with a name that is not text would name another file.
        QCOMPARE(answer,
                 QByteArray::number(int(Obstacle::Rights)) + (name == text ? " remedy" : " none"));
    }
}

void DeniedTest::tooLongPathsAndNamesAreSaid()
{
    for (const QByteArray &name : {QByteArray(10000, '/') + 'x', bytes("") + QByteArray(300, 'n'),
                                   QByteArray("/a/").repeated(9000)}) {
        const Denial denial = doctor::whyDenied(name, Access::Read);
        QCOMPARE(told(denial),
                 expected(Obstacle::NameTooLong,
                          QStringLiteral(
                              "The path, or a name in it, is longer than the system allows.")));
        QCOMPARE(denial.verdict, Denial::Verdict::Denied);
    }
    QCOMPARE(told(doctor::whyDenied(QByteArray("/tmp/../").repeated(500) + "tmp", Access::Run)),
             granted);
}

void DeniedTest::endedProcessesAreMissing()
{
    QProcess process;
    process.start(QStringLiteral("true"), QStringList());
    const QString directory = QStringLiteral("/proc/%1").arg(process.processId());
    QVERIFY(process.waitForFinished());
    QCOMPARE(told(doctor::whyDenied((directory + QStringLiteral("/fd/1")).toUtf8(), Access::Read)),
             expected(Obstacle::Missing, directory + QStringLiteral(" does not exist.")));
}

void DeniedTest::othersProcessesArePrivate()
{
    const QByteArray link = "/proc/" + QByteArray::number(::getpid()) + "/cwd";
    QCOMPARE(asActor(stranger, "/", [&link] { return told(doctor::whyDenied(link, Access::Run)); }),
             expected(Obstacle::ProcessPrivate,
                      QString::fromUtf8(link) +
                          QStringLiteral(" belongs to a process that you may not look into.")));
}

void DeniedTest::linksOfProcessesAreFollowed()
{
    file("own");
    QCOMPARE(asActor(stranger, QFile::encodeName(m_root.path()),
                     [] { return told(doctor::whyDenied("/proc/self/cwd/own", Access::Read)); }),
             granted);
}

void DeniedTest::readOnlyMountsAreNamedAndOpened()
{
    const QByteArray directory = bytes("bound");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    const QByteArray inside = file("bound/file");
    const QByteArray answer = withMounts([&]() -> QByteArray {
        const char *point = directory.constData();
        if (::mount(point, point, nullptr, MS_BIND, nullptr) != 0 ||
            ::mount(nullptr, point, nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | MS_NODEV,
                    nullptr) != 0)
            return "no mounts";
        return toldAndOpened(inside, Access::Write);
    });
    const QString text =
        path("bound/file") + QStringLiteral(" is on a disk that can only be read.");
    QCOMPARE(answer,
             expected(Obstacle::ReadOnlyMount, text,
                      QStringLiteral("mount -o remount,bind,rw,nodev,relatime ") + path("bound")) +
                 '\n' + granted);
}

void DeniedTest::readOnlyDisksAreNamedAndOpened()
{
    const QByteArray directory = bytes("disk");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    const QByteArray answer = withMounts([&]() -> QByteArray {
        if (::mount("tmpfs", directory.constData(), "tmpfs", MS_RDONLY, nullptr) != 0)
            return "no mounts";
        return toldAndOpened(directory, Access::Write);
    });
    QVERIFY2(answer.contains("is on a disk that can only be read.|mount -o remount") &&
                 answer.endsWith('\n' + granted),
             answer.constData());
}

void DeniedTest::programsOnNoexecMountsAreExplained()
{
    const QByteArray directory = bytes("noexec");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    const QByteArray answer = withMounts([&]() -> QByteArray {
        if (::mount("tmpfs", directory.constData(), "tmpfs", MS_NOEXEC, nullptr) != 0)
            return "no mounts";
        return toldAndOpened(file("noexec/program", 0755), Access::Run);
    });
    const QString text =
        path("noexec/program") + QStringLiteral(" is on a disk from which no programs may be run.");
    QCOMPARE(answer,
             expected(Obstacle::NoExecMount, text,
                      QStringLiteral("mount -o remount,bind,rw,exec,relatime ") + path("noexec")) +
                 '\n' + granted);
}

void DeniedTest::mountsWithoutLinksAreExplained()
{
    const QByteArray directory = bytes("nolinks");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    const QByteArray answer = withMounts([&]() -> QByteArray {
        constexpr unsigned long noLinks = 256; // MS_NOSYMFOLLOW
        if (::mount("tmpfs", directory.constData(), "tmpfs", noLinks, nullptr) != 0)
            return "no mounts";
        if (::symlink("/", (directory + "/link").constData()) != 0)
            return "no link";
        return told(doctor::whyDenied(directory + "/link/etc", Access::Read));
    });
    QCOMPARE(
        answer,
        expected(Obstacle::LinksDisabled,
                 path("nolinks/link") +
                     QStringLiteral(" is a link, and its file system is mounted without links.")));
}

void DeniedTest::immutableFilesAreOpenedByChattr()
{
    const QByteArray name = file("immutable");
    if (!runs({QStringLiteral("chattr"), QStringLiteral("+i"), path("immutable")}))
        QSKIP("no attributes here");
    QCOMPARE(toldAndOpened(name, Access::Write),
             expected(Obstacle::Immutable,
                      path("immutable") +
                          QStringLiteral(" is protected against every change (lsattr shows it)."),
                      QStringLiteral("chattr -i ") + path("immutable")) +
                 '\n' + granted);
}

void DeniedTest::filesToAppendToAreSaid()
{
    const QByteArray name = file("log");
    if (!runs({QStringLiteral("chattr"), QStringLiteral("+a"), path("log")}))
        QSKIP("no attributes here");
    QFile opened(path("log"));
    QVERIFY(!opened.open(QIODevice::WriteOnly));
    QCOMPARE(toldAndOpened(name, Access::Write),
             expected(Obstacle::AppendOnly,
                      path("log") + QStringLiteral(" can only be appended to (lsattr shows it)."),
                      QStringLiteral("chattr -a ") + path("log")) +
                 '\n' + granted);
    QVERIFY(opened.open(QIODevice::WriteOnly));
}

void DeniedTest::fullDisksBlockWriting()
{
    const QByteArray directory = bytes("full");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    const QByteArray answer = withMounts([&]() -> QByteArray {
        if (::mount("tmpfs", directory.constData(), "tmpfs", 0, "size=64k") != 0)
            return "no mounts";
        QFile filler(path("full/filler"));
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return "no file";
        while (filler.write(QByteArray(4096, 'x')) > 0)
            continue;
        return told(doctor::whyDenied(directory + "/filler", Access::Write)) + '\n' +
               told(doctor::whyDenied(directory + "/filler", Access::Read));
    });
    QCOMPARE(answer,
             expected(Obstacle::DiskFull,
                      QStringLiteral("The disk that %1 is on is full.").arg(path("full/filler"))) +
                 '\n' + granted);
}

void DeniedTest::disksWithoutInodesBlockNewFiles()
{
    const QByteArray directory = bytes("crowded");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    const QByteArray answer = withMounts([&]() -> QByteArray {
        if (::mount("tmpfs", directory.constData(), "tmpfs", 0, "nr_inodes=2") != 0)
            return "no mounts";
        const QByteArray last = file("crowded/last");
        return told(doctor::whyDenied(directory, Access::Write)) + '\n' +
               told(doctor::whyDenied(last, Access::Write));
    });
    QCOMPARE(answer, expected(Obstacle::NoFreeInodes,
                              QStringLiteral("The disk that %1 is on has no room for another file.")
                                  .arg(path("crowded"))) +
                         '\n' + granted);
}

void DeniedTest::linksOfOthersInSharedDirectoriesAreProtected()
{
    const QByteArray directory = bytes("shared");
    QCOMPARE(::mkdir(directory.constData(), 0755), 0);
    QCOMPARE(::chmod(directory.constData(), 01777), 0);
    const QByteArray link = directory + "/link";
    QCOMPARE(::symlink("/etc", link.constData()), 0);
    QCOMPARE(::lchown(link.constData(), 2002, 2002), 0);
    const auto obstacle = [](const QByteArray &path, bool isProtected) {
        const QByteArray answer = asActor(stranger, "/", [&] {
            doctor::Credentials own = doctor::ownCredentials();
            // What the kernel does is compared in its present setting only.
            const bool isReal = own.protectsLinks == isProtected;
            own.protectsLinks = isProtected;
            const doctor::Passage passage = doctor::walkPath(path, Access::Read, own);
            const bool isRefused = ::access(path.constData(), R_OK) != 0;
            if (isReal && isRefused != (passage.obstacle != Obstacle::None))
                return QByteArray("-1");
            return QByteArray::number(int(passage.obstacle));
        });
        return Obstacle(answer.toInt());
    };
    QCOMPARE(obstacle(link, true), Obstacle::LinkProtected);
    QCOMPARE(obstacle(link, false), Obstacle::None);
    // Only the last name counts.
    QCOMPARE(obstacle(link + "/passwd", true), Obstacle::None);
}

void DeniedTest::unknownIdsLeaveRootOfAContainerWithoutRights()
{
    const QByteArray name = file("foreign", 0600);
    QCOMPARE(::chown(name.constData(), 2002, 2002), 0);
    const QByteArray answer = asActor(stranger, "/", [&name]() -> QByteArray {
        if (::unshare(CLONE_NEWUSER) != 0)
            return "no namespaces";
        QFile map(QStringLiteral("/proc/self/uid_map"));
        if (!map.open(QIODevice::WriteOnly | QIODevice::Unbuffered) || map.write("0 2001 1") < 0)
            return "no namespaces";
        return told(doctor::whyDenied(name, Access::Read));
    });
    if (answer == "no namespaces")
        QSKIP("no user namespaces here");
    QCOMPARE(answer,
             expected(Obstacle::Rights,
                      path("foreign") +
                          QStringLiteral(" belongs to a user or group that is unknown in this "
                                         "container, so even its root has no right to read it.")));
}

void DeniedTest::refusalsOfOtherKindsAreSaidToBeUnexplained()
{
    const QByteArray name = file("landlocked");
    const QByteArray answer = asActor(stranger, "/", [&name]() -> QByteArray {
        landlock_ruleset_attr rules{};
        rules.handled_access_fs = LANDLOCK_ACCESS_FS_READ_FILE;
        const long ruleset =
            ::syscall(SYS_landlock_create_ruleset, &rules, sizeof rules.handled_access_fs, 0);
        if (ruleset < 0 || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
            ::syscall(SYS_landlock_restrict_self, ruleset, 0) != 0)
            return "no landlock";
        const Denial denial = doctor::whyDenied(name, Access::Read);
        return denial.verdict == Denial::Verdict::Undecided ? told(denial) : QByteArray("decided");
    });
    if (answer == "no landlock")
        QSKIP("no landlock here");
    QVERIFY2(
        answer.startsWith(QByteArray::number(int(Obstacle::Unexplained)) + "|The system refuses"),
        answer.constData());
    QVERIFY(answer.endsWith('|'));
}

QTEST_GUILESS_MAIN(DeniedTest)
#include "tst_denied.moc"
