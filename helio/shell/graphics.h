#pragma once

#include <QString>

#include "helio/shell/startvariables.h"

namespace shell {

/// What draws the window.
enum class Graphics {
    /// The graphics device if there is one, else the processor.
    Automatic,
    Device,
    Processor,
};

/// Whether a graphics device draws for this user: a render node below @p devices (drm(7)), or what
/// drivers without such nodes have.
bool hasGraphicsDevice(const QString &devices = QStringLiteral("/dev"));

/// Whether @p graphics means the processor here. What the user's environment has set for Qt holds.
bool isDrawnByProcessor(Graphics graphics);

/// The variables that have Qt and Chromium draw with the processor and leave OpenGL out. Mesa draws
/// with the processor too where there is no device, but as a compiler of shaders, which takes twice
/// the time to start and a third more memory.
StartVariables::Values processorVariables();

} // namespace shell
