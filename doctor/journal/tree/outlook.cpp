#include "doctor/journal/tree/outlook.h"

#include <QDir>
#include <QFile>
#include <QVector>

#include <algorithm>
#include <cerrno>
#include <climits>

#include <fcntl.h>

#include "texts/texts.h"

namespace doctor {

namespace {

/// As many as Linux follows.
constexpr int mostLinks = 40;

QString movedBySamePlan(const QString &path)
{
    return texts::tr("%1 is moved and changed by the same plan.").arg(path);
}

/// Follows a path from the top, one name at a time, each opened: nobody can exchange what was
/// checked.
class Walk
{
public:
    Walk(const QString &path, bool followsLast)
        : m_path(path), m_names(QFile::encodeName(path).split('/')), m_followsLast(followsLast)
    {
        m_names.removeAll(QByteArray());
    }

    bool isAtEnd() const { return m_names.isEmpty(); }
    QByteArray position() const { return m_at; }
    QByteArray next() const { return m_at + '/' + m_names.first(); }
    /// Goes on to a name that is not on the disk.
    void skip() { m_at += '/' + m_names.takeFirst(); }

    Problem step()
    {
        const QByteArray name = m_names.takeFirst();
        Descriptor entry(
            ::openat(m_directory.number(), name.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
        struct stat status = {};
        if (!entry.isOpen() && errno == ENOENT && m_names.isEmpty()) {
            m_at += '/' + name;
            return {};
        }
        if (!entry.isOpen() && errno == ENOENT)
            return texts::tr("The directory %1 is not there.")
                .arg(QFile::decodeName(m_at + '/' + name));
        if (!entry.isOpen() || ::fstat(entry.number(), &status) != 0)
            return systemProblem(errno, m_path);
        if (S_ISLNK(status.st_mode) && (m_followsLast || !m_names.isEmpty()))
            return follow(entry, status.st_uid);
        if (name == "..")
            m_at.truncate(std::max(int(m_at.lastIndexOf('/')), 0));
        else
            m_at += '/' + name;
        m_owner = status.st_uid;
        if (!m_names.isEmpty() && !S_ISDIR(status.st_mode))
            return systemProblem(ENOTDIR, m_path);
        if (S_ISDIR(status.st_mode))
            m_directory = std::move(entry);
        return {};
    }

    /// The owners of links may send others only to what is their own.
    Problem checkOwners() const
    {
        const bool isTrusted = std::all_of(m_linkOwners.begin(), m_linkOwners.end(),
                                           [this](uid_t owner) { return owner == m_owner; });
        if (isTrusted)
            return {};
        return texts::tr("%1 leads through a link of another user to %2, which is not that user's.")
            .arg(m_path, QFile::decodeName(m_at));
    }

private:
    Problem follow(const Descriptor &link, uid_t owner)
    {
        QByteArray target(PATH_MAX, Qt::Uninitialized);
        const ssize_t size =
            ::readlinkat(link.number(), "", target.data(), std::size_t(target.size()));
        if (size < 0)
            return systemProblem(errno, m_path);
        target.truncate(int(size));
        if (++m_links > mostLinks)
            return texts::tr("%1 leads through links that lead in a circle.").arg(m_path);
        if (owner != 0 && owner != ::geteuid())
            m_linkOwners.append(owner);
        QList<QByteArray> names = target.split('/');
        names.removeAll(QByteArray());
        names.removeAll(QByteArrayLiteral("."));
        m_names = names + m_names;
        if (target.startsWith('/')) {
            m_at.clear();
            m_directory = top();
        }
        return {};
    }

    static Descriptor top() { return Descriptor(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)); }

    QString m_path;
    QList<QByteArray> m_names;
    bool m_followsLast;
    QByteArray m_at;
    Descriptor m_directory = top();
    uid_t m_owner = 0;
    QVector<uid_t> m_linkOwners;
    int m_links = 0;
};

Problem lookOnDisk(const QByteArray &resolved, Depth depth, Node &node)
{
    const QString path = QFile::decodeName(resolved);
    Spot spot;
    const int error = openSpot(resolved, spot);
    if (error == ENOENT)
        return {};
    if (error != 0)
        return systemProblem(error, path);
    Seen seen;
    if (Problem problem = lookAt(spot.directory.number(), spot.name, path, depth, seen))
        return problem;
    node = seen.node;
    return {};
}

} // namespace

Problem Outlook::resolve(const QString &path, LastLink lastLink, QByteArray &resolved) const
{
    const QStringList names = path.split(QLatin1Char('/'));
    if (!path.startsWith(QLatin1Char('/')) || names.contains(QLatin1String("..")) ||
        names.contains(QLatin1String(".")) || path.contains(QChar::Null) ||
        path.endsWith(QLatin1Char('/')))
        return texts::tr("\"%1\" is not a whole path of a file or directory.").arg(path);
    Walk walk(path, lastLink == LastLink::Followed);
    bool isOnDisk = true;
    while (!walk.isAtEnd()) {
        const auto expected = m_expected.constFind(walk.next());
        if (expected != m_expected.constEnd() && expected->isNew) {
            if (expected->node.kind == Node::Kind::Link)
                return movedBySamePlan(path);
            isOnDisk = false;
        }
        if (!isOnDisk) {
            walk.skip();
            continue;
        }
        if (Problem problem = walk.step())
            return problem;
    }
    resolved = walk.position();
    return isOnDisk ? walk.checkOwners() : Problem();
}

Problem Outlook::look(const QByteArray &resolved, Depth depth, Node &node) const
{
    node = Node();
    const QString path = QFile::decodeName(resolved);
    const auto own = m_expected.constFind(resolved);
    if (own != m_expected.constEnd()) {
        if (own->isMoved && depth == Depth::Everything)
            return movedBySamePlan(path);
        node = own->node;
        if (depth == Depth::Rights) {
            node.content.reset();
            node.attributes.reset();
            node.times.reset();
        }
        if (own->isNew || depth == Depth::Rights)
            return {};
        if (Problem problem = lookOnDisk(resolved, depth, node))
            return problem;
        node.mode = own->node.mode;
        node.owner = own->node.owner;
        node.group = own->node.group;
        return {};
    }
    for (int slash = resolved.lastIndexOf('/'); slash > 0;
         slash = resolved.lastIndexOf('/', slash - 1)) {
        const auto above = m_expected.constFind(resolved.left(slash));
        if (above == m_expected.constEnd())
            continue;
        if (above->isMoved)
            return movedBySamePlan(path);
        if (above->isNew)
            return {};
    }
    return lookOnDisk(resolved, depth, node);
}

bool Outlook::isEmptyDirectory(const QByteArray &resolved) const
{
    const QDir directory(QFile::decodeName(resolved));
    const QStringList names =
        directory.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    return std::all_of(names.begin(), names.end(), [&](const QString &name) {
        const auto expected = m_expected.constFind(resolved + '/' + QFile::encodeName(name));
        return expected != m_expected.constEnd() && expected->node.kind == Node::Kind::Absent;
    });
}

void Outlook::expect(const TreeStep &step)
{
    switch (step.kind) {
    case TreeStep::Kind::Move:
        m_expected.insert(step.path, {Node(), false, true});
        m_expected.insert(step.target, {step.from, true, true});
        break;
    case TreeStep::Kind::Rights: {
        Node &node = m_expected[step.path].node;
        node.kind = step.to.kind;
        node.mode = step.to.mode;
        node.owner = step.to.owner;
        node.group = step.to.group;
        break;
    }
    case TreeStep::Kind::Replace:
        m_expected.insert(step.path, {step.to, false, true});
        break;
    }
}

} // namespace doctor
