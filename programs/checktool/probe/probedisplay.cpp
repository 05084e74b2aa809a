#include <QGuiApplication>
#include <QJsonArray>
#include <QScreen>

#include "programs/checktool/machine/facts.h"
#include "programs/checktool/probe/displayfault.h"
#include "programs/checktool/probe/probes.h"

namespace programs {

namespace {

QJsonArray screenSizes()
{
    QJsonArray sizes;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens) {
        const QSize size = screen->size() * screen->devicePixelRatio();
        sizes.append(QStringLiteral("%1×%2").arg(size.width()).arg(size.height()));
    }
    return sizes;
}

} // namespace

QJsonObject probeDisplay(int &argc, char *argv[])
{
    catchDisplayFaults();
    const QGuiApplication application(argc, argv);
    return {{QLatin1String(facts::platform), QGuiApplication::platformName()},
            {QLatin1String(facts::screens), screenSizes()}};
}

} // namespace programs
