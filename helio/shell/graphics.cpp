#include "helio/shell/graphics.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

constexpr const char *quickBackend = "QT_QUICK_BACKEND";
constexpr const char *openGlOfX11 = "QT_XCB_GL_INTEGRATION";

bool isUsable(const QFileInfo &node)
{
    return node.isReadable() && node.isWritable();
}

} // namespace

bool shell::hasGraphicsDevice(const QString &devices)
{
    const QFileInfoList nodes =
        QDir(devices + QStringLiteral("/dri"))
            .entryInfoList({QStringLiteral("render*")}, QDir::System | QDir::Files);
    // NVIDIA's older driver, and Windows' below a Linux subsystem.
    const QFileInfoList others{QFileInfo(devices + QStringLiteral("/nvidiactl")),
                               QFileInfo(devices + QStringLiteral("/dxg"))};
    return std::any_of(nodes.begin(), nodes.end(), isUsable) ||
           std::any_of(others.begin(), others.end(), isUsable);
}

bool shell::isDrawnByProcessor(Graphics graphics)
{
    if (graphics != Graphics::Automatic)
        return graphics == Graphics::Processor;
    return !qEnvironmentVariableIsSet(quickBackend) && !qEnvironmentVariableIsSet(openGlOfX11) &&
           !hasGraphicsDevice();
}

shell::StartVariables::Values shell::processorVariables()
{
    return {{quickBackend, "software"}, {openGlOfX11, "none"}};
}
