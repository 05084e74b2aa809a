#pragma once

#include <QStringList>

#include "doctor/why/open/entries.h"
#include "doctor/why/open/statement.h"

namespace doctor {

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
