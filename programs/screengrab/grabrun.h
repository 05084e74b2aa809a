#pragma once

#include <QString>

namespace programs {

/// The outcome of the program that takes the picture.
struct GrabRun
{
    /// The path of the picture; empty when none was taken.
    QString picture;
    QString reason;
};

/// Runs @p program for at most @p timeoutMs. Processes events meanwhile: a frozen window would hide
/// the desktop's question for permission.
GrabRun runGrabProgram(const QString &program, int timeoutMs);

} // namespace programs
