#pragma once

#include <QByteArray>
#include <QHash>

#include "doctor/journal/tree/node.h"
#include "doctor/journal/tree/treestep.h"

namespace doctor {

/// The tree as it will be after some steps that are planned but not done. Only reads.
class Outlook
{
public:
    enum class LastLink {
        Followed,
        Kept
    };

    /// Where a path leads, without links; its last component need not be there. A link of another
    /// user counts only where it leads to what is that user's own.
    Problem resolve(const QString &path, LastLink lastLink, QByteArray &resolved) const;
    /// What will be at a resolved path.
    Problem look(const QByteArray &resolved, Depth depth, Node &node) const;
    bool isEmptyDirectory(const QByteArray &resolved) const;

    void expect(const TreeStep &step);

private:
    struct Expected
    {
        Node node;
        /// It comes from elsewhere with all that is in it.
        bool isMoved = false;
        /// What is in it on the disk now will not be there.
        bool isNew = false;
    };

    QHash<QByteArray, Expected> m_expected;
};

} // namespace doctor
