#pragma once

#include <QStringList>

#include <optional>

#include "doctor/model/plan.h"
#include "doctor/why/denied/pathwalk.h"

namespace doctor {

/// What opens the component that blocks. Behind it another one may block.
struct Remedy
{
    /// Rights where the user may do it; Command where the owner or the administrator has to.
    Change change;
    /// As a command, for Rights as well.
    QStringList command;
    /// The access list that the command sets; empty if it sets none.
    Acl acl;
};

/// Opens what is asked for @p who and nothing more, but for mount options and attributes, which
/// hold for everybody. Nothing where no change does that.
std::optional<Remedy> remedyFor(const Passage &passage, const Credentials &who);

} // namespace doctor
