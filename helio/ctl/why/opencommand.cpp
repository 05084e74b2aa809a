#include "helio/ctl/why/opencommand.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <cstdio>
#include <memory>

#include <unistd.h>

#include "doctor/journal/journal.h"
#include "helio/ctl/doctor/jsonprinter.h"
#include "helio/ctl/doctor/optiontable.h"
#include "helio/ctl/doctor/textprinter.h"
#include "helio/ctl/why/openreport.h"
#include "helio/ctl/why/whycommand.h"
#include "helio/doctor/openjson.h"
#include "helio/doctor/verifiedrepair.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::JournalResult;
using doctor::Opening;
using doctor::OpenQuestion;
using helio::RepairOutcome;

struct Options
{
    const QCommandLineOption all{QStringLiteral("all"),
                                 texts::tr("Lists what opens each kind of the suite's documents.")};
    const QCommandLineOption fix{
        QStringLiteral("fix"),
        texts::tr("Changes one line of your mimeapps.list; shows it and asks first.")};
    const QCommandLineOption with{QStringLiteral("with"),
                                  texts::tr("With --fix: has this desktop entry open it."),
                                  QStringLiteral("ENTRY")};
    const QCommandLineOption yes{QStringLiteral("yes"),
                                 texts::tr("With --fix: repairs without asking.")};
    const QCommandLineOption dryRun{
        QStringLiteral("dry-run"),
        texts::tr("With --fix: only shows what would be changed, and writes nothing.")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  texts::tr("Prints JSON, an object a line.")};
    const QCommandLineOption help{{QStringLiteral("help"), QStringLiteral("h")},
                                  texts::tr("Shows this help.")};

    QList<QCommandLineOption> list() const { return {all, fix, with, yes, dryRun, json, help}; }
};

/// The parsed arguments.
struct Line
{
    QString fault;
    QString subject;
    QString entry;
    bool wantsHelp = false;
    bool json = false;
    bool fix = false;
    bool yes = false;
    bool dryRun = false;
};

QString helpText(const Options &options)
{
    return texts::tr("Usage: assistantctl why open [OPTION...] [FILE|TYPE]\n\n"
                     "Says which line of which file decides what opens a file or a MIME type, why "
                     "others\n"
                     "do not, and where the tools of the desktop differ.\n\n"
                     "%1\n"
                     "Exit status: 0 something opens it, 1 nothing does or not what a list says, "
                     "2 wrong\n"
                     "usage, 3 it cannot be decided.\n")
        .arg(optionTable(options.list()));
}

Line parsed(const QStringList &arguments, const Options &options)
{
    QCommandLineParser parser;
    parser.addOptions(options.list());
    Line line;
    if (!parser.parse(QStringList(QString()) + arguments)) {
        line.fault = parser.errorText();
        return line;
    }
    const QStringList words = parser.positionalArguments();
    line.subject = words.value(0);
    line.entry = parser.value(options.with);
    line.wantsHelp = parser.isSet(options.help);
    line.json = parser.isSet(options.json);
    line.fix = parser.isSet(options.fix);
    line.yes = parser.isSet(options.yes);
    line.dryRun = parser.isSet(options.dryRun);
    for (const QCommandLineOption &option : {options.with, options.yes, options.dryRun}) {
        if (parser.isSet(option) && !line.fix)
            line.fault = texts::tr("--%1 belongs to --fix").arg(option.names().constFirst());
    }
    const bool isSubjectEmpty = words.size() == 1 && line.subject.isEmpty();
    if (words.size() > 1 || isSubjectEmpty)
        line.fault = texts::tr("why open takes one file or type, or none");
    else if (parser.isSet(options.all) && !words.isEmpty())
        line.fault = texts::tr("--all takes no file or type");
    else if (line.fix && words.isEmpty())
        line.fault = texts::tr("--fix needs a file or type");
    return line;
}

void print(const QString &text, std::FILE *stream)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

void printObject(const QJsonObject &object)
{
    print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) +
              QLatin1Char('\n'),
          stdout);
}

/// A file of that name comes before a type. What names no known class of types may still be a
/// missing file, if its folder is there.
bool isType(const QString &subject)
{
    static const QRegularExpression type(
        QStringLiteral("\\A[A-Za-z0-9][A-Za-z0-9!#$&^_.+-]*/[A-Za-z0-9][A-Za-z0-9!#$&^_.+-]*\\z"));
    static const QRegularExpression known(QStringLiteral(
        "\\A(application|audio|chemical|font|image|inode|message|model|multipart|text|video|"
        "x-[a-z-]+)/"));
    if (!type.match(subject).hasMatch() || QFileInfo::exists(subject))
        return false;
    return known.match(subject).hasMatch() || !QFileInfo::exists(QFileInfo(subject).path());
}

Opening look(const OpenQuestion &question, const QString &subject)
{
    return isType(subject) ? question.ofType(subject) : question.ofFile(subject);
}

