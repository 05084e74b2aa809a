#include <cstdio>
#include <exception>
#include <new>

#include <QCoreApplication>

#include "programs/missingfonts/documentfonts.h"
#include "programs/missingfonts/matching/missingfonts.h"
#include "programs/missingfonts/matching/missingfontsfile.h"
#include "programs/missingfonts/resourcelimits.h"
#include "programs/suitehome/suitehome.h"

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

void printLines(const char *heading, const QStringList &lines)
{
    for (const QString &line : lines)
        std::printf("%s: %s\n", heading, line.toLocal8Bit().constData());
}

std::vector<programs::UsedFamily> readDocument(const QString &path)
{
    const programs::MemoryLimit limit;
    return programs::documentFonts(path);
}

void saveMissingFonts(const QString &document)
{
    const std::vector<programs::UsedFamily> families = readDocument(document);
    const programs::FontMatcher matcher;
    const programs::FontReport report = programs::reportFonts(
        families, [&matcher](const QString &family) { return matcher.match(family); });
    programs::writeMissingFonts(programs::suiteHome(), QStringLiteral(PROGRAM_NAME),
                                report.missing);
    printLines("missing", report.missing);
    printLines("substituted", report.substituted);
}

int fail(const char *reason)
{
    std::fprintf(stderr, PROGRAM_NAME ": %s\n", reason);
    return failed;
}

} // namespace

/// Replaces the suite's program of that name where the suite is not installed. It can do one thing:
/// save which fonts of a document the machine lacks.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 || arguments.at(1) != QLatin1String("-savemissfont")) {
        std::fprintf(stderr, "usage: " PROGRAM_NAME " -savemissfont DOCUMENT\n");
        return wrongUsage;
    }
    programs::guardProcess();
    try {
        saveMissingFonts(arguments.at(2));
    } catch (const std::bad_alloc &) {
        return fail("the document needs too much memory");
    } catch (const std::exception &error) {
        return fail(error.what());
    }
    return 0;
}
