#pragma once

#include <QStringList>
#include <QVector>

#include "doctor/why/open/entries.h"
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

/// The choice of g_app_info_get_default_for_type() of GLib 2.74, which "gio open" and the desktops
/// built on GLib use, with everything that the lists say of the types.
struct GioChoice
{
    OpenChoice choice;
    /// In the order in which GLib considers them: those of the first type first.
    QVector<Statement> statements;
};

/// @p types is the asked type and those it is based on, as MimeTypes::withParents() orders them.
GioChoice gioChoice(const AssociationLists &lists, const DesktopEntries &entries,
                    const QStringList &types);

} // namespace doctor
