#include "doctor/journal/tree/entry.h"

#include <QFile>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>

#include "texts/texts.h"

namespace doctor {

namespace {

/// Not a problem: what was seen is not there any more.
constexpr int notAsSeen = -1;

QString shown(const QByteArray &path)
{
    return QFile::decodeName(path);
}

} // namespace

Problem problemOf(int error, const QByteArray &path)
{
    return error == 0 ? Problem() : systemProblem(error, shown(path));
}

QString changedMeanwhile(const QByteArray &path)
{
    return texts::tr("%1 was changed in the meantime.").arg(shown(path));
}

QString keptAsIs(const QByteArray &path)
{
    return texts::tr("%1 stays as it is: somebody else changed it in the meantime.")
        .arg(shown(path));
}

Entry::Entry(const TreeStep &step)
    : m_path(step.path), m_new(step.temporary + ".new"), m_old(step.temporary + ".old")
{
}

int Entry::open()
{
    return openSpot(m_path, m_spot);
}

Problem Entry::look(Depth depth, Seen &seen) const
{
    return lookAt(directory(), m_spot.name, shown(m_path), depth, seen);
}

Problem Entry::become(const Seen &seen, const Node &to, Old old) const
{
    if (to.kind == Node::Kind::Absent)
        return discard(seen, old);
    if (seen.node.kind == Node::Kind::File && seen.status.st_nlink > 1)
        return rewrite(to);
    if (Problem problem = make(to)) {
        removeNew();
        return problem;
    }
    return putInPlace(seen, old);
}

Problem Entry::dressUp(const Node &node) const
{
    const Descriptor entry(::openat(directory(), name(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    if (!entry.isOpen())
        return problemOf(errno, m_path);
    if (Problem problem = dress(entry.number(), node, shown(m_path)))
        return problem;
    // What cannot be opened, even with its new rights, reaches the disk when the system sees fit.
    const Descriptor readable(
        ::open(descriptorPath(entry.number()).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    return problemOf(readable.isOpen() ? syncDescriptor(readable.number()) : 0, m_path);
}

bool Entry::putBack(const Seen &now, const Node &expected, Problem &problem, Problem &kept) const
{
    struct stat old = {};
    if (::fstatat(directory(), m_old.constData(), &old, AT_SYMLINK_NOFOLLOW) != 0)
        return false;
    const bool isAbsent = now.node.kind == Node::Kind::Absent;
    const bool isOld =
        !isAbsent && old.st_ino == now.status.st_ino && old.st_dev == now.status.st_dev;
    int error = 0;
    if (isAbsent) {
        error = renameNew(directory(), m_old, directory(), m_spot.name);
    } else if (!isOld && areSame(now.node, expected)) {
        if (::renameat(directory(), m_old.constData(), directory(), name()) != 0)
            error = errno;
    } else {
        if (!isOld)
            kept = keptAsIs(m_path);
        error = removeEntry(directory(), m_old);
    }
    problem = problemOf(error != 0 ? error : syncDescriptor(directory()), m_path);
    return true;
}

int Entry::removeNew() const
{
    return removeEntry(directory(), m_new);
}

int Entry::removeTemporaries() const
{
    const int error = removeNew();
    return error != 0 ? error : removeEntry(directory(), m_old);
}

Problem Entry::discard(const Seen &seen, Old old) const
{
    if (seen.node.kind == Node::Kind::Directory)
        return removeDirectory();
    if (old == Old::Dropped) {
        const int error = removeEntry(directory(), m_spot.name);
        return problemOf(error != 0 ? error : syncDescriptor(directory()), m_path);
    }
    if (const int error = renameNew(directory(), m_spot.name, directory(), m_old))
        return problemOf(error, m_path);
    if (isStill(m_old, seen))
        return problemOf(syncDescriptor(directory()), m_path);
    const int error = renameNew(directory(), m_old, directory(), m_spot.name);
    return error != 0 ? problemOf(error, m_path) : changedMeanwhile(m_path);
}

Problem Entry::removeDirectory() const
{
    const int result = ::unlinkat(directory(), name(), AT_REMOVEDIR);
    if (result != 0 && (errno == ENOTEMPTY || errno == EEXIST))
        return texts::tr("The directory %1 is not empty.").arg(shown(m_path));
    return problemOf(result != 0 ? errno : syncDescriptor(directory()), m_path);
}

/// A file with several names keeps them: its content is written over. Stopped half-way, it is
/// recognised by its beginning; that is why it is cut last.
Problem Entry::rewrite(const Node &to) const
{
    const Descriptor file(::openat(directory(), name(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC));
    if (!file.isOpen())
        return problemOf(errno, m_path);
    int error = writeAll(file.number(), to.content->bytes);
    if (error == 0 && ::ftruncate(file.number(), to.content->bytes.size()) != 0)
        error = errno;
    if (error != 0)
        return problemOf(error, m_path);
    if (Problem problem = dress(file.number(), to, shown(m_path)))
        return problem;
    return problemOf(syncDescriptor(file.number()), m_path);
}

/// Makes @p node under the name for new entries, complete and on the disk.
Problem Entry::make(const Node &node) const
{
    const Descriptor made = makeEmpty(node);
    if (!made.isOpen())
        return problemOf(errno, m_path);
    if (node.kind == Node::Kind::File) {
        if (const int error = writeAll(made.number(), node.content->bytes))
            return problemOf(error, m_path);
    }
    if (Problem problem = dress(made.number(), node, shown(m_path)))
        return problem;
    return problemOf(syncDescriptor(made.number()), m_path);
}

/// Open, or not with an errno. Nobody else may open it before it has its rights.
Descriptor Entry::makeEmpty(const Node &node) const
{
    constexpr int flags = O_NOFOLLOW | O_CLOEXEC;
    const char *fresh = m_new.constData();
    switch (node.kind) {
    case Node::Kind::Link:
        if (::symlinkat(node.content->bytes.constData(), directory(), fresh) != 0)
            return Descriptor();
        return Descriptor(::openat(directory(), fresh, flags | O_PATH));
    case Node::Kind::Directory:
        if (::mkdirat(directory(), fresh, node.mode ? 0700 : 0777) != 0)
            return Descriptor();
        return Descriptor(::openat(directory(), fresh, flags | O_RDONLY | O_DIRECTORY));
    default:
        return Descriptor(::openat(directory(), fresh, flags | O_WRONLY | O_CREAT | O_EXCL,
                                   node.mode ? 0600 : 0666));
    }
}

Problem Entry::putInPlace(const Seen &seen, Old old) const
{
    const int error = seen.node.kind == Node::Kind::Absent
                          ? renameNew(directory(), m_new, directory(), m_spot.name)
                          : exchange(seen, old);
    if (error == 0)
        return problemOf(syncDescriptor(directory()), m_path);
    removeTemporaries();
    return error == EEXIST || error == notAsSeen ? changedMeanwhile(m_path)
                                                 : problemOf(error, m_path);
}

/// Replaces the old file; if it is kept, by a second name that it gets first. Where a file system
/// has no second names, the journal's copy has to do.
int Entry::exchange(const Seen &seen, Old old) const
{
    const bool isLinked =
        old == Old::Kept && ::linkat(directory(), name(), directory(), m_old.constData(), 0) == 0;
    if (!isStill(isLinked ? m_old : m_spot.name, seen))
        return notAsSeen;
    return ::renameat(directory(), m_new.constData(), directory(), name()) == 0 ? 0 : errno;
}

bool Entry::isStill(const QByteArray &name, const Seen &seen) const
{
    struct stat status = {};
    return ::fstatat(directory(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           isUntouched(status, seen.status);
}

} // namespace doctor
