#pragma once

#include <QByteArray>

#include "doctor/journal/tree/node.h"

namespace doctor {

/// One change of one directory entry, with all that is needed to take it back. Paths have no links
/// in them.
struct TreeStep
{
    enum class Kind {
        Replace, ///< the entry becomes another, or comes, or goes
        Rights,  ///< the entry stays, its mode and owner change
        Move,    ///< the entry gets the name target
    };

    Kind kind = Kind::Replace;
    QByteArray path;
    QByteArray target;
    /// The step's files beside path begin with this name.
    QByteArray temporary;
    Node from;
    Node to;
};

/// Does the step if the entry still is as the step expects. What was there before stays beside it
/// under a temporary name: taking the step back needs no space and gives back the very file.
Problem perform(const TreeStep &step);

/// Gives the entry back as it was, at whatever point the step was stopped, also if it was not
/// begun. What somebody else did to the entry in the meantime stays, and @p kept says so.
Problem takeBack(const TreeStep &step, Problem &kept);

/// Removes the step's temporary files.
Problem removeTemporaries(const TreeStep &step);

} // namespace doctor
