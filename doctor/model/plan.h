#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

#include <sys/types.h>

namespace doctor {

/// One change that a repair wants to make. A plan is made by reading alone.
struct Change
{
    enum class Kind {
        Write,   ///< gives an existing file new content
        Create,  ///< makes a file, a directory or a symbolic link that was not there
        Remove,  ///< removes a file, a link or an empty directory
        Move,    ///< renames path to target, which does not exist
        Rights,  ///< changes mode or owner
        End,     ///< ends a process; cannot be undone
        Command, ///< for the administrator to run; the doctor only shows it
    };
    enum class Entry { File, Directory, Link };

    Kind kind = Kind::Write;
    Entry entry = Entry::File;
    /// Absolute; links in it are followed up to the last component.
    QString path;
    /// Move: the new path. Create of a link: what it points to.
    QString target;
    /// Content that the plan was made from, and that to be written.
    std::optional<QByteArray> before;
    std::optional<QByteArray> after;
    /// Rights and Create: the permission bits and owner to be, as for chmod(2) and chown(2).
    std::optional<mode_t> mode;
    std::optional<uid_t> owner;
    std::optional<gid_t> group;
    /// End: the process, and when it was started as in /proc/PID/stat, so that no other is hit.
    qint64 process = 0;
    quint64 processStart = 0;
    /// Command: words, not yet quoted.
    QStringList command;
};

/// Everything that one repair will do, in this order.
struct Plan
{
    QString check;
    QString repair;
    QVector<Change> changes;
    /// Why nothing can be planned; empty otherwise. For people.
    QString refusal;
};

} // namespace doctor
