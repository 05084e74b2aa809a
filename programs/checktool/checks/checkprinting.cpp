#include "programs/checktool/checks/checks.h"
#include "programs/checktool/printing/printservice.h"
#include "texts/texts.h"

namespace programs {

namespace {

void reportPrinter(const Printer &printer, Findings &findings)
{
    const QString reasons =
        printer.reasons.isEmpty()
            ? QString()
            : QStringLiteral(" (%1)").arg(printer.reasons.join(QStringLiteral(", ")));
    if (printer.isStopped)
        findings.problem(texts::tr("The printer %1 is stopped%2.").arg(printer.name, reasons),
                         texts::tr("Look at its paper, toner and cable, then start it again with "
                                   "“cupsenable %1” or in the printer settings.")
                             .arg(printer.name));
    if (!printer.isAccepting)
        findings.problem(texts::tr("The printer %1 takes no jobs.").arg(printer.name),
                         texts::tr("Let it take jobs again with “cupsaccept %1” or in the printer "
                                   "settings.")
                             .arg(printer.name));
    if (!printer.isStopped && printer.isAccepting)
        findings.fine(texts::tr("The printer %1 is ready%2.").arg(printer.name, reasons));
}

void reportDefault(const PrintService &service, Findings &findings)
{
    const QString name = service.defaultPrinter;
    if (name.isEmpty())
        findings.problem(texts::tr("No printer is the default one."),
                         texts::tr("Choose one in the printer settings, or with “lpoptions -d %1”.")
                             .arg(service.printers.front().name));
    else if (!service.find(name))
        findings.problem(texts::tr("The default printer %1 is not there.").arg(name),
                         texts::tr("Choose another one in the printer settings, or with "
                                   "“lpoptions -d %1”.")
                             .arg(service.printers.front().name));
    else
        findings.fine(texts::tr("The default printer is %1.").arg(name));
}

void reportUnreachable(const PrintService &service, Findings &findings)
{
    const QString remedy =
        texts::tr("Install the package cups, and start it with “sudo systemctl start cups”.");
    if (service.address.isEmpty())
        findings.problem(
            texts::tr("The printing service (CUPS) cannot be asked: %1.").arg(service.fault),
            remedy);
    else
        findings.problem(texts::tr("The printing service (CUPS) at %1 does not answer: %2.")
                             .arg(service.address, service.fault),
                         remedy);
}

} // namespace

void checkPrinting(const Machine &machine, const QString &, const QString &argument,
                   Findings &findings)
{
    const PrintService service = askPrintService(machine);
    if (!service.fault.isEmpty()) {
        reportUnreachable(service, findings);
        return;
    }
    findings.fine(texts::tr("The printing service answers at %1.").arg(service.address));
    if (service.printers.empty()) {
        findings.problem(texts::tr("No printer is set up."),
                         texts::tr("Add one in the printer settings, or on http://localhost:631."));
        return;
    }
    if (!argument.isEmpty()) {
        const Printer *printer = service.find(argument);
        if (printer)
            reportPrinter(*printer, findings);
        else
            findings.problem(texts::tr("There is no printer named “%1”.").arg(argument),
                             texts::tr("The printers are: %1.").arg(service.names()));
        return;
    }
    reportDefault(service, findings);
    for (const Printer &printer : service.printers)
        reportPrinter(printer, findings);
}

} // namespace programs
