#include "helio/ctl/why/inputcommand.h"

#include "helio/ctl/doctor/optiontable.h"
#include "helio/ctl/why/inputreport.h"
#include "helio/ctl/why/whycommand.h"
#include "helio/ctl/why/whyterminal.h"
#include "helio/doctor/inputjson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::InputCause;

/// The parsed arguments.
struct InputLine : WhyFlags
{
    std::optional<qint64> process;
};

WhyOptions options()
{
    return WhyOptions(
        texts::tr("Changes the line in a file of yours; shows the change and asks first."));
}

QString helpText()
{
    return texts::tr("Usage: assistantctl why input [OPTION...] [PID]\n\n"
                     "Says why an input method works in a process or not, and which line of which "
                     "file set its\n"
                     "variables. Without PID the session is looked at.\n\n"
                     "%1\n"
                     "Exit status: 0 nothing is wrong, 1 a cause was found, 2 wrong usage, 3 it "
                     "cannot be decided.\n")
        .arg(optionTable(options().all()));
}

/// Returns what is wrong; empty if nothing is.
QString readWords(const QStringList &words, InputLine &line)
{
    bool isNumber = words.isEmpty();
    if (words.size() == 1)
        line.process = words.constFirst().toLongLong(&isNumber);
    if (!isNumber || line.process.value_or(1) < 1)
        return texts::tr("why input takes one process number, or none");
    return {};
}

InputLine parsed(const QStringList &arguments)
{
    InputLine line;
    static_cast<WhyFlags &>(line) =
        parseWhy(arguments, options(), {}, [&](const QCommandLineParser &parser) {
            return readWords(parser.positionalArguments(), line);
        });
    return line;
}

int statusOf(InputCause cause)
{
    if (cause == InputCause::None)
        return AccessGranted;
    return cause == InputCause::Undecided ? AccessUndecided : AccessDenied;
}

} // namespace

int runWhyInput(const QStringList &arguments)
{
    const InputLine line = parsed(arguments);
    if (const std::optional<int> end = endOfLine(line, helpText()))
        return *end;
    const doctor::Machine machine = doctor::thisMachine();
    const doctor::InputReport report = doctor::whyInput(machine, line.process);
    const std::optional<doctor::InputRemedy> remedy = doctor::remedyFor(machine, report);
    printAnswer(line, helio::inputObject(report, remedy), inputText(report, remedy));
    const std::optional<helio::WhyRepair> setting = helio::repairOf(machine, report, remedy);
    if (line.fix && setting && repair(line, *setting))
        return AccessGranted;
    return statusOf(report.cause);
}

} // namespace ctl
