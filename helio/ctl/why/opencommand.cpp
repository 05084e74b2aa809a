#include "helio/ctl/why/opencommand.h"

#include <algorithm>

#include "helio/ctl/doctor/optiontable.h"
#include "helio/ctl/why/openreport.h"
#include "helio/ctl/why/whycommand.h"
#include "helio/ctl/why/whyterminal.h"
#include "helio/doctor/openjson.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using doctor::Opening;
using doctor::OpenQuestion;

struct Options
{
    const QCommandLineOption all{QStringLiteral("all"),
                                 texts::tr("Lists what opens each kind of the suite's documents.")};
    const QCommandLineOption with{QStringLiteral("with"),
                                  texts::tr("With --fix: has this desktop entry open it."),
                                  QStringLiteral("ENTRY")};
    const WhyOptions common{
        texts::tr("Changes one line of your mimeapps.list; shows it and asks first.")};

    QList<QCommandLineOption> own() const { return {all, with}; }
};

/// The parsed arguments.
struct OpenLine : WhyFlags
{
    QString subject;
    QString entry;
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
        .arg(optionTable(options.own() + options.common.all()));
}

/// Returns what is wrong; empty if nothing is.
QString readWords(const QCommandLineParser &parser, const Options &options, OpenLine &line)
{
    const bool wantsFix = parser.isSet(options.common.fix);
    const QStringList words = parser.positionalArguments();
    line.subject = words.value(0);
    line.entry = parser.value(options.with);
    const bool isSubjectEmpty = words.size() == 1 && line.subject.isEmpty();
    if (words.size() > 1 || isSubjectEmpty)
        return texts::tr("why open takes one file or type, or none");
    if (parser.isSet(options.all) && !words.isEmpty())
        return texts::tr("--all takes no file or type");
    if (wantsFix && words.isEmpty())
        return texts::tr("--fix needs a file or type");
    if (parser.isSet(options.with) && !wantsFix)
        return texts::tr("--%1 belongs to --fix").arg(options.with.names().constFirst());
    return {};
}

OpenLine parsed(const QStringList &arguments, const Options &options)
{
    OpenLine line;
    static_cast<WhyFlags &>(line) =
        parseWhy(arguments, options.common, options.own(), [&](const QCommandLineParser &parser) {
            return readWords(parser, options, line);
        });
    return line;
}

void printOpening(const OpenLine &line, const OpenQuestion &question, const Opening &opening)
{
    printAnswer(line, helio::openObject(line.subject, question, opening),
                openText(line.subject, question, opening));
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

int fix(const OpenLine &line, const OpenQuestion &question, const Opening &opening)
{
    const std::optional<helio::WhyRepair> change =
        helio::repairOf(doctor::thisMachine(), question, opening, line.entry,
                        [&line](const OpenQuestion &again) { return again.of(line.subject); });
    if (!change) {
        print(texts::tr("There is nothing to repair; --with ENTRY chooses what opens it.") +
                  QLatin1Char('\n'),
              stderr);
        return statusOf(opening.verdict);
    }
    if (!repair(line, *change))
        return std::max<int>(statusOf(opening.verdict), AccessDenied);
    const OpenQuestion after(doctor::thisMachine());
    const Opening now = after.of(line.subject);
    printOpening(line, after, now);
    return statusOf(now.verdict);
}

int listAll(const OpenLine &line, const OpenQuestion &question)
{
    const QVector<doctor::SuffixOpening> rows = question.ofSuffixes();
    for (const doctor::SuffixOpening &row : rows)
        printAnswer(line, helio::suffixObject(row), suffixText(row));
    return std::all_of(rows.begin(), rows.end(),
                       [](const doctor::SuffixOpening &row) { return !row.gio.entry.isEmpty(); })
               ? AccessGranted
               : AccessDenied;
}

} // namespace

int runWhyOpen(const QStringList &arguments)
{
    const Options options;
    const OpenLine line = parsed(arguments, options);
    if (const std::optional<int> end = endOfLine(line, helpText(options)))
        return *end;
    const OpenQuestion question(doctor::thisMachine());
    if (line.subject.isEmpty())
        return listAll(line, question);
    const Opening opening = question.of(line.subject);
    printOpening(line, question, opening);
    return line.fix ? fix(line, question, opening) : statusOf(opening.verdict);
}

} // namespace ctl
