#include "bridge/documentfilters.h"

#include "document/suiteapplication.h"

namespace OfficeAssiant {

QString patternsOf(const SuiteApplication &application)
{
    return QLatin1String("*.") + application.suffixes.join(QLatin1String(" *."));
}

QString reorderedSpreadsheetPatterns()
{
    return QStringLiteral("*.tbl *.tbt *.xls *.xlsx *.xlt *.xlsm *.xltx *.xltm *.xlsb");
}

QString filterEntry(const QString &label, const QString &patterns)
{
    return QStringLiteral("%1(%2)").arg(label, patterns);
}

QString joinedFilters(const QStringList &entries)
{
    return entries.join(QStringLiteral(";;"));
}

} // namespace OfficeAssiant
