#include "programs/apilog/addons.h"

#include "doctor/machine/filereading.h"
#include "programs/apilog/parts.h"

namespace programs {

namespace {

constexpr qint64 largestFile = 4 << 20;
constexpr int shownLogLines = 50;

} // namespace

QByteArray addonFile(const QString &path)
{
    return doctor::readFile(path, largestFile).content.value_or(QByteArray());
}

Addons addonsOf(const suites::Installation &installation)
{
    const QString shared = installation.folder + QStringLiteral("/share");
    const QString cache = QStringLiteral("/uno_packages/cache");
    Addons addons;
    addons.extensions =
        extensionsIn(installation.profile + cache, QStringLiteral("user"), installation.version) +
        extensionsIn(shared + cache, QStringLiteral("shared"), installation.version) +
        bundledExtensions(shared + QStringLiteral("/extensions"), installation.version);
    addons.macros = macrosIn(installation.profile, QStringLiteral("user")) +
                    macrosIn(shared, QStringLiteral("bundled"));
    addons.events = eventsOf(installation.profile);
    const QString log =
        QString::fromUtf8(addonFile(installation.profile + cache + QStringLiteral("/log.txt")));
    addons.log = log.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    addons.log = addons.log.mid(qMax(0, addons.log.size() - shownLogLines));
    return addons;
}

} // namespace programs
