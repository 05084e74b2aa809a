#include <QDataStream>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <fcntl.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "doctor/why/denied/denied.h"
#include "tests/doctor/why/denied/generatedtree.h"

using doctor::Access;
using doctor::Obstacle;

namespace {

constexpr int usualTrees = 60;
constexpr int questions = 6;
constexpr int mostRemedies = 12;

/// The kernel's own answer; errno or 0.
int ask(const QByteArray &path, unsigned rights)
{
    return ::syscall(SYS_faccessat2, AT_FDCWD, path.constData(), rights, AT_EACCESS) == 0 ? 0
                                                                                          : errno;
}

int ask(const QByteArray &path, Access access)
{
    struct stat state = {};
    return ::stat(path.constData(), &state) == 0
               ? ask(path, doctor::rightsFor(access, state.st_mode))
               : errno;
}

/// What one actor sees, from its process.
struct Seen
{
    int kernel = 0;
    int obstacle = 0;
    /// Whether the kernel passes all before the blocker, and refuses it.
    bool isBlockerRight = true;
    QByteArray blocker;
    quint32 needed = 0;
    bool hasRemedy = false;
    QStringList command;
    QByteArray acl;
    QString text;
};

QDataStream &operator<<(QDataStream &stream, const Seen &seen)
{
    return stream << seen.kernel << seen.obstacle << seen.isBlockerRight << seen.blocker
                  << seen.needed << seen.hasRemedy << seen.command << seen.acl << seen.text;
}

QDataStream &operator>>(QDataStream &stream, Seen &seen)
{
    return stream >> seen.kernel >> seen.obstacle >> seen.isBlockerRight >> seen.blocker >>
           seen.needed >> seen.hasRemedy >> seen.command >> seen.acl >> seen.text;
}

bool isBlockerRight(const doctor::Passage &passage)
{
    if (passage.obstacle != Obstacle::Rights)
        return true;
    for (int index = 0; index < passage.blocker; ++index) {
        const doctor::Component &before = passage.chain.at(index);
        if (!S_ISLNK(before.guard.mode) && ask(before.path, before.needed) != 0)
            return false;
    }
    const doctor::Component &blocker = passage.chain.at(passage.blocker);
    return ask(blocker.path, blocker.needed) == EACCES;
}

Seen look(const Actor &actor, const QByteArray &root, const QByteArray &path, Access access)
{
    const QByteArray answer = asActor(actor, root, [&] {
        const doctor::Credentials own = doctor::ownCredentials();
        const doctor::Passage passage = doctor::walkPath(path, access, own);
        Seen seen;
        seen.kernel = ask(path, access);
        seen.obstacle = static_cast<int>(passage.obstacle);
        seen.isBlockerRight = isBlockerRight(passage);
        const doctor::Component &blocker = passage.chain.at(passage.blocker);
        seen.blocker = blocker.path;
        seen.needed = blocker.needed;
        seen.text = doctor::explanation(passage);
        if (const auto remedy = doctor::remedyFor(passage, own)) {
            seen.hasRemedy = true;
            seen.command = remedy->command;
            seen.acl = remedy->acl.isEmpty() ? QByteArray() : doctor::serialized(remedy->acl);
        }
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream << seen;
        return bytes;
    });
    Seen seen;
    QDataStream stream(answer);
    stream >> seen;
    return seen;
}

int expectedError(Obstacle obstacle)
{
    switch (obstacle) {
    case Obstacle::None:
        return 0;
    case Obstacle::Rights:
    case Obstacle::LinkProtected:
        return EACCES;
    case Obstacle::Missing:
        return ENOENT;
    case Obstacle::NotDirectory:
        return ENOTDIR;
    case Obstacle::LinkLoop:
        return ELOOP;
    default:
        return -1;
    }
}

/// Three letters' worth of rights for each entry.
QByteArray rightsOf(const Actor &actor, const QByteArray &root, const QVector<QByteArray> &entries)
{
    return asActor(actor, root, [&] {
        QByteArray bits;
        for (const QByteArray &entry : entries) {
            char rights = 0;
            for (const unsigned right : {1U, 2U, 4U})
                rights = static_cast<char>(rights | (ask(entry, right) == 0 ? right : 0U));
            bits.append(rights);
        }
        return bits;
    });
}

QByteArray aclOf(const QByteArray &path)
{
    QByteArray attribute(4096, '\0');
    const ssize_t size = ::getxattr(path.constData(), "system.posix_acl_access", attribute.data(),
                                    static_cast<std::size_t>(attribute.size()));
    return attribute.left(static_cast<int>(std::max<ssize_t>(size, 0)));
}

bool runs(const QStringList &command)
{
    QProcess process;
    process.start(command.first(), command.mid(1));
    return process.waitForFinished(10000) && process.exitCode() == 0;
}

} // namespace

/// What is explained equals what the kernel does, and the remedy opens that and nothing else.
class DeniedTruthTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void explanationsAndRemediesHoldInGeneratedTrees();

private:
    void question(GeneratedTree &tree, const QByteArray &root);
    void remedy(GeneratedTree &tree, const QByteArray &root, const Actor &actor, const Seen &seen);
    bool apply(const Seen &seen);

    bool m_hasSetfacl = false;
    int m_asked = 0;
    int m_denied = 0;
    int m_remedied = 0;
    QMap<int, int> m_obstacles;
};

