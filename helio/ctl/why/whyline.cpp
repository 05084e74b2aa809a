#include "helio/ctl/why/whyline.h"

#include <QCommandLineParser>

#include "helio/ctl/doctor/optiontable.h"
#include "texts/texts.h"

namespace ctl {

namespace {

constexpr char deniedWord[] = "denied";

struct Options
{
    const QCommandLineOption access{
        QStringLiteral("for"),
        texts::tr("What is wanted: read (or list), write, run (or pass through)."),
        QStringLiteral("ACCESS"), QStringLiteral("read")};
    const QCommandLineOption fix{
        QStringLiteral("fix"),
        texts::tr("Opens what you may open yourself; shows each change and asks first.")};
    const QCommandLineOption yes{QStringLiteral("yes"),
                                 texts::tr("With --fix: repairs without asking.")};
    const QCommandLineOption dryRun{
        QStringLiteral("dry-run"),
        texts::tr("With --fix: only shows what would be changed, and writes nothing.")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  texts::tr("Prints JSON, an object a line.")};
    const QCommandLineOption help{{QStringLiteral("help"), QStringLiteral("h")},
                                  texts::tr("Shows this help.")};

    QList<QCommandLineOption> all() const { return {access, fix, yes, dryRun, json, help}; }
};

QString helpText(const Options &options)
{
    return texts::tr("Usage: assistantctl why denied [OPTION...] PATH\n"
                     "       assistantctl why open|input --help\n\n"
                     "“why denied” says whether you get access to a file or directory, which part "
                     "of the path "
                     "blocks it\n"
                     "and what opens it for you alone.\n\n"
                     "%1\n"
                     "Exit status: 0 access is granted, 1 it is denied, 2 wrong usage, 3 the "
                     "reason is unknown.\n")
        .arg(optionTable(options.all()));
}

/// Returns what is wrong; empty if nothing is.
QString readAccess(const QString &word, WhyLine &line)
{
    if (word == QLatin1String("write"))
        line.access = doctor::Access::Write;
    else if (word == QLatin1String("run"))
        line.access = doctor::Access::Run;
    else if (word != QLatin1String("read"))
        return texts::tr("--for must be read, write or run");
    return {};
}

QString readWords(const QStringList &words, WhyLine &line)
{
    if (words.value(0) != QLatin1String(deniedWord))
        return texts::tr("expected: why denied PATH, why open [FILE|TYPE] or why input [PID]");
    if (words.size() != 2 || words.at(1).isEmpty())
        return texts::tr("why denied takes one path");
    line.path = words.at(1);
    return {};
}

QString readLine(const QCommandLineParser &parser, const Options &options, WhyLine &line)
{
    line.json = parser.isSet(options.json);
    line.fix = parser.isSet(options.fix);
    line.yes = parser.isSet(options.yes);
    line.dryRun = parser.isSet(options.dryRun);
    for (const QCommandLineOption &option : {options.yes, options.dryRun}) {
        if (parser.isSet(option) && !line.fix)
            return texts::tr("--%1 belongs to --fix").arg(option.names().constFirst());
    }
    const QString fault = readAccess(parser.value(options.access), line);
    return fault.isEmpty() ? readWords(parser.positionalArguments(), line) : fault;
}

} // namespace

WhyLine parseWhyLine(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    parser.addOptions(options.all());
    WhyLine line;
    // The parser takes the first argument for the program's name.
    const bool isRead = parser.parse(QStringList(QString()) + arguments);
    if (!isRead)
        line.fault = parser.errorText();
    else if (parser.isSet(options.help))
        line.text = helpText(options);
    else
        line.fault = readLine(parser, options, line);
    return line;
}

} // namespace ctl
