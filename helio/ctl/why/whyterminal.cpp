#include "helio/ctl/why/whyterminal.h"

#include <QJsonDocument>

#include <memory>

#include <unistd.h>

#include "doctor/journal/journal.h"
#include "helio/ctl/doctor/jsonprinter.h"
#include "helio/ctl/doctor/textprinter.h"
#include "helio/ctl/why/whycommand.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using helio::RepairOutcome;

std::unique_ptr<DoctorPrinter> printerFor(const WhyFlags &flags)
{
    if (flags.json)
        return std::make_unique<JsonPrinter>(QString());
    return std::make_unique<TextPrinter>(QString(), ::isatty(STDOUT_FILENO) == 1);
}

RepairOutcome attempt(const WhyFlags &flags, const helio::WhyRepair &repair, DoctorPrinter &printer)
{
    const doctor::Plan &plan = repair.plan;
    RepairOutcome outcome{plan.check, plan.repair, RepairOutcome::Result::Refused, 0, {}, {}};
    for (const doctor::Change &change : plan.changes)
        printer.printChange(plan.repair, change);
    if (flags.dryRun && !plan.changes.isEmpty()) {
        outcome.result = RepairOutcome::Result::Planned;
    } else if (!plan.refusal.isEmpty()) {
        outcome.reason = plan.refusal;
    } else if (!flags.yes && !printer.asks(texts::tr("Repair?"))) {
        outcome.reason = texts::tr("it was not confirmed");
    } else {
        doctor::Journal journal;
        outcome = helio::verifiedRepair(journal, plan, repair.verify);
    }
    return outcome;
}

} // namespace

void print(const QString &text, std::FILE *stream)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

void printAnswer(const WhyFlags &flags, const QJsonObject &object, const QString &text)
{
    print(flags.json ? QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) +
                           QLatin1Char('\n')
                     : text,
          stdout);
}

std::optional<int> endOfLine(const WhyFlags &flags, const QString &help)
{
    if (!flags.fault.isEmpty()) {
        print(QStringLiteral("assistantctl why: %1\n").arg(flags.fault), stderr);
        return WhyMisused;
    }
    if (!flags.wantsHelp)
        return {};
    print(help, stdout);
    return AccessGranted;
}

bool repair(const WhyFlags &flags, const helio::WhyRepair &repair)
{
    const std::unique_ptr<DoctorPrinter> printer = printerFor(flags);
    const RepairOutcome outcome = attempt(flags, repair, *printer);
    for (const QString &note : outcome.notes)
        printer->printNote(note);
    printer->printRepair(outcome);
    return outcome.result == RepairOutcome::Result::Repaired;
}

} // namespace ctl
