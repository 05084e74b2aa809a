#pragma once

#include <QStringList>

#include <vector>

namespace standin {

struct Machine;

struct Printer
{
    QString name;
    bool isStopped = false;
    bool isAccepting = true;
    QStringList reasons; ///< in CUPS's own words, such as "media-empty"
};

/// What the printing service says of itself.
struct PrintService
{
    QString address; ///< empty when not even that could be found out
    QString fault;   ///< why it does not answer; empty when it does
    QString defaultPrinter;
    std::vector<Printer> printers;

    const Printer *find(const QString &name) const;
    QString names() const;
};

/// Asks the CUPS server of the user's settings.
PrintService askPrintService(const Machine &machine);

} // namespace standin
