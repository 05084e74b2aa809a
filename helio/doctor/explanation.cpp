#include "helio/doctor/explanation.h"

#include <QFile>
#include <QJsonArray>

#include "doctor/why/input/input.h"
#include "doctor/why/input/remedy.h"
#include "doctor/why/open/open.h"
#include "helio/doctor/accessjson.h"
#include "helio/doctor/inputjson.h"
#include "helio/doctor/openjson.h"
#include "texts/texts.h"

namespace helio {

namespace {

using doctor::Denial;
using doctor::Machine;
using doctor::OpenQuestion;
using State = Verification::State;

constexpr char accessCheck[] = "why.denied";
constexpr char accessRepair[] = "open";
constexpr char inputCheck[] = "why.input";
constexpr char inputRepair[] = "set";

Verification opensWith(const Machine &machine, const QString &suffix, const QString &entry)
{
    const doctor::OpenChoice now = OpenQuestion(machine).ofSuffix(suffix).gio.choice;
    if (now.entry == entry)
        return {};
    return {State::Remains,
            texts::tr("%1 decides all the same, so it was taken back").arg(now.where.path)};
}

bool isSameBlock(const Denial &one, const Denial &other)
{
    const auto blocker = [](const Denial &denial) {
        return denial.passage.chain.at(denial.passage.blocker).path;
    };
    return one.passage.obstacle == other.passage.obstacle && blocker(one) == blocker(other);
}

Denial denialOf(const QString &path, doctor::Access access)
{
    return doctor::whyDenied(QFile::encodeName(path), access);
}

} // namespace

Explanation explainedOpening(const Machine &machine, const QString &suffix)
{
    const OpenQuestion question(machine);
    const doctor::Opening opening = question.ofSuffix(suffix);
    Explanation explanation;
    explanation.line = openObject(QLatin1Char('.') + suffix, question, opening);
    const QString entry = opening.proposal;
    if (entry.isEmpty())
        return explanation;
    explanation.plan = question.repair(opening.found.type, entry);
    explanation.verify = [machine, suffix, entry] { return opensWith(machine, suffix, entry); };
    return explanation;
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
    const Denial before = denialOf(path, access);
    Explanation explanation;
    explanation.line = accessObject(path, access, before);
    if (!before.remedy)
        return explanation;
    explanation.plan = {
        QLatin1String(accessCheck), QLatin1String(accessRepair), {before.remedy->change}, {}};
    explanation.verify = [before, path, access] {
        const bool isBlocked = isSameBlock(before, denialOf(path, access));
        return Verification{isBlocked ? State::Remains : State::Gone, {}};
    };
    return explanation;
}

Explanation explainedInput(const Machine &machine)
{
    const doctor::InputReport report = doctor::whyInput(machine, std::nullopt);
    const auto remedy = doctor::remedyFor(machine, report);
    Explanation explanation;
    explanation.line = inputObject(report, remedy);
    if (!remedy)
        return explanation;
    explanation.plan = {QLatin1String(inputCheck), QLatin1String(inputRepair), remedy->changes, {}};
    explanation.verify = [machine, report, remedy = *remedy]() -> Verification {
        if (!doctor::isInForce(machine, report, remedy))
            return {State::Remains, {}};
        return {State::Gone, texts::tr("it counts from the next login on")};
    };
    return explanation;
}

} // namespace helio
