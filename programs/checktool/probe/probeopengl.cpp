#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include "programs/checktool/machine/facts.h"
#include "programs/checktool/probe/displayfault.h"
#include "programs/checktool/probe/probes.h"

namespace programs {

namespace {

QString openGlText(QOpenGLContext &context, unsigned int name)
{
    return QString::fromLatin1(
        reinterpret_cast<const char *>(context.functions()->glGetString(name)));
}

} // namespace

QJsonObject probeOpenGl(int &argc, char *argv[])
{
    catchDisplayFaults();
    const QGuiApplication application(argc, argv);
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    if (!context.create() || !context.makeCurrent(&surface))
        return {{QLatin1String(facts::fault),
                 QStringLiteral("no OpenGL context can be made on this display")}};
    QJsonObject found{{QLatin1String(facts::renderer), openGlText(context, GL_RENDERER)},
                      {QLatin1String(facts::version), openGlText(context, GL_VERSION)}};
    context.doneCurrent();
    return found;
}

} // namespace programs
