#include "doctor/repairs/step.h"

#include <QLatin1String>

#include "doctor/repairs/draft.h"
#include "doctor/repairs/kinds.h"
#include "texts/texts.h"

namespace doctor {

QVector<const StepKind *> stepKinds()
{
    return {
        &setStep,
        &unsetStep,
        &defaultApplicationStep,
        &addLineStep,
        &replaceLineStep,
        &asideStep,
        &removeLineStep,
        &restoreStep,
        &copyStep,
        &writeStep,
        &removeStep,
        &unlockStep,
        &linkStep,
        &directoryStep,
        &rightsStep,
        &endStep,
        &showStep,
        &dropLineStep,
        &installStep,
        &notRunningStep,
        &restorePackedStep,
        &keepWholeItemsStep,
    };
}

const StepKind *stepKindNamed(const QString &name)
{
    for (const StepKind *kind : stepKinds()) {
        if (name == QLatin1String(kind->name))
            return kind;
    }
    return nullptr;
}

namespace {

QString addSteps(const QVector<Step> &steps, const Values &values, Draft &draft)
{
    for (const Step &step : steps) {
        const ExpandedArguments expansion =
            expandedArguments(step.arguments, step.kind->parameters, values, draft.machine());
        QString refusal = expansion.problem.isEmpty() ? step.kind->plan(expansion.arguments, draft)
                                                      : expansion.problem;
        if (!refusal.isEmpty())
            return refusal;
    }
    return {};
}

} // namespace

Plan planSteps(const QVector<Step> &steps, const QVector<Values> &cases, const Machine &machine,
               const QVector<Change> &earlier)
{
    Plan plan;
    Draft draft(machine, earlier);
    for (const Values &values : cases) {
        plan.refusal = addSteps(steps, values, draft);
        if (!plan.refusal.isEmpty())
            return plan;
    }
    plan.changes = draft.changes();
    if (plan.changes.isEmpty())
        plan.refusal = texts::tr("there is nothing to change");
    return plan;
}

} // namespace doctor
