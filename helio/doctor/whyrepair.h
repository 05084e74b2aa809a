#pragma once

#include <functional>
#include <optional>

#include "doctor/machine/machine.h"
#include "doctor/why/denied/denied.h"
#include "doctor/why/input/input.h"
#include "doctor/why/input/remedy.h"
#include "doctor/why/open/open.h"
#include "helio/doctor/verifiedrepair.h"

namespace helio {

/// A change that repairs what "why" has found.
struct WhyRepair
{
    doctor::Plan plan;
    /// Asks the question again.
    Verify verify;
};

/// Opens the component that blocks, or shows the command for who may. Behind it another one may
/// block.
std::optional<WhyRepair> repairOf(const QString &path, doctor::Access access,
                                  const doctor::Denial &denial);

/// How what was asked for is opened now.
using LookAtOpening = std::function<doctor::Opening(const doctor::OpenQuestion &)>;

/// Has @p entry open what was asked for, or the one that is proposed if it is empty. Nothing where
/// neither is named or the type is not known.
std::optional<WhyRepair> repairOf(const doctor::Machine &machine,
                                  const doctor::OpenQuestion &question,
                                  const doctor::Opening &opening, const QString &entry,
                                  const LookAtOpening &look);

/// Sets the variable in the line that decides; refused where that is the administrator's.
std::optional<WhyRepair> repairOf(const doctor::Machine &machine, const doctor::InputReport &report,
                                  const std::optional<doctor::InputRemedy> &remedy);

} // namespace helio
