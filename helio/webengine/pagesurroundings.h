#pragma once

#include <QString>

namespace helio {

/// What the window tells its pages about the desktop.
struct PageSurroundings
{
    /// "light" or "dark".
    QString theme;
    /// As in "zh_CN".
    QString language;

    bool isDark() const { return theme == QLatin1String("dark"); }
};

} // namespace helio
