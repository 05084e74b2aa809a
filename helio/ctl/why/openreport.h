#pragma once

#include <QString>

#include "doctor/why/open/open.h"

namespace ctl {

/// Lines for people: what opens it, how its type was found, what each list says, what else opens
/// it.
/// @p subject is the file or type as it was asked for.
QString openText(const QString &subject, const doctor::OpenQuestion &question,
                 const doctor::Opening &opening);

/// A line for people.
QString suffixText(const doctor::SuffixOpening &row);

} // namespace ctl
