#include "helio/ctl/why/deniedline.h"

#include "helio/ctl/doctor/optiontable.h"
#include "texts/texts.h"

namespace ctl {

namespace {

constexpr char deniedWord[] = "denied";

QCommandLineOption accessOption()
{
    return {QStringLiteral("for"),
            texts::tr("What is wanted: read (or list), write, run (or pass through)."),
            QStringLiteral("ACCESS"), QStringLiteral("read")};
}

WhyOptions options()
{
    return WhyOptions(
        texts::tr("Opens what you may open yourself; shows each change and asks first."));
}

/// Returns what is wrong; empty if nothing is.
QString readAccess(const QString &word, DeniedLine &line)
{
    if (word == QLatin1String("write"))
        line.access = doctor::Access::Write;
    else if (word == QLatin1String("run"))
        line.access = doctor::Access::Run;
    else if (word != QLatin1String("read"))
        return texts::tr("--for must be read, write or run");
    return {};
}

QString readWords(const QStringList &words, DeniedLine &line)
{
    if (words.value(0) != QLatin1String(deniedWord))
        return texts::tr("expected: why denied PATH, why open [FILE|TYPE] or why input [PID]");
    if (words.size() != 2 || words.at(1).isEmpty())
        return texts::tr("why denied takes one path");
    line.path = words.at(1);
    return {};
}

} // namespace

DeniedLine parseDeniedLine(const QStringList &arguments)
{
    DeniedLine line;
    const QCommandLineOption access = accessOption();
    static_cast<WhyFlags &>(line) =
        parseWhy(arguments, options(), {access}, [&](const QCommandLineParser &parser) {
            const QString fault = readAccess(parser.value(access), line);
            return fault.isEmpty() ? readWords(parser.positionalArguments(), line) : fault;
        });
    return line;
}

QString deniedHelp()
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
        .arg(optionTable(QList<QCommandLineOption>{accessOption()} + options().all()));
}

} // namespace ctl
