#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace OfficeAssiant {

/// A component of the suite that opens documents.
struct SuiteApplication
{
    QString executable;      ///< file name in the application directory
    QString missingFontFile; ///< in the suite's temporary directory: the fonts a document lacks
    QStringList suffixes;    ///< of its documents
};

SuiteApplication writer();
SuiteApplication spreadsheet();
SuiteApplication presentation();

/// The component that opens a file of that name, by its suffix regardless of case.
std::optional<SuiteApplication> applicationFor(const QString &path);

} // namespace OfficeAssiant
