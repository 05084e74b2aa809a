#pragma once

#include "doctor/probes/probe.h"

namespace doctor {

// Each is defined beside its function.
extern const ProbeKind fileKind;
extern const ProbeKind filesKind;
extern const ProbeKind checksumKind;
extern const ProbeKind lockKind;
extern const ProbeKind iniKind;
extern const ProbeKind jsonKind;
extern const ProbeKind xmlKind;
extern const ProbeKind desktopEntryKind;
extern const ProbeKind xcuKind;
extern const ProbeKind lineKind;
extern const ProbeKind compareKind;
extern const ProbeKind environmentKind;
extern const ProbeKind processEnvironmentKind;
extern const ProbeKind processKind;
extern const ProbeKind packageKind;
extern const ProbeKind libraryKind;
extern const ProbeKind fontKind;
extern const ProbeKind fontListKind;
extern const ProbeKind localeKind;
extern const ProbeKind mimeDefaultKind;
extern const ProbeKind fileTypeKind;
extern const ProbeKind busNameKind;
extern const ProbeKind printerKind;
extern const ProbeKind printServiceKind;
extern const ProbeKind diskSpaceKind;
extern const ProbeKind mountKind;
extern const ProbeKind portKind;
extern const ProbeKind urlKind;
extern const ProbeKind commandKind;
extern const ProbeKind programVersionKind;
extern const ProbeKind kernelKind;
extern const ProbeKind distributionKind;
extern const ProbeKind sessionKind;
extern const ProbeKind machineMemoryKind;
extern const ProbeKind accountKind;
extern const ProbeKind membershipKind;
extern const ProbeKind resourceLimitKind;
extern const ProbeKind kernelSettingKind;
extern const ProbeKind suiteKind;
extern const ProbeKind xmlDocumentKind;
extern const ProbeKind packedCopyKind;
extern const ProbeKind fileAddressKind;
extern const ProbeKind userLanguageKind;

} // namespace doctor
