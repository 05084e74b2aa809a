#pragma once

#include <QStringList>
#include <QVector>

namespace tools {

/// A heading with lines below it, for the window and the terminal alike.
struct ReportEntry
{
    QString heading;
    QStringList lines;
    bool hasFault = false;
};

struct ReportSection
{
    QString title;
    QVector<ReportEntry> entries;
};

/// Extensions, macros, events and log of the LibreOffice that is looked after; empty without one.
QVector<ReportSection> addonReport();

/// Prints the report. Returns the exit status: 1 without LibreOffice.
int printAddonReport();

} // namespace tools
