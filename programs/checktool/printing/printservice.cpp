#include "programs/checktool/printing/printservice.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

#include "programs/checktool/machine/facts.h"
#include "programs/checktool/machine/probe.h"

namespace programs {

namespace {

Printer printerOf(const QJsonObject &found)
{
    Printer printer;
    printer.name = found.value(QLatin1String(facts::name)).toString();
    printer.isStopped = found.value(QLatin1String(facts::isStopped)).toBool();
    printer.isAccepting = found.value(QLatin1String(facts::isAccepting)).toBool(true);
    printer.reasons = found.value(QLatin1String(facts::reasons)).toVariant().toStringList();
    return printer;
}

} // namespace

const Printer *PrintService::find(const QString &name) const
{
    const auto found = std::find_if(printers.begin(), printers.end(),
                                    [&](const Printer &printer) { return printer.name == name; });
    return found == printers.end() ? nullptr : &*found;
}

QString PrintService::names() const
{
    QStringList names;
    for (const Printer &printer : printers)
        names.append(printer.name);
    return names.join(QStringLiteral(", "));
}

PrintService askPrintService(const Machine &machine)
{
    const ProbeEnd end = runProbe(machine, Probe::Printing);
    PrintService service;
    service.fault = end.fault;
    service.address = end.facts.value(QLatin1String(facts::address)).toString();
    service.defaultPrinter = end.facts.value(QLatin1String(facts::defaultPrinter)).toString();
    const QJsonArray printers = end.facts.value(QLatin1String(facts::printers)).toArray();
    for (const QJsonValue &printer : printers)
        service.printers.push_back(printerOf(printer.toObject()));
    return service;
}

} // namespace programs
