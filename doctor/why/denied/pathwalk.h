#pragma once

#include <QByteArray>
#include <QVector>

#include <optional>

#include "doctor/why/denied/rights.h"

namespace doctor {

enum class Access {
    Read,  ///< read a file, list a directory
    Write, ///< write to a file; create, rename and remove in a directory
    Run,   ///< start a program, pass through a directory
};

/// What stands in the way.
enum class Obstacle {
    None,
    Rights, ///< mode or access list; see Passage::decision
    Missing,
    NotDirectory, ///< the path goes on behind something that is not a directory
    NameTooLong,
    LinkLoop,
    LinkProtected, ///< fs.protected_symlinks: another user's link in a shared sticky directory
    LinksDisabled, ///< mounted with "nosymfollow"
    ProcessPrivate,
    ReadOnlyFileSystem,
    ReadOnlyMount,
    NoExecMount,
    NotProgram, ///< neither file nor directory
    Immutable,
    AppendOnly,
    DiskFull,
    NoFreeInodes,
    Unexplained, ///< the kernel refuses, and nothing of the above is why
    Undecided,   ///< the way could not be looked at
};

/// One file, directory or link on the way.
struct Component
{
    /// Without links, but for the last name. Names need not be text.
    QByteArray path;
    bool exists = true;
    Guard guard;
    /// What a link points to.
    QByteArray target;
    /// The rights that the way needs here.
    unsigned needed = 0;
    /// Numbers of device, file and mount.
    quint64 device = 0;
    quint64 inode = 0;
    quint64 mount = 0;
    bool immutable = false;
    bool appendOnly = false;
    /// Whether the file system has access lists.
    bool takesAcl = false;
};

/// How the kernel goes along a path, up to what blocks.
struct Passage
{
    QVector<Component> chain;
    Obstacle obstacle = Obstacle::None;
    /// Index in the chain of what blocks; meaningless without an obstacle.
    int blocker = 0;
    /// Of the blocker, where its rights were asked.
    Decision decision;
    /// Of the system call that failed, for Unexplained and Undecided.
    int error = 0;
};

/// Goes along @p path as path_resolution(7) describes, for this process, but with the rights of
/// @p who. Reads names, rights and links only. Relative paths begin in the current directory.
Passage walkPath(const QByteArray &path, Access access, const Credentials &who);

/// The rights that an access takes at the end of the way.
unsigned rightsFor(Access access, mode_t mode);

} // namespace doctor
