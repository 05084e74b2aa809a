#include "document/suiteapplication.h"

#include <QFileInfo>

namespace OfficeAssiant {

namespace {

SuiteApplication application(QLatin1String executable, QLatin1String suffixes)
{
    return {executable, executable + QLatin1String("missfonts.ini"),
            QString(suffixes).split(QLatin1Char(' '))};
}

} // namespace

SuiteApplication writer()
{
    return application(QLatin1String("vyr"), QLatin1String("vyr vyt doc dot docx dotx docm dotm"));
}

SuiteApplication spreadsheet()
{
    return application(QLatin1String("tbl"),
                       QLatin1String("tbl tbt xls xlt xlsx xlsm xltx xltm xlsb"));
}

SuiteApplication presentation()
{
    return application(QLatin1String("shw"), QLatin1String("shd sht ppt pps pot pptx ppsx potx"));
}

std::optional<SuiteApplication> applicationFor(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix();
    for (const SuiteApplication &candidate : {writer(), spreadsheet(), presentation()}) {
        if (candidate.suffixes.contains(suffix, Qt::CaseInsensitive))
            return candidate;
    }
    return std::nullopt;
}

} // namespace OfficeAssiant
