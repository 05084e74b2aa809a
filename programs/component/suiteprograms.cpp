#include "programs/component/suiteprograms.h"

#include <QFileInfo>

#include <algorithm>

namespace programs {

namespace {

constexpr std::chrono::seconds longestSearch(2);

/// A name that begins like an option is none.
QString asDocument(const QString &name)
{
    return name.startsWith(QLatin1Char('-')) ? QStringLiteral("./") + name : name;
}

} // namespace

const QStringList &suitePrograms()
{
    static const QStringList programs = {
        QStringLiteral("vyr"),    QStringLiteral("tbl"),    QStringLiteral("shw"),
        QStringLiteral("vyrpdf"), QStringLiteral("fixed"),  QStringLiteral("chart"),
        QStringLiteral("board"),  QStringLiteral("docket"), QStringLiteral("vyroffice"),
    };
    return programs;
}

QString suiteProgramDirectory()
{
    return QStringLiteral("/opt/orvane/office");
}

QString installedProgram(const QString &directory, const QString &program)
{
    const QFileInfo file(directory + QLatin1Char('/') + program);
    return file.isFile() && file.isExecutable() ? file.filePath() : QString();
}

QStringList commandInstead(const suites::Installation &installation, const QString &program,
                           const QStringList &documents)
{
    QStringList command = installation.command;
    std::transform(documents.begin(), documents.end(), std::back_inserter(command), asDocument);
    if (!documents.isEmpty())
        return command;
    const suites::Description *suite = suites::descriptionNamed(installation.suite);
    const QString option = suite ? suite->counterparts.value(program) : QString();
    return option.isEmpty() ? command : command << option;
}

std::optional<suites::Installation> suiteInstead()
{
    const doctor::Machine machine = doctor::thisMachine();
    const doctor::Deadline deadline(longestSearch);
    for (const suites::Description &description : suites::descriptions()) {
        std::optional<suites::Installation> found =
            suites::chosen(suites::installations(description, machine, deadline), machine);
        if (found)
            return found;
    }
    return std::nullopt;
}

} // namespace programs
