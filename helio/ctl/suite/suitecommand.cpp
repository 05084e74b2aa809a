#include "helio/ctl/suite/suitecommand.h"

#include <QCommandLineParser>

#include <algorithm>
#include <csignal>

#include "doctor/machine/machine.h"
#include "helio/ctl/doctor/messagelocale.h"
#include "helio/ctl/doctor/optiontable.h"
#include "helio/ctl/suite/suitetext.h"
#include "helio/ctl/why/whyterminal.h"
#include "helio/suite/cleanstart.h"
#include "helio/suite/profilereset.h"
#include "helio/suite/starttime.h"
#include "helio/suite/statejson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

struct Options
{
    const QCommandLineOption keep{
        QStringLiteral("keep"),
        texts::tr("With reset: the parts of the profile that stay, with commas between them."),
        QStringLiteral("PARTS")};
    const QCommandLineOption measure{
        QStringLiteral("measure"),
        texts::tr("With start: says how long it takes with the profile and without.")};
    const QCommandLineOption yes{QStringLiteral("yes"), texts::tr("Does not ask.")};
    const QCommandLineOption dryRun{QStringLiteral("dry-run"), texts::tr("Changes nothing.")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  texts::tr("Prints JSON, an object a line.")};
    const QCommandLineOption help{{QStringLiteral("help"), QStringLiteral("h")},
                                  texts::tr("Shows this help.")};

    QList<QCommandLineOption> all() const { return {keep, measure, yes, dryRun, json, help}; }
};

QString helpText(const Options &options)
{
    return texts::tr("Usage: assistantctl suite [OPTION...] [reset|restore|start]\n"
                     "       assistantctl suite choose FOLDER\n\n"
                     "Shows the office suite that is looked after: version, state, profile and "
                     "extensions.\n"
                     "reset moves its profile aside but for the parts to keep, and restore brings "
                     "it back;\n"
                     "both show what they will do and ask first. start starts it with a temporary "
                     "profile.\n"
                     "choose looks after the installation in that folder from now on.\n\n"
                     "%1\n"
                     "Exit status: 0 done, 1 not done or no suite, 2 wrong usage.\n")
        .arg(optionTable(options.all()));
}

int misused(const QString &fault)
{
    print(QStringLiteral("assistantctl suite: %1\n").arg(fault), stderr);
    return SuiteMisused;
}

/// Parts that no suite has; nothing is reset then.
QStringList unknownParts(const QStringList &parts, const suites::Description &description)
{
    QStringList unknown;
    std::copy_if(parts.begin(), parts.end(), std::back_inserter(unknown), [&](const QString &id) {
        return id != suites::otherPart &&
               std::none_of(description.parts.begin(), description.parts.end(),
                            [&id](const suites::ProfilePart &part) { return part.id == id; });
    });
    return unknown;
}

int changeProfile(const doctor::Plan &plan, const suites::State &state,
                  const doctor::Machine &machine, const WhyFlags &flags)
{
    const auto verify = [plan]() -> helio::Verification {
        return {helio::isMade(plan) ? helio::Verification::State::Gone
                                    : helio::Verification::State::Remains,
                {}};
    };
    doctor::Plan checked = plan;
    if (checked.refusal.isEmpty())
        checked.refusal = helio::runningProblem(state.installation, machine);
    return repair(flags, {checked, verify}) || (flags.dryRun && checked.refusal.isEmpty())
               ? SuiteDone
               : SuiteNotDone;
}

volatile std::sig_atomic_t isInterrupted = 0;

void interrupt(int)
{
    isInterrupted = 1;
}

int failed(const QString &problem)
{
    print(problem + QLatin1Char('\n'), stderr);
    return SuiteNotDone;
}

