#pragma once

#include <QVector>

#include "doctor/conditions/parameter.h"
#include "doctor/conditions/value.h"
#include "doctor/machine/deadline.h"
#include "doctor/machine/machine.h"
#include "doctor/model/finding.h"

namespace doctor {

class Facts;

/// One thing that a probe has seen. Values that do not apply are missing: nothing can be said of
/// them.
struct Observation
{
    Values values;
    QVector<Place> where;
};

/// Everything that a probe has seen, or why it could not look.
struct Observed
{
    QVector<Observation> seen;
    QString problem;
};

/// What a probe looks with.
struct Looking
{
    const Machine &machine;
    const Deadline &deadline;
    /// Shared by all probes of a run.
    Facts &facts;
};

/// The paths that a parameter means.
struct MeantPaths
{
    QStringList paths;
    QString problem;
};

/// @param withMissing also the patterns that nothing matches, so that their absence can be seen
MeantPaths meantPaths(const Arguments &arguments, const char *parameter, const Looking &looking,
                      bool withMissing);

struct ProbeValue
{
    const char *name;
    ValueType type;
};

/// A kind of probe. Its first parameter has the kind's name: the file says {"file": "/etc/hosts",
/// …}.
struct ProbeKind
{
    const char *name;
    Table<Parameter> parameters;
    Table<ProbeValue> values;
    Observed (*look)(const Arguments &arguments, const Looking &looking);
};

/// All kinds, in the order of the guide.
QVector<const ProbeKind *> probeKinds();

/// Null for an unknown name.
const ProbeKind *probeKindNamed(const QString &name);

/// Nothing for a name that the kind does not see.
std::optional<ValueType> valueTypeOf(const ProbeKind &kind, const QString &value);

} // namespace doctor
