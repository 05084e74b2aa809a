#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

namespace doctor {

using Environment = QHash<QByteArray, QByteArray>;

enum class DisplayManager {
    Unknown,
    Gdm,
    LightDm,
    Sddm
};

/// What of a session decides which places are read.
struct SessionKind
{
    bool hasX11 = false;
    bool hasWayland = false;
    bool isGnome = false;
    bool isPlasma = false;
    /// Started by the user's systemd, whose environment it has.
    bool isManaged = false;
    DisplayManager displayManager = DisplayManager::Unknown;

    bool isX11() const { return hasX11 && !hasWayland; }
};

} // namespace doctor
