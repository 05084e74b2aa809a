#pragma once

#include "doctor/probes/probe.h"

namespace doctor {

// Each is defined beside its function.
extern const ProbeKind fileKind;
extern const ProbeKind filesKind;
extern const ProbeKind checksumKind;
extern const ProbeKind lockKind;
extern const ProbeKind iniKind;
extern const ProbeKind desktopEntryKind;
extern const ProbeKind jsonKind;
extern const ProbeKind xmlKind;
extern const ProbeKind xcuKind;
extern const ProbeKind lineKind;
extern const ProbeKind environmentKind;
extern const ProbeKind processEnvironmentKind;
extern const ProbeKind processKind;

} // namespace doctor
