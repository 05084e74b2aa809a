#include "helio/ctl/why/whyoptions.h"

#include "texts/texts.h"

namespace ctl {

WhyOptions::WhyOptions(const QString &fixText)
    : fix(QStringLiteral("fix"), fixText),
      yes(QStringLiteral("yes"), texts::tr("With --fix: repairs without asking.")),
      dryRun(QStringLiteral("dry-run"),
             texts::tr("With --fix: only shows what would be changed, and writes nothing.")),
      json(QStringLiteral("json"), texts::tr("Prints JSON, an object a line.")),
      help({QStringLiteral("help"), QStringLiteral("h")}, texts::tr("Shows this help."))
{
}

WhyFlags parseWhy(const QStringList &arguments, const WhyOptions &options,
                  const QList<QCommandLineOption> &own,
                  const std::function<QString(const QCommandLineParser &)> &readOwn)
{
    QCommandLineParser parser;
    parser.addOptions(own + options.all());
    WhyFlags flags;
    // The parser takes the first argument for the program's name.
    if (!parser.parse(QStringList(QString()) + arguments)) {
        flags.fault = parser.errorText();
        return flags;
    }
    flags.wantsHelp = parser.isSet(options.help);
    flags.json = parser.isSet(options.json);
    flags.fix = parser.isSet(options.fix);
    flags.yes = parser.isSet(options.yes);
    flags.dryRun = parser.isSet(options.dryRun);
    if (flags.wantsHelp)
        return flags;
    for (const QCommandLineOption &option : {options.yes, options.dryRun}) {
        if (parser.isSet(option) && !flags.fix)
            flags.fault = texts::tr("--%1 belongs to --fix").arg(option.names().constFirst());
    }
    if (flags.fault.isEmpty())
        flags.fault = readOwn(parser);
    return flags;
}

} // namespace ctl
