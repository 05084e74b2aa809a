#pragma once

#include <QJsonArray>
#include <QString>

namespace OfficeAssiant {

/// What the desktop was found to do with the suite's documents.
struct AssociationListing
{
    enum Outcome {
        NoScript,   ///< the script that asks the desktop cannot be had
        NotStarted, ///< no shell could be started for it
        Listed,
    };

    Outcome outcome = NoScript;
    /// Of the writer, the presentation and the spreadsheet component, in this order: an object
    /// "suffix" → "finding|true or false".
    QJsonArray applications;
};

/// The three objects for what a listing script printed: lines "tag|suffix|finding|flag" with the
/// tag "vyr", "shw" or "tbl". Any other line is skipped; of two for one suffix the later counts.
QJsonArray associationsOf(const QString &scriptOutput);

} // namespace OfficeAssiant
