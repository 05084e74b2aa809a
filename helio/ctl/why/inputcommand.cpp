#include "helio/ctl/why/inputcommand.h"

#include <QCommandLineParser>
#include <QJsonDocument>

#include <cstdio>
#include <memory>

#include <unistd.h>

#include "doctor/journal/journal.h"
#include "helio/ctl/doctor/jsonprinter.h"
#include "helio/ctl/doctor/optiontable.h"
#include "helio/ctl/doctor/textprinter.h"
#include "helio/ctl/why/inputreport.h"
#include "helio/ctl/why/whycommand.h"
#include "helio/doctor/inputjson.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::InputCause;
using doctor::InputRemedy;
using doctor::InputReport;
using doctor::JournalResult;
using helio::RepairOutcome;

constexpr char checkName[] = "why.input";
constexpr char repairName[] = "set";

struct Options
{
    const QCommandLineOption fix{
        QStringLiteral("fix"),
        texts::tr("Changes the line in a file of yours; shows the change and asks first.")};
    const QCommandLineOption yes{QStringLiteral("yes"),
                                 texts::tr("With --fix: repairs without asking.")};
    const QCommandLineOption dryRun{
        QStringLiteral("dry-run"),
        texts::tr("With --fix: only shows what would be changed, and writes nothing.")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  texts::tr("Prints JSON, an object a line.")};
    const QCommandLineOption help{{QStringLiteral("help"), QStringLiteral("h")},
                                  texts::tr("Shows this help.")};

    QList<QCommandLineOption> all() const { return {fix, yes, dryRun, json, help}; }
};

/// The parsed arguments.
struct Line
{
    QString fault;
    std::optional<qint64> process;
    bool wantsHelp = false;
    bool json = false;
    bool fix = false;
    bool yes = false;
    bool dryRun = false;
};

QString helpText(const Options &options)
{
    return texts::tr("Usage: assistantctl why input [OPTION...] [PID]\n\n"
                     "Says why an input method works in a process or not, and which line of which "
                     "file set its\n"
                     "variables. Without PID the session is looked at.\n\n"
                     "%1\n"
                     "Exit status: 0 nothing is wrong, 1 a cause was found, 2 wrong usage, 3 it "
                     "cannot be decided.\n")
        .arg(optionTable(options.all()));
}

Line parsed(const QStringList &arguments, const Options &options)
{
    QCommandLineParser parser;
    parser.addOptions(options.all());
    Line line;
    if (!parser.parse(QStringList(QString()) + arguments)) {
        line.fault = parser.errorText();
        return line;
    }
    line.wantsHelp = parser.isSet(options.help);
    line.json = parser.isSet(options.json);
    line.fix = parser.isSet(options.fix);
    line.yes = parser.isSet(options.yes);
    line.dryRun = parser.isSet(options.dryRun);
    for (const QCommandLineOption &option : {options.yes, options.dryRun}) {
        if (parser.isSet(option) && !line.fix)
            line.fault = texts::tr("--%1 belongs to --fix").arg(option.names().constFirst());
    }
    const QStringList words = parser.positionalArguments();
    bool isNumber = words.isEmpty();
    if (words.size() == 1)
        line.process = words.constFirst().toLongLong(&isNumber);
    if (!isNumber || line.process.value_or(1) < 1)
        line.fault = texts::tr("why input takes one process number, or none");
    return line;
}

void print(const QString &text, std::FILE *stream)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

void printReport(const Line &line, const InputReport &report,
                 const std::optional<InputRemedy> &remedy)
{
    if (line.json)
        print(
            QString::fromUtf8(
                QJsonDocument(helio::inputObject(report, remedy)).toJson(QJsonDocument::Compact)) +
                QLatin1Char('\n'),
            stdout);
    else
        print(inputText(report, remedy), stdout);
}

/// Applies the plan and reads the line again; takes back what does not help.
void apply(const doctor::Plan &plan, const InputReport &report, const InputRemedy &remedy,
           DoctorPrinter &printer, RepairOutcome &outcome)
{
    doctor::Journal journal;
    const JournalResult applied = journal.apply(plan);
    for (const QString &note : applied.notes)
        printer.printNote(note);
    outcome.journal = applied.number;
    outcome.reason = applied.reason;
    if (applied.outcome != JournalResult::Outcome::Applied)
        return;
    outcome.result = RepairOutcome::Result::Repaired;
    outcome.reason = texts::tr("it counts from the next login on");
    if (isInForce(doctor::thisMachine(), report, remedy))
        return;
    const JournalResult undone = journal.undo(applied.number);
    const bool isUndone = undone.outcome == JournalResult::Outcome::Undone;
    outcome.result = isUndone ? RepairOutcome::Result::Unchanged : RepairOutcome::Result::Failed;
    outcome.reason =
        isUndone ? texts::tr("the finding was still there, so it was taken back") : undone.reason;
}

RepairOutcome fix(const Line &line, const InputReport &report, const InputRemedy &remedy,
                  DoctorPrinter &printer)
{
    const doctor::Plan plan{
        QLatin1String(checkName), QLatin1String(repairName), remedy.changes, {}};
    RepairOutcome outcome{plan.check, plan.repair, RepairOutcome::Result::Refused, 0, {}, {}};
    for (const doctor::Change &change : plan.changes)
        printer.printChange(plan.repair, change);
    if (line.dryRun)
        outcome.result = RepairOutcome::Result::Planned;
    else if (!remedy.isOwn)
        outcome.reason = texts::tr("the administrator has to run the command");
    else if (!line.yes && !printer.asks(texts::tr("Repair?")))
        outcome.reason = texts::tr("it was not confirmed");
    else
        apply(plan, report, remedy, printer, outcome);
    return outcome;
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
    const Options options;
    const Line line = parsed(arguments, options);
    if (line.wantsHelp) {
        print(helpText(options), stdout);
        return AccessGranted;
    }
    if (!line.fault.isEmpty()) {
        print(QStringLiteral("assistantctl why: %1\n").arg(line.fault), stderr);
        return WhyMisused;
    }
    const doctor::Machine machine = doctor::thisMachine();
    const InputReport report = doctor::whyInput(machine, line.process);
    const std::optional<InputRemedy> remedy = doctor::remedyFor(machine, report);
    printReport(line, report, remedy);
    if (!line.fix || !remedy)
        return statusOf(report.cause);
    std::unique_ptr<DoctorPrinter> printer;
    if (line.json)
        printer = std::make_unique<JsonPrinter>(QString());
    else
        printer = std::make_unique<TextPrinter>(QString(), ::isatty(STDOUT_FILENO) == 1);
    const RepairOutcome outcome = fix(line, report, *remedy, *printer);
    printer->printRepair(outcome);
    return outcome.result == RepairOutcome::Result::Repaired ? int(AccessGranted)
                                                             : statusOf(report.cause);
}

} // namespace ctl
