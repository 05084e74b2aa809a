#pragma once

#include "doctor/machine/machine.h"
#include "fleet/report/report.h"

namespace doctor {
class Doctor;
}

namespace fleet {

/// Describes a machine and the session and suite of its user. Runs all checks of @p doctor, with
/// their texts in @p locale. Changes nothing and starts no program of the suite.
Report collectReport(const doctor::Machine &machine, const doctor::Doctor &doctor,
                     const QString &locale);

} // namespace fleet
