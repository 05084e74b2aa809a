#include "helio/ctl/doctor/doctorline.h"

#include <QCommandLineParser>

#include <algorithm>
#include <iterator>

#include "helio/ctl/doctor/optiontable.h"
#include "texts/texts.h"

namespace ctl {

namespace {

struct Options
{
    const QCommandLineOption list{QStringLiteral("list"),
                                  texts::tr("Lists the suites and the checks of this machine.")};
    const QCommandLineOption suite{QStringLiteral("suite"),
                                   texts::tr("Looks after the suite in this folder from now on."),
                                   QStringLiteral("FOLDER")};
    const QCommandLineOption fix{
        QStringLiteral("fix"),
        texts::tr("Repairs what was found; shows each plan and asks first.")};
    const QCommandLineOption yes{QStringLiteral("yes"),
                                 texts::tr("With --fix: repairs without asking.")};
    const QCommandLineOption dryRun{
        QStringLiteral("dry-run"),
        texts::tr("With --fix: only shows what would be changed, and writes nothing.")};
    const QCommandLineOption repair{
        QStringLiteral("repair"),
        texts::tr("With --fix: takes this repair where a finding has several."),
        QStringLiteral("ID")};
    const QCommandLineOption lint{QStringLiteral("lint"),
                                  texts::tr("Says what is wrong in a check file."),
                                  QStringLiteral("FILE")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  texts::tr("Prints JSON, an object a line.")};
    const QCommandLineOption help{{QStringLiteral("help"), QStringLiteral("h")},
                                  texts::tr("Shows this help.")};

    QList<QCommandLineOption> all() const
    {
        return {list, suite, fix, yes, dryRun, repair, lint, json, help};
    }
};

/// A first word that says what to do.
struct ModeWord
{
    const char *word;
    DoctorLine::Mode mode;
};

constexpr char planWord[] = "plan";
constexpr ModeWord modeWords[] = {
    {planWord, DoctorLine::Fix},      {"fix", DoctorLine::Fix},   {"undo", DoctorLine::Undo},
    {"history", DoctorLine::History}, {"lint", DoctorLine::Lint},
};

QString helpText(const Options &options)
{
    return texts::tr("Usage: assistantctl doctor [OPTION...] [CHECK...]\n"
                     "       assistantctl doctor plan|fix [OPTION...] [CHECK...]\n"
                     "       assistantctl doctor undo [N]\n"
                     "       assistantctl doctor history\n"
                     "       assistantctl doctor lint FILE\n\n"
                     "Looks at what keeps the suite from working well: with all checks, or with "
                     "those named.\n"
                     "“fix” is --fix, “plan” is --fix --dry-run, “lint” is --lint. “undo” takes "
                     "back the latest\n"
                     "repair or number N, “history” lists the repairs.\n\n"
                     "%1\n"
                     "Exit status: 0 nothing found or done as asked, 1 findings or something not "
                     "repaired,\n"
                     "2 wrong usage, 3 a check failed itself.\n")
        .arg(optionTable(options.all()));
}

/// Sets the mode. Returns what is wrong with the choice; empty if nothing is.
QString readMode(const QCommandLineParser &parser, const Options &options, QStringList &words,
                 DoctorLine &line)
{
    int modes = 0;
    const auto choose = [&](bool isChosen, DoctorLine::Mode mode) {
        modes += isChosen ? 1 : 0;
        if (isChosen)
            line.mode = mode;
    };
    const auto word = std::find_if(std::begin(modeWords), std::end(modeWords),
                                   [first = words.value(0)](const ModeWord &candidate) {
                                       return first == QLatin1String(candidate.word);
                                   });
    const bool isPlan = words.value(0) == QLatin1String(planWord);
    if (word != std::end(modeWords)) {
        choose(true, word->mode);
        words.removeFirst();
    }
    choose(parser.isSet(options.list), DoctorLine::List);
    choose(parser.isSet(options.suite), DoctorLine::Choose);
    choose(parser.isSet(options.fix), DoctorLine::Fix);
    choose(parser.isSet(options.lint), DoctorLine::Lint);
    if (modes > 1)
        return texts::tr(
            "only one of plan, fix, undo, history, lint, --list and --suite can be done");
    for (const QCommandLineOption &option : {options.yes, options.dryRun, options.repair}) {
        if (parser.isSet(option) && line.mode != DoctorLine::Fix)
            return texts::tr("--%1 belongs to --fix").arg(option.names().constFirst());
    }
    line.dryRun = isPlan || parser.isSet(options.dryRun);
    if (line.mode == DoctorLine::Lint)
        line.file = parser.isSet(options.lint) || words.isEmpty() ? parser.value(options.lint)
                                                                  : words.takeFirst();
    return line.mode == DoctorLine::Lint && line.file.isEmpty() ? texts::tr("lint takes a file")
                                                                : QString();
}

/// Gives the words their meaning. Returns what is wrong with them; empty if nothing is.
QString readWords(const QStringList &words, DoctorLine &line)
{
    if (line.mode == DoctorLine::Check || line.mode == DoctorLine::Fix) {
        line.checks = words;
        return {};
    }
    if (line.mode != DoctorLine::Undo)
        return words.isEmpty() ? QString()
                               : texts::tr("unexpected argument: %1").arg(words.first());
    if (words.isEmpty())
        return {};
    line.journal = words.first().toInt();
    return words.size() > 1 || line.journal <= 0 ? texts::tr("undo takes the number of one repair")
                                                 : QString();
}

QString readLine(const QCommandLineParser &parser, const Options &options, DoctorLine &line)
{
    QStringList words = parser.positionalArguments();
    const QString fault = readMode(parser, options, words, line);
    line.json = parser.isSet(options.json);
    line.yes = parser.isSet(options.yes);
    line.repair = parser.value(options.repair);
    line.suite = parser.value(options.suite);
    return fault.isEmpty() ? readWords(words, line) : fault;
}

} // namespace

DoctorLine parseDoctorLine(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    parser.addOptions(options.all());
    DoctorLine line;
    // The parser takes the first argument for the program's name.
    const bool isRead = parser.parse(QStringList(QString()) + arguments);
    const QStringList unknown = parser.unknownOptionNames();
    if (!unknown.isEmpty()) {
        const QString dashes =
            unknown.first().size() == 1 ? QStringLiteral("-") : QStringLiteral("--");
        line.fault = texts::tr("there is no option %1").arg(dashes + unknown.first());
    } else if (!isRead) {
        line.fault = parser.errorText();
    } else if (parser.isSet(options.help)) {
        line.mode = DoctorLine::ShowText;
        line.text = helpText(options);
    } else {
        line.fault = readLine(parser, options, line);
    }
    return line;
}

} // namespace ctl
