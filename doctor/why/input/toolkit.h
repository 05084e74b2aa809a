#pragma once

#include <QStringList>

namespace doctor {

/// What a process draws its windows with, and receives keys through.
struct Toolkit
{
    enum class Kind {
        None,
        Qt,
        Gtk
    };

    Kind kind = Kind::None;
    int major = 0;
    int minor = 0;
    /// As "5.15.8" or "3.24".
    QString version;
    /// The mapped library; empty for none.
    QString library;
    /// Mapped plug-ins that talk to an input method.
    QStringList plugins;
    /// Qt with its Wayland or X11 part loaded.
    bool isOnWayland = false;
    bool isOnX11 = false;

    /// "Qt 5.15.8"; empty for none.
    QString name() const;
};

Toolkit toolkitOf(const QStringList &mapped);

} // namespace doctor
