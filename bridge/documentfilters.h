#pragma once

#include <QString>
#include <QStringList>

namespace OfficeAssiant {

struct SuiteApplication;

/// The documents of @p application as patterns of a file dialog.
QString patternsOf(const SuiteApplication &application);

/// patternsOf(spreadsheet()) in the order that two of the three dialogs show.
QString reorderedSpreadsheetPatterns();

/// A file dialog's filter entry: no blank stands between label and patterns.
QString filterEntry(const QString &label, const QString &patterns);

/// A file dialog's filter of these entries.
QString joinedFilters(const QStringList &entries);

} // namespace OfficeAssiant
