#pragma once

#include <QStringList>

#include <vector>

namespace programs {

struct Machine;

struct Printer
{
    QString name;
    bool isStopped = false;
    bool isAccepting = true;
    QStringList reasons; ///< as CUPS names them, such as "media-empty"
};

/// The answer of the printing service.
struct PrintService
{
    QString address; ///< empty when unknown
    QString fault;   ///< why it does not answer; else empty
    QString defaultPrinter;
    std::vector<Printer> printers;

    const Printer *find(const QString &name) const;
    QString names() const;
};

/// Asks the CUPS server that the user's settings name.
PrintService askPrintService(const Machine &machine);

} // namespace programs
