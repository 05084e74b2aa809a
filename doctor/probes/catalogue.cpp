#include "doctor/probes/kinds.h"

#include <QLatin1String>

#include "doctor/machine/pathpattern.h"

namespace doctor {

MeantPaths meantPaths(const Arguments &arguments, const char *parameter, const Looking &looking,
                      bool withMissing)
{
    MeantPaths meant;
    for (const QString &pattern : arguments.texts(parameter)) {
        const MatchedPaths matched = matchedPaths(looking.machine, pattern, looking.deadline);
        if (!matched.problem.isEmpty())
            return {{}, matched.problem};
        if (matched.paths.isEmpty() && withMissing)
            meant.paths.append(pattern);
        meant.paths += matched.paths;
    }
    return meant;
}

QVector<const ProbeKind *> probeKinds()
{
    return {&fileKind,
            &filesKind,
            &checksumKind,
            &lockKind,
            &iniKind,
            &jsonKind,
            &xmlKind,
            &desktopEntryKind,
            &xcuKind,
            &lineKind,
            &compareKind,
            &environmentKind,
            &processEnvironmentKind,
            &processKind,
            &packageKind,
            &libraryKind,
            &fontKind,
            &fontListKind,
            &localeKind,
            &mimeDefaultKind,
            &fileTypeKind,
            &busNameKind,
            &printerKind,
            &printServiceKind,
            &diskSpaceKind,
            &mountKind,
            &portKind,
            &urlKind,
            &commandKind,
            &programVersionKind,
            &kernelKind,
            &distributionKind,
            &sessionKind,
            &machineMemoryKind,
            &accountKind,
            &membershipKind,
            &resourceLimitKind,
            &kernelSettingKind,
            &suiteKind,
            &xmlDocumentKind,
            &packedCopyKind,
            &fileAddressKind,
            &userLanguageKind};
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
