#include "doctor/probes/kinds.h"

#include <QLatin1String>

namespace doctor {

QVector<const ProbeKind *> probeKinds()
{
    return {
        &fileKind,    &filesKind, &checksumKind,    &lockKind,
        &iniKind,     &jsonKind,  &xmlKind,         &desktopEntryKind,
        &xcuKind,     &lineKind,  &environmentKind, &processEnvironmentKind,
        &processKind,
    };
}

const ProbeKind *probeKindNamed(const QString &name)
{
    for (const ProbeKind *kind : probeKinds()) {
        if (name == QLatin1String(kind->name))
            return kind;
    }
    return nullptr;
}

std::optional<ValueType> valueTypeOf(const ProbeKind &kind, const QString &value)
{
    for (const ProbeValue &known : kind.values) {
        if (value == QLatin1String(known.name))
            return known.type;
    }
    return std::nullopt;
}

} // namespace doctor
