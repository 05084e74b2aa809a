#include "document/suiteapplication.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <array>

namespace OfficeAssiant {

namespace {

/// In the order in which they are asked.
const std::array<SuiteApplication, 3> applications{{
    {QStringLiteral("vyr"), QStringLiteral("vyrmissfonts.ini"),
     QStringLiteral("vyr;vyt;doc;dot;docx;dotx;docm;dotm")},
    {QStringLiteral("tbl"), QStringLiteral("tblmissfonts.ini"),
     QStringLiteral("tbl;tbt;xls;xlt;xlsx;xlsm;xltx;xltm;xlsb")},
    {QStringLiteral("shw"), QStringLiteral("shwmissfonts.ini"),
     QStringLiteral("shd;sht;ppt;pps;pot;pptx;ppsx;potx")},
}};

} // namespace

const SuiteApplication *applicationFor(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix();
    if (suffix.isEmpty())
        return nullptr;
    const auto opens = [&suffix](const SuiteApplication &application) {
        return application.suffixes.split(QLatin1Char(';')).contains(suffix, Qt::CaseInsensitive);
    };
    const auto found = std::find_if(applications.begin(), applications.end(), opens);
    return found == applications.end() ? nullptr : &*found;
}

} // namespace OfficeAssiant
