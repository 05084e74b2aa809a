#pragma once

#include <QString>
#include <QStringList>

#include "doctor/machine/machine.h"

namespace doctor {

/// Where a session looks for associations, desktop entries and MIME types. Directories have no
/// slash at their end and stand in the order in which they count.
struct OpenPlaces
{
    Machine machine;
    QStringList config;
    QStringList data;
    /// XDG_CURRENT_DESKTOP, as it is written.
    QStringList desktops;
    /// Directories of PATH.
    QStringList programs;
    QString menuPrefix;

    /// Whether a program that a desktop entry names can be run, as GLib looks for it.
    bool hasProgram(const QString &name) const;
    /// Whether the kernel would run it.
    bool isProgram(const QString &path) const;
};

/// As the XDG standard for base directories has them.
OpenPlaces openPlaces(const Machine &machine);

} // namespace doctor
