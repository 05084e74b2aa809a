#include "tests/doctor/why/denied/generatedtree.h"

#include <QFile>

#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "doctor/why/denied/rights.h"

namespace {

constexpr uid_t firstUser = 2001;
constexpr gid_t firstGroup = 3001;
constexpr int users = 3;
constexpr int groups = 3;

void must(int result)
{
    if (result != 0)
        qFatal("a generated tree cannot be made");
}

} // namespace

GeneratedTree::GeneratedTree(const QByteArray &root, unsigned seed) : m_root(root), m_random(seed)
{
    fill(root, 0);
    const int links = number(4);
    for (int index = 0; index < links; ++index)
        addLink(root);
    for (const QByteArray &entry : qAsConst(m_entries))
        guard(entry);
}

int GeneratedTree::number(int below)
{
    return std::uniform_int_distribution<int>(0, below - 1)(m_random);
}

const QByteArray &GeneratedTree::any(const QVector<QByteArray> &paths)
{
    return paths.at(number(paths.size()));
}

void GeneratedTree::fill(const QByteArray &directory, int depth)
{
    for (const char *name : {"/a", "/b"}) {
        const QByteArray path = directory + name;
        m_entries.append(path);
        if (depth < 3 && happens(depth == 0 ? 100 : 60)) {
            must(::mkdir(path.constData(), 0700));
            fill(path, depth + 1);
        } else {
            QFile file(QFile::decodeName(path));
            must(file.open(QIODevice::WriteOnly) ? 0 : 1);
        }
    }
}

void GeneratedTree::addLink(const QByteArray &directory)
{
    const QByteArray path = directory + "/link" + QByteArray::number(m_links.size());
    const QByteArray inside = any(m_entries).mid(m_root.size() + 1);
    const QVector<QByteArray> targets{m_root + '/' + inside,
                                      inside,
                                      "./" + inside + "/../b",
                                      inside + '/',
                                      "nothing",
                                      path,
                                      m_links.isEmpty() ? inside : m_links.last()};
    must(::symlink(any(targets).constData(), path.constData()));
    m_links.append(path);
}

mode_t GeneratedTree::randomMode()
{
    mode_t mode = happens(10) ? S_ISVTX : 0;
    for (unsigned bit = 0; bit < 9; ++bit)
        mode |= happens(70) ? 1U << bit : 0U;
    return happens(10) ? mode & ~static_cast<mode_t>(S_IRWXG) : mode;
}

void GeneratedTree::guard(const QByteArray &path)
{
    using doctor::AclEntry;
    must(::chown(path.constData(), happens(15) ? 0 : firstUser + static_cast<uid_t>(number(users)),
                 firstGroup + static_cast<gid_t>(number(groups))));
    const mode_t mode = randomMode();
    must(::chmod(path.constData(), mode));
    if (!happens(40))
        return;
    doctor::Acl acl{{AclEntry::Owner, mode >> 6 & 7}};
    for (uid_t user = firstUser; user < firstUser + users; ++user) {
        if (happens(40))
            acl.append({AclEntry::User, static_cast<unsigned>(number(8)), user});
    }
    acl.append({AclEntry::OwningGroup, static_cast<unsigned>(number(8))});
    for (gid_t group = firstGroup; group < firstGroup + groups; ++group) {
        if (happens(40))
            acl.append({AclEntry::Group, static_cast<unsigned>(number(8)), group});
    }
    acl.append({AclEntry::Mask, happens(60) ? 7U : static_cast<unsigned>(number(8))});
    acl.append({AclEntry::Other, mode & 7});
    const QByteArray attribute = doctor::serialized(acl);
    must(::setxattr(path.constData(), "system.posix_acl_access", attribute.constData(),
                    static_cast<std::size_t>(attribute.size()), 0));
}

QByteArray GeneratedTree::askedPath()
{
    QByteArray path = any(m_entries);
    if (!m_links.isEmpty() && happens(40)) {
        path = any(m_links);
        if (happens(50))
            path += happens(50) ? "/a" : "/b";
    }
    if (happens(10))
        path += "/none";
    if (happens(10))
        path += "/..";
    if (happens(10))
        path += happens(50) ? "/" : "/.";
    return happens(20) ? path.mid(m_root.size() + 1) : path;
}

Actor GeneratedTree::actor()
{
    Actor actor;
    actor.user = happens(10) ? 0 : firstUser + static_cast<uid_t>(number(users));
    for (gid_t group = firstGroup; group < firstGroup + groups; ++group) {
        if (happens(40))
            actor.groups.append(group);
    }
    if (happens(10))
        actor.capabilities.append(CAP_DAC_READ_SEARCH);
    if (happens(10))
        actor.capabilities.append(CAP_DAC_OVERRIDE);
    return actor;
}
