#pragma once

#include "doctor/doctor.h"

namespace ctl {

/// The locale of messages: that of the window whose task this is, or chosen as gettext(3) does:
/// LANGUAGE counts only in a real locale.
QString messageLocale(const doctor::Machine &machine);

} // namespace ctl
