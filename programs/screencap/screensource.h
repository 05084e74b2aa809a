#pragma once

#include <QString>
#include <QStringList>

namespace programs {

/// Where the pictures come from.
struct ScreenSource
{
    /// Words of gst-launch-1.0; empty if there is none.
    QStringList words;
    /// A descriptor that the program needs; -1 for none.
    int descriptor = -1;
    /// Why there is none, for the user.
    QString reason;
};

} // namespace programs
