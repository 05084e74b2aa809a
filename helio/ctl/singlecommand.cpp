#include "helio/ctl/singlecommand.h"

#include "helio/ctl/callbackwait.h"
#include "helio/ctl/eventprinter.h"
#include "helio/headless/dialoganswers.h"
#include "helio/headless/headlesspage.h"
#include "helio/headless/headlessshell.h"

namespace {

constexpr int longestUntilMs = 30000;

ctl::ExitStatus statusOf(const QJsonObject &envelope)
{
    const QString result = envelope.value(QLatin1String("result")).toString();
    return result == QLatin1String("error") || result == QLatin1String("parame error")
               ? ctl::AnsweredError
               : ctl::Answered;
}

} // namespace

ctl::ExitStatus ctl::runSingleCommand(helio::HeadlessShell &shell, const EventPrinter &printer,
                                      const CommandLine &line)
{
    helio::HeadlessPage *page = shell.page(line.page);
    CallbackWait callbacks(shell);
    helio::DialogAnswers::instance().setChoices(line.choices);
    const QJsonObject envelope = page->call(line.command, line.args);
    if (envelope.contains(QLatin1String("error"))) {
        printer.printError({}, envelope.value(QLatin1String("error")).toString());
        return WrongUsage;
    }
    printer.printAnswer({}, line.page, line.command, envelope);
    if (!line.untilCallback.isEmpty()) {
        if (!callbacks.waitFor(line.untilCallback, line.waitMs.value_or(longestUntilMs)))
            return CallbackMissing;
    } else if (line.waitMs) {
        CallbackWait::processEvents(*line.waitMs);
    }
    return statusOf(envelope);
}
