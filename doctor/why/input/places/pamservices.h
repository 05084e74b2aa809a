#pragma once

#include "doctor/machine/machine.h"

namespace doctor {

/// What the services in /etc/pam.d that begin a session have pam_env read.
struct PamServices
{
    enum class OfUser {
        Never,
        Sometimes, ///< some services do
        Always
    };

    /// ~/.pam_environment
    OfUser ofUser = OfUser::Never;
    /// /etc/default/locale
    bool readsDefaultLocale = false;
};

PamServices pamServices(const Machine &machine);

} // namespace doctor
