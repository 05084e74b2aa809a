#include "helio/ctl/fleet/fleetcommand.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>

#include <algorithm>
#include <cstdio>

#include "doctor/doctor.h"
#include "fleet/compare/comparison.h"
#include "fleet/report/collection.h"
#include "helio/ctl/doctor/messagelocale.h"
#include "helio/ctl/doctor/optiontable.h"
#include "helio/ctl/fleet/comparisonlines.h"
#include "texts/texts.h"

namespace ctl {

namespace {

using fleet::ReadReport;
using fleet::Report;

constexpr char shippedChecks[] = "/checks";
constexpr int mostReports = 2000;

struct Options
{
    const QCommandLineOption here{QStringLiteral("here"),
                                  texts::tr("Compares this machine as well; it comes first.")};
    const QCommandLineOption all{QStringLiteral("all"),
                                 texts::tr("Shows also what seldom matters.")};
    const QCommandLineOption json{QStringLiteral("json"),
                                  texts::tr("Prints JSON, an object a line.")};
    const QCommandLineOption help{{QStringLiteral("help"), QStringLiteral("h")},
                                  texts::tr("Shows this help.")};

    QList<QCommandLineOption> ofReport() const { return {json, help}; }
    QList<QCommandLineOption> ofComparison() const { return {here, all, json, help}; }
};

void print(const QString &text, std::FILE *stream)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

/// JSON is UTF-8 in every locale: other programs read it.
void printJson(const QJsonObject &object)
{
    std::puts(QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
}

int complain(const char *word, const QString &fault, int status)
{
    print(QStringLiteral("assistantctl %1: %2\n").arg(QLatin1String(word), fault), stderr);
    return status;
}

Report reportOfThisMachine()
{
    const doctor::Machine machine = doctor::thisMachine();
    doctor::Doctor doctor(machine);
    doctor.load(doctor::checkDirectories(machine, QCoreApplication::applicationDirPath() +
                                                      QLatin1String(shippedChecks)));
    // In English, so that reports of machines in several languages can be compared.
    texts::useLanguage({});
    const Report report = fleet::collectReport(machine, doctor, {});
    texts::useLanguage(messageLocale(machine));
    return report;
}

QString reportHelp(const Options &options)
{
    return texts::tr("Usage: assistantctl report\n\n"
                     "Prints a report of this machine, session and office suite as JSON, to be "
                     "compared with others.\n"
                     "Values of passwords, tokens and keys are left out.\n\n"
                     "%1")
        .arg(optionTable(options.ofReport()));
}

QString comparisonHelp(const Options &options)
{
    return texts::tr("Usage: assistantctl compare [OPTION...] REPORT REPORT...\n"
                     "       assistantctl compare [OPTION...] --here REPORT...\n\n"
                     "Says what differs between machines and can matter, most important first. "
                     "“assistantctl\n"
                     "report” makes the files. From three on, the machine that differs from the "
                     "others is named.\n\n"
                     "%1\n"
                     "Exit status: 0 nothing differs, 1 something does, 2 wrong usage, 3 a report "
                     "cannot be read.\n")
        .arg(optionTable(options.ofComparison()));
}

int compare(const QVector<Report> &reports, const QCommandLineParser &parser,
            const Options &options)
{
    const fleet::Comparison comparison = fleet::compareReports(reports);
    if (parser.isSet(options.json)) {
        const QVector<QJsonObject> lines = comparisonLines(comparison, reports);
        std::for_each(lines.begin(), lines.end(), printJson);
    } else {
        print(comparisonText(comparison, reports, parser.isSet(options.all)), stdout);
    }
    return comparison.differences.isEmpty() ? NothingDiffers : SomethingDiffers;
}

} // namespace

int runReport(const QStringList &arguments)
{
    texts::useLanguage(messageLocale(doctor::thisMachine()));
    const Options options;
    QCommandLineParser parser;
    parser.addOptions(options.ofReport());
    if (!parser.parse(QStringList(QString()) + arguments))
        return complain("report", parser.errorText(), FleetMisused);
    if (!parser.positionalArguments().isEmpty())
        return complain("report", texts::tr("it takes no words"), FleetMisused);
    if (parser.isSet(options.help))
        print(reportHelp(options), stdout);
    else
        printJson(fleet::reportObject(reportOfThisMachine()));
    return NothingDiffers;
}

int runCompare(const QStringList &arguments)
{
    texts::useLanguage(messageLocale(doctor::thisMachine()));
    const Options options;
    QCommandLineParser parser;
    parser.addOptions(options.ofComparison());
    if (!parser.parse(QStringList(QString()) + arguments))
        return complain("compare", parser.errorText(), FleetMisused);
    if (parser.isSet(options.help)) {
        print(comparisonHelp(options), stdout);
        return NothingDiffers;
    }
    const QStringList files = parser.positionalArguments();
    const bool withThis = parser.isSet(options.here);
    if (files.size() < (withThis ? 1 : 2) || files.size() > mostReports)
        return complain("compare", texts::tr("expected: two reports or more, or --here and one"),
                        FleetMisused);
    QVector<Report> reports;
    for (const QString &file : files) {
        const ReadReport read = fleet::reportFromFile(file);
        if (!read.problem.isEmpty())
            return complain("compare", QStringLiteral("%1: %2").arg(file, read.problem),
                            ReportUnreadable);
        reports.append(read.report);
    }
    if (withThis)
        reports.prepend(reportOfThisMachine());
    return compare(reports, parser, options);
}

} // namespace ctl
