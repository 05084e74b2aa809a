#include "bridge/documentfilters.h"

namespace OfficeAssiant {

const QString writerPatterns =
    QStringLiteral("*.vyr *.vyt *.doc *.dot *.docx *.dotx *.docm *.dotm");
const QString presentationPatterns =
    QStringLiteral("*.shd *.sht *.ppt *.pps *.pot *.pptx *.ppsx *.potx");
const QString spreadsheetPatterns =
    QStringLiteral("*.tbl *.tbt *.xls *.xlsx *.xlt *.xlsm *.xltx *.xltm *.xlsb");

QString filterEntry(const QString &label, const QString &patterns)
{
    return QStringLiteral("%1(%2)").arg(label, patterns);
}

QString joinedFilters(const QStringList &entries)
{
    return entries.join(QStringLiteral(";;"));
}

} // namespace OfficeAssiant
