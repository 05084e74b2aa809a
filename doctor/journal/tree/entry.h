#pragma once

#include <QByteArray>

#include "doctor/journal/tree/node.h"
#include "doctor/journal/tree/treestep.h"

namespace doctor {

/// 0 is no problem.
Problem problemOf(int error, const QByteArray &path);
QString changedMeanwhile(const QByteArray &path);
QString keptAsIs(const QByteArray &path);

/// A directory entry on its way from one node to another, with the temporary files beside it: the
/// new one while it is made, and the old one until nobody can want it back.
class Entry
{
public:
    explicit Entry(const TreeStep &step);

    /// 0 or an errno; nothing else works before.
    int open();
    Problem look(Depth depth, Seen &seen) const;
    enum class Old {
        Kept,
        Dropped
    };
    /// Turns @p seen, which is there now, into @p to; keeps the old file beside or not.
    Problem become(const Seen &seen, const Node &to, Old old) const;
    /// Gives what is there the rights, attributes and times of @p node.
    Problem dressUp(const Node &node) const;

    /// Puts the old file back, if there is one beside; only in the place of @p expected, or of
    /// nothing.
    /// @return whether there was one
    bool putBack(const Seen &now, const Node &expected, Problem &problem, Problem &kept) const;
    int removeNew() const;
    int removeTemporaries() const;

private:
    Problem discard(const Seen &seen, Old old) const;
    Problem removeDirectory() const;
    Problem rewrite(const Node &to) const;
    Problem make(const Node &node) const;
    Descriptor makeEmpty(const Node &node) const;
    Problem putInPlace(const Seen &seen, Old old) const;
    int exchange(const Seen &seen, Old old) const;
    bool isStill(const QByteArray &name, const Seen &seen) const;
    int directory() const { return m_spot.directory.number(); }
    const char *name() const { return m_spot.name.constData(); }

    QByteArray m_path;
    QByteArray m_new;
    QByteArray m_old;
    Spot m_spot;
};

} // namespace doctor
