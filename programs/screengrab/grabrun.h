#pragma once

#include <QString>

namespace standin {

/// How a run of the program that takes the picture ended.
struct GrabRun
{
    /// The picture's path; empty when none was taken.
    QString picture;
    QString reason;
};

/// Runs @p program to its end, @p timeoutMs at most, and processes events meanwhile: a window that
/// does not answer would stand in the way of the desktop's question whether it may be done.
GrabRun runGrabProgram(const QString &program, int timeoutMs);

} // namespace standin
