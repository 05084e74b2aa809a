#include "helio/ctl/doctor/jsonprinter.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

#include "helio/doctor/doctorlines.h"
#include "helio/suite/statejson.h"

namespace ctl {

namespace {

void print(const QJsonObject &line)
{
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    std::fflush(stdout);
}

} // namespace

void JsonPrinter::printCheck(const doctor::CheckDefinition &, const doctor::CheckResult &result)
{
    print(helio::checkLine(result));
    for (const doctor::Finding &finding : result.findings)
        print(helio::findingLine(finding));
}

void JsonPrinter::printListed(const doctor::CheckDefinition &check)
{
    print(helio::listedLine(check, m_locale));
}

void JsonPrinter::printSuite(const suites::Installation &installation, bool isChosen)
{
    print(helio::suiteLine(installation, isChosen));
}

void JsonPrinter::printProblem(const doctor::FileProblem &problem)
{
    print(helio::mistakeLine(problem));
}

void JsonPrinter::printChange(const QString &repair, const doctor::Change &change)
{
    print(helio::changeLine(repair, change));
}

void JsonPrinter::printRepair(const helio::RepairOutcome &outcome)
{
    print(helio::repairLine(outcome));
}

void JsonPrinter::printEntry(const doctor::JournalEntry &entry)
{
    print(helio::entryLine(entry));
}

void JsonPrinter::printUndone(int journal, const doctor::JournalResult &result)
{
    print(helio::undoneLine(journal, result));
}

void JsonPrinter::printNote(const QString &note)
{
    print(helio::noteLine(note));
}

void JsonPrinter::printSummary(int checks, int findings, int failed)
{
    print(helio::summaryLine(checks, findings, failed));
}

} // namespace ctl
