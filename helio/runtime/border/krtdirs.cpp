#include "host/krt.h"
#include "host/vyrupdate_linux.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <algorithm>

#include "helio/runtime/configuration.h"

namespace {

QString below(const QString &directory, const QString &sub)
{
    return sub.isEmpty() ? directory : directory + QLatin1Char('/') + sub;
}

} // namespace

QString krt::dirs::orvaneHome()
{
    return helio::setting(QStringLiteral("suiteHome"),
                          QDir::homePath() + QStringLiteral("/.local/share/Orvane"));
}

QString krt::dirs::resources(const QString &sub, void *)
{
    return below(
        helio::setting(QStringLiteral("resources"), QCoreApplication::applicationDirPath()), sub);
}

QString krt::dirs::frameworks(const QString &sub, void *)
{
    return below(helio::setting(QStringLiteral("frameworks"), helio::libraryDirectory()), sub);
}

bool krt::kcmc::support(const QString &name)
{
    const QStringList components = helio::setting(QStringLiteral("components"), QString())
                                       .split(QLatin1Char(','), Qt::SkipEmptyParts);
    return std::any_of(components.begin(), components.end(),
                       [&name](const QString &component) { return component.trimmed() == name; });
}

QString vyrupdate_linux::getUpdateCfgPath(const QString &directory)
{
    return helio::setting(QStringLiteral("updateCfg"), directory + QStringLiteral("vyrupdate.cfg"));
}
