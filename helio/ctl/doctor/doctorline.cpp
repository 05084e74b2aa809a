#include "helio/ctl/doctor/doctorline.h"

#include <QCommandLineParser>
#include <QHash>

namespace ctl {

namespace {

constexpr char help[] =
    R"(Usage: assistantctl doctor [CHECK...]            looks, all checks or those named
       assistantctl doctor --list                 the checks of this machine
       assistantctl doctor plan [CHECK...]        shows what the repairs would change
       assistantctl doctor fix [CHECK...]         repairs; asks before each
       assistantctl doctor undo [N]               takes a repair back, the latest or number N
       assistantctl doctor history                the repairs that were made
       assistantctl doctor lint FILE              what is wrong in a check file

  --json         prints JSON, an object a line
  --yes          repairs without asking
  --dry-run      fix: only shows what would be changed, writes nothing
  --repair ID    plan, fix: this repair where a finding has several

Exit status: 0 nothing found or done as asked, 1 findings or something not repaired, 2 wrong usage,
3 a check failed itself.
)";

struct Options
{
    const QCommandLineOption json{QStringLiteral("json")};
    const QCommandLineOption yes{QStringLiteral("yes")};
    const QCommandLineOption dryRun{QStringLiteral("dry-run")};
    const QCommandLineOption repair{QStringLiteral("repair"), {}, QStringLiteral("ID")};
    const QCommandLineOption list{QStringLiteral("list")};
    const QCommandLineOption fix{QStringLiteral("fix")};
    const QCommandLineOption lint{QStringLiteral("lint"), {}, QStringLiteral("FILE")};
    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}};
};

DoctorLine faulty(const QString &fault)
{
    DoctorLine line;
    line.fault = fault;
    return line;
}

/// Takes the word of the mode off @p words.
DoctorLine::Mode modeOf(QStringList &words)
{
    static const QHash<QString, DoctorLine::Mode> modes{
        {QStringLiteral("plan"), DoctorLine::PlanRepairs},
        {QStringLiteral("fix"), DoctorLine::Fix},
        {QStringLiteral("undo"), DoctorLine::Undo},
        {QStringLiteral("history"), DoctorLine::History},
        {QStringLiteral("lint"), DoctorLine::Lint},
        {QStringLiteral("list"), DoctorLine::List}};
    const auto mode = words.isEmpty() ? modes.end() : modes.find(words.first());
    if (mode == modes.end())
        return DoctorLine::Check;
    words.removeFirst();
    return *mode;
}

/// Gives the words after the mode their meaning. Returns what is wrong; empty if nothing is.
QString readWords(const QStringList &words, DoctorLine &line)
{
    switch (line.mode) {
    case DoctorLine::Check:
    case DoctorLine::PlanRepairs:
    case DoctorLine::Fix:
        line.checks = words;
        return {};
    case DoctorLine::Undo: {
        bool isNumber = true;
        if (words.size() == 1)
            line.journal = words.first().toInt(&isNumber);
        return words.size() > 1 || !isNumber || line.journal < 0 ||
                       (words.size() == 1 && line.journal == 0)
                   ? QStringLiteral("undo takes the number of one repair")
                   : QString();
    }
    case DoctorLine::Lint:
        if (line.file.isEmpty() && words.size() == 1)
            line.file = words.first();
        else if (line.file.isEmpty() || !words.isEmpty())
            return QStringLiteral("lint takes one file");
        return {};
    case DoctorLine::List:
    case DoctorLine::History:
    case DoctorLine::ShowText:
        break;
    }
    return words.isEmpty() ? QString()
                           : QStringLiteral("unexpected argument: %1").arg(words.first());
}

} // namespace

DoctorLine parseDoctorLine(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    parser.addOptions({options.json, options.yes, options.dryRun, options.repair, options.list,
                       options.fix, options.lint, options.help});
    // The parser takes the first argument for the program's name.
    if (!parser.parse(QStringList(QString()) + arguments))
        return faulty(parser.errorText());
    DoctorLine line;
    if (parser.isSet(options.help)) {
        line.mode = DoctorLine::ShowText;
        line.text = QLatin1String(help);
        return line;
    }
    QStringList words = parser.positionalArguments();
    line.mode = modeOf(words);
    if (parser.isSet(options.list))
        line.mode = DoctorLine::List;
    if (parser.isSet(options.fix))
        line.mode = DoctorLine::Fix;
    if (parser.isSet(options.lint)) {
        line.mode = DoctorLine::Lint;
        line.file = parser.value(options.lint);
    }
    line.json = parser.isSet(options.json);
    line.yes = parser.isSet(options.yes);
    line.dryRun = parser.isSet(options.dryRun);
    line.repair = parser.value(options.repair);
    line.fault = readWords(words, line);
    return line;
}

} // namespace ctl
