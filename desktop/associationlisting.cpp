#include "desktop/associationlisting.h"

#include <QJsonObject>
#include <QStringView>
#include <QVariantMap>

#include <algorithm>
#include <array>

namespace OfficeAssiant {

namespace {

/// In the order in which the page gets the applications.
constexpr std::array<const char *, 3> applicationTags{"vyr", "shw", "tbl"};
constexpr QLatin1Char fieldSeparator('|');
constexpr int fieldCount = 4;

std::size_t applicationOf(QStringView tag)
{
    const auto isTag = [&tag](const char *known) { return tag == QLatin1String(known); };
    const auto found = std::find_if(applicationTags.begin(), applicationTags.end(), isTag);
    return static_cast<std::size_t>(found - applicationTags.begin());
}

} // namespace

QJsonArray associationsOf(const QString &scriptOutput)
{
    // Maps: JSON objects get slow with very many suffixes.
    std::array<QVariantMap, applicationTags.size()> applications;
    const auto lines = QStringView(scriptOutput).split(QLatin1Char('\n'));
    for (const QStringView line : lines) {
        if (line.count(fieldSeparator) != fieldCount - 1)
            continue;
        const auto fields = line.split(fieldSeparator);
        const std::size_t application = applicationOf(fields[0]);
        if (application < applications.size())
            applications[application].insert(
                fields[1].toString(), fields[2].toString() + fieldSeparator + fields[3].toString());
    }
    QJsonArray objects;
    for (const QVariantMap &application : applications)
        objects.append(QJsonObject::fromVariantMap(application));
    return objects;
}

} // namespace OfficeAssiant
