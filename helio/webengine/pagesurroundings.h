#pragma once

#include <QString>

namespace helio {

/// What pages are told about the desktop.
struct PageSurroundings
{
    /// "light" or "dark".
    QString theme;
    /// Such as "zh_CN".
    QString language;

    bool isDark() const { return theme == QLatin1String("dark"); }
};

} // namespace helio
