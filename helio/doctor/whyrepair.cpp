#include "helio/doctor/whyrepair.h"

#include <QFile>

#include "texts/texts.h"

namespace helio {

namespace {

using doctor::Denial;
using State = Verification::State;

QByteArray blockerOf(const Denial &denial)
{
    return denial.passage.chain.at(denial.passage.blocker).path;
}

bool isSameBlock(const Denial &one, const Denial &other)
{
    return one.passage.obstacle == other.passage.obstacle && blockerOf(one) == blockerOf(other);
}

} // namespace

std::optional<WhyRepair> repairOf(const QString &path, doctor::Access access, const Denial &denial)
{
    if (!denial.remedy)
        return {};
    const auto verify = [path, access, denial] {
        const Denial now = doctor::whyDenied(QFile::encodeName(path), access);
        return Verification{isSameBlock(denial, now) ? State::Remains : State::Gone, {}};
    };
    return WhyRepair{
        {QStringLiteral("why.denied"), QStringLiteral("open"), {denial.remedy->change}, {}},
        verify};
}

std::optional<WhyRepair> repairOf(const doctor::Machine &machine,
                                  const doctor::OpenQuestion &question,
                                  const doctor::Opening &opening, const QString &entry,
                                  const LookAtOpening &look)
{
    const QString wanted = entry.isEmpty() ? opening.proposal : entry;
    if (wanted.isEmpty() || opening.types.isEmpty())
        return {};
    doctor::Plan plan = question.repair(opening.found.type, wanted);
    const QString problem = doctor::entryProblem(question.entries().entry(wanted));
    if (!problem.isEmpty())
        plan.refusal = wanted + QStringLiteral(": ") + problem;
    // Nothing of a plan that is refused is shown as a change.
    if (!plan.refusal.isEmpty())
        plan.changes.clear();
    const auto verify = [machine, wanted, look]() -> Verification {
        const doctor::OpenChoice now = look(doctor::OpenQuestion(machine)).gio.choice;
        if (now.entry == wanted)
            return {};
        return {State::Remains,
                texts::tr("%1 decides all the same, so it was taken back").arg(now.where.path)};
    };
    return WhyRepair{plan, verify};
}

std::optional<WhyRepair> repairOf(const doctor::Machine &machine, const doctor::InputReport &report,
                                  const std::optional<doctor::InputRemedy> &remedy)
{
    if (!remedy)
        return {};
    const auto verify = [machine, report, remedy]() -> Verification {
        if (!isInForce(machine, report, *remedy))
            return {State::Remains, {}};
        return {State::Gone, texts::tr("it counts from the next login on")};
    };
    return WhyRepair{
        {QStringLiteral("why.input"), QStringLiteral("set"), remedy->changes,
         remedy->isOwn ? QString() : texts::tr("the administrator has to run the command")},
        verify};
}

} // namespace helio