int measure(const suites::State &state, const WhyFlags &flags)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        std::signal(signal, interrupt);
    int shown = -1;
    const auto watch = [&shown, &flags](int done, int all) {
        if (done > shown && !flags.json)
            print(texts::tr("Start %1 of %2").arg(done + 1).arg(all) + QLatin1Char('\n'), stderr);
        shown = done;
        return isInterrupted == 0;
    };
    const helio::StartTimes times = helio::measuredStart(state, watch);
    if (times.isCancelled || !times.problem.isEmpty())
        return failed(times.isCancelled ? texts::tr("Cancelled.") : times.problem);
    printAnswer(flags, flags.json ? helio::startTimesObject(times) : QJsonObject(),
                startTimesText(times));
    return SuiteDone;
}

int start(const suites::Installation &installation)
{
    const QString problem = helio::startClean(installation);
    return problem.isEmpty() ? SuiteDone : failed(problem);
}

int choose(const QString &folder, const doctor::Machine &machine)
{
    for (const suites::Installation &one : helio::allInstallations(machine)) {
        if (one.folder != folder)
            continue;
        const QString problem = suites::keepChoice(one, machine);
        return problem.isEmpty() ? SuiteDone : failed(problem);
    }
    return failed(texts::tr("There is no suite in %1").arg(folder));
}

int carryOut(const QString &word, const QStringList &keep, bool measures, const WhyFlags &flags)
{
    const doctor::Machine machine = doctor::thisMachine();
    const std::optional<suites::State> state = helio::stateOfChosen(machine);
    if (!state)
        return failed(texts::tr("No office suite is installed."));
    const QStringList unknown =
        unknownParts(keep, *suites::descriptionNamed(state->installation.suite));
    if (!unknown.isEmpty())
        return misused(texts::tr("no such part of a profile: %1").arg(unknown.first()));
    if (word == QLatin1String("reset"))
        return changeProfile(helio::resetPlan(*state, keep, machine), *state, machine, flags);
    if (word == QLatin1String("restore"))
        return changeProfile(helio::restorePlan(*state, machine), *state, machine, flags);
    if (word == QLatin1String("start"))
        return measures ? measure(*state, flags) : start(state->installation);
    printAnswer(flags, flags.json ? helio::suiteDescription(machine) : QJsonObject(),
                suiteText(*state));
    return SuiteDone;
}

/// What is wrong with the words and the options that belong to one of them; empty if nothing is.
QString faultOf(const QStringList &words, bool keeps, bool measures)
{
    static const QStringList known{QStringLiteral("reset"), QStringLiteral("restore"),
                                   QStringLiteral("start")};
    const QString word = words.value(0);
    const bool isChoice = words.size() == 2 && word == QLatin1String("choose");
    if (!isChoice && (words.size() > 1 || (!words.isEmpty() && !known.contains(word))))
        return texts::tr("expected: reset, restore, start, choose FOLDER or nothing");
    if (keeps && word != QLatin1String("reset"))
        return texts::tr("--keep belongs to reset");
    return measures && word != QLatin1String("start") ? texts::tr("--measure belongs to start")
                                                      : QString();
}

} // namespace

int runSuite(const QStringList &arguments)
{
    texts::useLanguage(messageLocale(doctor::thisMachine()));
    const Options options;
    QCommandLineParser parser;
    parser.addOptions(options.all());
    if (!parser.parse(QStringList(QString()) + arguments))
        return misused(parser.errorText());
    if (parser.isSet(options.help)) {
        print(helpText(options), stdout);
        return SuiteDone;
    }
    const QStringList words = parser.positionalArguments();
    const bool measures = parser.isSet(options.measure);
    const QString fault = faultOf(words, parser.isSet(options.keep), measures);
    if (!fault.isEmpty())
        return misused(fault);
    WhyFlags flags;
    flags.json = parser.isSet(options.json);
    flags.yes = parser.isSet(options.yes);
    flags.dryRun = parser.isSet(options.dryRun);
    // As for other repairs, with --json nobody is asked.
    if (flags.json && !flags.yes)
        flags.dryRun = true;
    if (words.size() == 2)
        return choose(words.last(), doctor::thisMachine());
    return carryOut(words.value(0),
                    parser.value(options.keep).split(QLatin1Char(','), Qt::SkipEmptyParts),
                    measures, flags);
}

} // namespace ctl
