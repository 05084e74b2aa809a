#include "desktop/associationlisting.h"

#include <QJsonObject>
#include <QStringList>
#include <QVariantMap>
#include <QVector>

#include <array>

namespace OfficeAssiant {

namespace {

const QStringList applicationTags{QStringLiteral("vyr"), QStringLiteral("shw"),
                                  QStringLiteral("tbl")};
const QChar fieldSeparator = QLatin1Char('|');
constexpr int fieldCount = 4;

} // namespace

QJsonArray associationsOf(const QString &scriptOutput)
{
    // Maps and not JSON objects: these stay quick however many suffixes somebody prints.
    std::array<QVariantMap, 3> applications;
    const QVector<QStringRef> lines = scriptOutput.splitRef(QLatin1Char('\n'));
    for (const QStringRef &line : lines) {
        if (line.count(fieldSeparator) != fieldCount - 1)
            continue;
        const QVector<QStringRef> fields = line.split(fieldSeparator);
        const int application = applicationTags.indexOf(fields[0].toString());
        if (application >= 0)
            applications[static_cast<std::size_t>(application)].insert(
                fields[1].toString(), fields[2].toString() + fieldSeparator + fields[3]);
    }
    QJsonArray objects;
    for (const QVariantMap &application : applications)
        objects.append(QJsonObject::fromVariantMap(application));
    return objects;
}

} // namespace OfficeAssiant
