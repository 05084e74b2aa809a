#pragma once

#include <QString>
#include <QVector>

#include "doctor/model/finding.h"
#include "doctor/why/open/lists.h"

namespace doctor {

/// What becomes of an entry that a list names for a type.
enum class Fate {
    Decides,
    Later,       ///< another entry had decided before
    Repeated,    ///< the same entry was named before
    Removed,     ///< a list before removes it
    Removes,     ///< this line takes an entry out
    RemovesLate, ///< it takes out an entry that counted before, or that was not there
    Masked,      ///< an entry of this name in a directory before counts instead
    NotObeyed,   ///< such a file may not say that
    Fails        ///< the desktop entry cannot be used
};

/// One entry that a line of a list names.
struct Statement
{
    QString type;
    ListGroup group = ListGroup::Default;
    Place where;
    QString entry;
    Fate fate = Fate::Later;
};

/// What a tool opens a type with.
struct OpenChoice
{
    /// The desktop entry's name and, where the tool finds it, its file; empty if there is none.
    QString entry;
    QString path;
    /// The type for which it was found, the asked one or a more general one.
    QString type;
    /// The line that decides, or the desktop entry that was found without one.
    Place where;
};

} // namespace doctor
