#include <QGuiApplication>
#include <QJsonArray>
#include <QScreen>

#include "standin/checktool/facts.h"
#include "standin/checktool/probe/displayfault.h"
#include "standin/checktool/probe/probes.h"

namespace standin {

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

} // namespace standin
