#include "programs/checktool/usage.h"

#include <QStringList>

#include "programs/checktool/checks/checks.h"
#include "texts/texts.h"

namespace programs {

namespace {

constexpr int nameWidth = 15;

QStringList linesOf(QString (*describe)(const Check &check))
{
    QStringList lines;
    for (const Check &check : checks())
        lines.append(describe(check));
    return lines;
}

} // namespace

QString usage()
{
    const QStringList descriptions = linesOf([](const Check &check) {
        return QStringLiteral("  %1%2; ARG: %3")
            .arg(check.name.leftJustified(nameWidth), check.description, check.argument);
    });
    return texts::tr("usage: vyrEnvCheckTool TYPE APP [ARG]\n"
                     "       vyrEnvCheckTool print APP DOCUMENT\n"
                     "       vyrEnvCheckTool --list | --help\n"
                     "\n"
                     "Looks into what the suite's program APP (vyr, tbl, shw) needs of this\n"
                     "machine. The findings are printed, a line each, and kept for the assistant\n"
                     "in tmp/vyrEnv.ini of the suite's directory. “print” prints a document to\n"
                     "tmp/NAME.pdf there.\n"
                     "\n"
                     "TYPE is one of:\n%1\n"
                     "\n"
                     "Exit status: 0 checked or printed, 1 not printed or the findings not\n"
                     "written, 2 wrong usage.")
        .arg(descriptions.join(QLatin1Char('\n')));
}

QString listOfChecks()
{
    return linesOf([](const Check &check) { return check.name; }).join(QLatin1Char('\n'));
}

bool isSuiteProgram(const QString &name)
{
    return name == QLatin1String("vyr") || name == QLatin1String("tbl") ||
           name == QLatin1String("shw");
}

} // namespace programs
