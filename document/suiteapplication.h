#pragma once

#include <QString>

namespace OfficeAssiant {

/// A component of the suite that opens documents.
struct SuiteApplication
{
    QString executable;      ///< file name in the application directory
    QString missingFontFile; ///< where it writes down what fonts a document lacks
    QString suffixes;        ///< of its documents, parted by ";"
};

/// The component that opens a file of that name, by its suffix in any case; null when there is
/// none.
const SuiteApplication *applicationFor(const QString &path);

} // namespace OfficeAssiant
