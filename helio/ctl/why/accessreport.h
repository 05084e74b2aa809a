#pragma once

#include <QString>

#include "doctor/why/denied/denied.h"

namespace ctl {

/// Lines for people: the verdict, the components on the way, the reason and the remedy.
QString accessText(const QString &path, doctor::Access access, const doctor::Denial &denial);

} // namespace ctl