void DeniedTruthTest::initTestCase()
{
    if (::geteuid() != 0)
        QSKIP("only root can be other users");
    m_hasSetfacl = !QStandardPaths::findExecutable(QStringLiteral("setfacl")).isEmpty();
}

/// With the command that users are given. Where setfacl is not installed, its list is set as such.
bool DeniedTruthTest::apply(const Seen &seen)
{
    if (seen.acl.isEmpty() || m_hasSetfacl)
        return runs(seen.command) && (seen.acl.isEmpty() || aclOf(seen.blocker) == seen.acl);
    return ::setxattr(seen.blocker.constData(), "system.posix_acl_access", seen.acl.constData(),
                      static_cast<std::size_t>(seen.acl.size()), 0) == 0;
}

void DeniedTruthTest::remedy(GeneratedTree &tree, const QByteArray &root, const Actor &actor,
                             const Seen &seen)
{
    const auto isBehind = [&seen](const QByteArray &path) {
        return path == seen.blocker || path.startsWith(seen.blocker + '/');
    };
    QVector<Actor> others{actor};
    for (uid_t user : {2001U, 2002U, 2003U}) {
        for (int index = 0; index < 2; ++index) {
            Actor other = tree.actor();
            other.user = user;
            // Whatever anybody may run, CAP_DAC_OVERRIDE may run as well.
            other.capabilities.clear();
            others.append(other);
        }
    }
    QVector<QByteArray> before;
    for (const Actor &other : qAsConst(others))
        before.append(rightsOf(other, root, tree.entries()));
    QVERIFY2(apply(seen), qPrintable(seen.command.join(QLatin1Char(' '))));
    for (int index = 0; index < others.size(); ++index) {
        const QByteArray after = rightsOf(others.at(index), root, tree.entries());
        for (int entry = 0; entry < tree.entries().size(); ++entry) {
            const bool mayDiffer =
                others.at(index).user == actor.user && isBehind(tree.entries().at(entry));
            QVERIFY2(mayDiffer || before.at(index).at(entry) == after.at(entry),
                     qPrintable(seen.command.join(QLatin1Char(' ')) + QStringLiteral(" changes ") +
                                QString::fromUtf8(tree.entries().at(entry)) +
                                QStringLiteral(" for %1").arg(others.at(index).user)));
        }
    }
    const QByteArray answer = asActor(
        actor, root, [&seen] { return QByteArray::number(ask(seen.blocker, seen.needed)); });
    QCOMPARE(answer, QByteArray("0"));
    ++m_remedied;
}

void DeniedTruthTest::question(GeneratedTree &tree, const QByteArray &root)
{
    const Actor actor = tree.actor();
    const QByteArray path = tree.askedPath();
    const auto access = static_cast<Access>(tree.number(3));
    Seen seen = look(actor, root, path, access);
    ++m_asked;
    ++m_obstacles[seen.obstacle];
    m_denied += seen.kernel != 0 ? 1 : 0;
    for (int count = 0; count <= mostRemedies; ++count) {
        const auto obstacle = static_cast<Obstacle>(seen.obstacle);
        const QString told = QStringLiteral("%1 for %2 of user %3: %4")
                                 .arg(QString::fromUtf8(path))
                                 .arg(int(access))
                                 .arg(actor.user)
                                 .arg(seen.text);
        QVERIFY2(seen.kernel == expectedError(obstacle),
                 qPrintable(told + QStringLiteral(" kernel %1").arg(seen.kernel)));
        QVERIFY2(seen.isBlockerRight, qPrintable(told));
        QCOMPARE(seen.text.isEmpty(), obstacle == Obstacle::None);
        if (!seen.hasRemedy)
            return;
        QVERIFY2(count < mostRemedies, qPrintable(told));
        const QByteArray blocker = seen.blocker;
        remedy(tree, root, actor, seen);
        if (QTest::currentTestFailed())
            return;
        seen = look(actor, root, path, access);
    }
}

void DeniedTruthTest::explanationsAndRemediesHoldInGeneratedTrees()
{
    const int wanted = qEnvironmentVariableIntValue("DENIED_TREES");
    const int trees = wanted > 0 ? wanted : usualTrees;
    for (int number = 0; number < trees; ++number) {
        QTemporaryDir directory;
        QVERIFY(directory.isValid());
        const QByteArray root = QFile::encodeName(directory.path());
        QCOMPARE(::chmod(root.constData(), 0755), 0);
        GeneratedTree tree(root, static_cast<unsigned>(number));
        for (int index = 0; index < questions; ++index) {
            question(tree, root);
            if (QTest::currentTestFailed())
                qFatal("in tree %d", number);
        }
    }
    qInfo("%d questions, %d denied, %d remedies", m_asked, m_denied, m_remedied);
    for (const Obstacle obstacle : {Obstacle::None, Obstacle::Rights, Obstacle::Missing,
                                    Obstacle::NotDirectory, Obstacle::LinkLoop})
        QVERIFY2(m_obstacles.value(int(obstacle)) > trees / 50,
                 qPrintable(QString::number(int(obstacle))));
    QVERIFY(m_remedied > trees);
}

QTEST_GUILESS_MAIN(DeniedTruthTest)
#include "tst_deniedtruth.moc"
