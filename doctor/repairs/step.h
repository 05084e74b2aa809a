#pragma once

#include <QVector>

#include "doctor/conditions/parameter.h"
#include "doctor/machine/machine.h"
#include "doctor/model/plan.h"

namespace doctor {

class Draft;

/// A kind of repair step. Its first parameter has the kind's name: the file says {"aside":
/// "{path}"}.
struct StepKind
{
    const char *name;
    Table<Parameter> parameters;
    /// Adds its changes to the draft.
    /// @return why it cannot be done; empty otherwise
    QString (*plan)(const Arguments &arguments, Draft &draft);
};

/// All kinds, in the order of the guide.
QVector<const StepKind *> stepKinds();

/// Null for an unknown name.
const StepKind *stepKindNamed(const QString &name);

/// A step as a check file has it.
struct Step
{
    const StepKind *kind = nullptr;
    RawArguments arguments;
};

/// The changes of all steps for each case, each planned on what the ones before it will leave.
/// Refused as a whole if one step cannot be done. @p earlier is what other repairs will have done.
Plan planSteps(const QVector<Step> &steps, const QVector<Values> &cases, const Machine &machine,
               const QVector<Change> &earlier = {});

} // namespace doctor
