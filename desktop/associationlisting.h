#pragma once

#include <QJsonArray>
#include <QString>

namespace OfficeAssiant {

/// How the desktop treats the suite's documents.
struct AssociationListing
{
    enum Outcome {
        NoScript,   ///< the script that asks the desktop is not available
        NotStarted, ///< its shell could not be started
        Listed,
    };

    Outcome outcome = NoScript;
    /// An object "suffix" → "finding|true or false" each for writer, presentation and spreadsheet.
    QJsonArray applications;
};

/// Parses what a listing script printed into the three objects: lines "tag|suffix|finding|flag"
/// with the tag "vyr", "shw" or "tbl". Skips other lines; the last line for a suffix counts.
QJsonArray associationsOf(const QString &scriptOutput);

} // namespace OfficeAssiant
