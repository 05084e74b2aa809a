#include "suites/addons/addons.h"

#include "doctor/machine/filereading.h"
#include "suites/addons/parts.h"

namespace suites {

namespace {

constexpr qint64 largestFile = 4 << 20;
constexpr int shownLogLines = 50;
constexpr char sharedFiles[] = "/share";
constexpr char cache[] = "/uno_packages/cache";

} // namespace

QByteArray addonFile(const QString &path)
{
    return doctor::readFile(path, largestFile).content.value_or(QByteArray());
}

QVector<Addon> extensionsOf(const Installation &installation)
{
    const QString shared = installation.folder + QLatin1String(sharedFiles);
    const QString &version = installation.version;
    return extensionsIn(installation.profile + QLatin1String(cache), QStringLiteral("user"),
                        version) +
           extensionsIn(shared + QLatin1String(cache), QStringLiteral("shared"), version) +
           bundledExtensions(shared + QStringLiteral("/extensions"), version);
}

Addons addonsOf(const Installation &installation)
{
    const QString shared = installation.folder + QLatin1String(sharedFiles);
    Addons addons;
    addons.extensions = extensionsOf(installation);
    addons.macros = macrosIn(installation.profile, QStringLiteral("user")) +
                    macrosIn(shared, QStringLiteral("bundled"));
    addons.events = eventsOf(installation.profile);
    const QString log = QString::fromUtf8(
        addonFile(installation.profile + QLatin1String(cache) + QStringLiteral("/log.txt")));
    addons.log = log.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    addons.log = addons.log.mid(qMax(0, addons.log.size() - shownLogLines));
    return addons;
}

} // namespace suites
