#pragma once

#include <QString>
#include <QStringList>

namespace OfficeAssiant {

/// The suite's documents in file dialogs.
extern const QString writerPatterns;
extern const QString presentationPatterns;
extern const QString spreadsheetPatterns;

/// A file dialog's filter entry: no blank stands between label and patterns.
QString filterEntry(const QString &label, const QString &patterns);

/// Entries in the order in which the dialog offers them.
QString joinedFilters(const QStringList &entries);

} // namespace OfficeAssiant