void printOpening(const Line &line, const OpenQuestion &question, const Opening &opening)
{
    if (line.json)
        printObject(helio::openObject(line.subject, question, opening));
    else
        print(openText(line.subject, question, opening), stdout);
}

int statusOf(Opening::Verdict verdict)
{
    switch (verdict) {
    case Opening::Verdict::Opens:
        return AccessGranted;
    case Opening::Verdict::NotAsSaid:
    case Opening::Verdict::Nothing:
        return AccessDenied;
    case Opening::Verdict::Undecided:
        break;
    }
    return AccessUndecided;
}

/// Applies the plan; takes it back if another entry opens the type all the same.
RepairOutcome applied(const Line &line, const doctor::Plan &plan, DoctorPrinter &printer)
{
    using Result = RepairOutcome::Result;
    RepairOutcome outcome{plan.check, plan.repair, Result::Refused, 0, {}, {}};
    doctor::Journal journal;
    const JournalResult result = journal.apply(plan);
    for (const QString &note : result.notes)
        printer.printNote(note);
    outcome.journal = result.number;
    outcome.reason = result.reason;
    if (result.outcome != JournalResult::Outcome::Applied)
        return outcome;
    outcome.result = Result::Repaired;
    const Opening now = look(OpenQuestion(doctor::thisMachine()), line.subject);
    if (now.gio.choice.entry == line.entry)
        return outcome;
    const JournalResult undone = journal.undo(result.number);
    const bool isUndone = undone.outcome == JournalResult::Outcome::Undone;
    outcome.result = isUndone ? Result::Unchanged : Result::Failed;
    outcome.reason = isUndone ? texts::tr("%1 decides all the same, so it was taken back")
                                    .arg(now.gio.choice.where.path)
                              : undone.reason;
    return outcome;
}

RepairOutcome repair(const Line &line, const doctor::Plan &plan, DoctorPrinter &printer)
{
    using Result = RepairOutcome::Result;
    RepairOutcome outcome{plan.check, plan.repair, Result::Refused, 0, plan.refusal, {}};
    if (!plan.refusal.isEmpty())
        return outcome;
    for (const doctor::Change &change : plan.changes)
        printer.printChange(plan.repair, change);
    outcome.result = line.dryRun ? Result::Planned : Result::Refused;
    if (line.dryRun)
        return outcome;
    if (!line.yes && !printer.asks(texts::tr("Repair?"))) {
        outcome.reason = texts::tr("it was not confirmed");
        return outcome;
    }
    return applied(line, plan, printer);
}

int fix(Line line, const OpenQuestion &question, const Opening &opening)
{
    if (line.entry.isEmpty())
        line.entry = opening.proposal;
    if (line.entry.isEmpty() || opening.types.isEmpty()) {
        print(texts::tr("There is nothing to repair; --with ENTRY chooses what opens it.") +
                  QLatin1Char('\n'),
              stderr);
        return statusOf(opening.verdict);
    }
    std::unique_ptr<DoctorPrinter> printer;
    if (line.json)
        printer = std::make_unique<JsonPrinter>(QString());
    else
        printer = std::make_unique<TextPrinter>(QString(), ::isatty(STDOUT_FILENO) == 1);
    const QString problem = doctor::entryProblem(question.entries().entry(line.entry));
    doctor::Plan plan = question.repair(opening.found.type, line.entry);
    if (!problem.isEmpty())
        plan.refusal = line.entry + QStringLiteral(": ") + problem;
    const RepairOutcome outcome = repair(line, plan, *printer);
    printer->printRepair(outcome);
    if (outcome.result != RepairOutcome::Result::Repaired)
        return std::max<int>(statusOf(opening.verdict), AccessDenied);
    const OpenQuestion after(doctor::thisMachine());
    const Opening now = look(after, line.subject);
    printOpening(line, after, now);
    return statusOf(now.verdict);
}

int listAll(const Line &line, const OpenQuestion &question)
{
    bool areAllOpened = true;
    for (const doctor::SuffixOpening &row : question.ofSuffixes()) {
        areAllOpened = areAllOpened && !row.gio.entry.isEmpty();
        if (line.json)
            printObject(helio::suffixObject(row));
        else
            print(suffixText(row), stdout);
    }
    return areAllOpened ? AccessGranted : AccessDenied;
}

} // namespace

int runWhyOpen(const QStringList &arguments)
{
    const Options options;
    const Line line = parsed(arguments, options);
    if (!line.fault.isEmpty()) {
        print(QStringLiteral("assistantctl why: %1\n").arg(line.fault), stderr);
        return WhyMisused;
    }
    if (line.wantsHelp) {
        print(helpText(options), stdout);
        return AccessGranted;
    }
    const OpenQuestion question(doctor::thisMachine());
    if (line.subject.isEmpty())
        return listAll(line, question);
    const Opening opening = look(question, line.subject);
    printOpening(line, question, opening);
    return line.fix ? fix(line, question, opening) : statusOf(opening.verdict);
}

} // namespace ctl
