#include "helio/doctor/explanation.h"

#include <QFile>
#include <QJsonArray>

#include "helio/doctor/accessjson.h"
#include "helio/doctor/inputjson.h"
#include "helio/doctor/openjson.h"

namespace helio {

using doctor::Machine;
using doctor::OpenQuestion;

Explanation explainedOpening(const Machine &machine, const QString &suffix)
{
    const OpenQuestion question(machine);
    const doctor::Opening opening = question.ofSuffix(suffix);
    return {openObject(QLatin1Char('.') + suffix, question, opening),
            repairOf(machine, question, opening, {},
                     [suffix](const OpenQuestion &again) { return again.ofSuffix(suffix); })};
}

QJsonArray allOpenings(const Machine &machine)
{
    QJsonArray lines;
    for (const doctor::SuffixOpening &one : OpenQuestion(machine).ofSuffixes())
        lines.append(suffixObject(one));
    return lines;
}

Explanation explainedAccess(const QString &path, doctor::Access access)
{
    const doctor::Denial denial = doctor::whyDenied(QFile::encodeName(path), access);
    return {accessObject(path, access, denial), repairOf(path, access, denial)};
}

Explanation explainedInput(const Machine &machine)
{
    const doctor::InputReport report = doctor::whyInput(machine, std::nullopt);
    const auto remedy = doctor::remedyFor(machine, report);
    return {inputObject(report, remedy), repairOf(machine, report, remedy)};
}

} // namespace helio
