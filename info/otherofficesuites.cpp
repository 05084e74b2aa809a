#include "info/otherofficesuites.h"

#include <QDir>
#include <QSettings>

#include "info/initext.h"
#include "qtversion/qtversion.h"

namespace OfficeAssiant {

namespace {

constexpr char nameFilter[] = "*%1*.desktop";
constexpr const char *suiteNames[] = {"yozo", "libreoffice", "free18"};
/// The database program opens no documents.
constexpr char leftOutPrefix[] = "libreoffice-base";
constexpr int nameColumns = 10;

QString describe(const QString &directory, const QString &fileName)
{
    QSettings entry(directory + fileName, qtversion::suiteIni());
    entry.beginGroup(QStringLiteral("Desktop Entry"));
    QString line = entry.value(QStringLiteral("Name"), fileName).toString() + QLatin1Char(' ');
    QString localizedName = localIniText(entry.value(QStringLiteral("Name[zh_CN]")));
    if (localizedName.isEmpty())
        localizedName = localIniText(entry.value(QStringLiteral("GenericName[zh_CN]")));
    line = (line + localizedName).leftJustified(nameColumns);
    return line + entry.value(QStringLiteral("Exec"), QStringLiteral(" ")).toString();
}

} // namespace

QStringList otherOfficeSuites(const QString &directory)
{
    QStringList filters;
    for (const char *name : suiteNames)
        filters.append(QLatin1String(nameFilter).arg(QLatin1String(name)));
    const QStringList files = QDir(directory).entryList(filters, QDir::Files, QDir::Unsorted);
    QStringList lines;
    for (const QString &file : files) {
        if (!file.startsWith(QLatin1String(leftOutPrefix)))
            lines.append(describe(directory, file));
    }
    return lines;
}

} // namespace OfficeAssiant
