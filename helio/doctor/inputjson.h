#pragma once

#include <QJsonObject>
#include <QString>

#include "doctor/why/input/input.h"
#include "doctor/why/input/remedy.h"

namespace helio {

/// What the administrator can run, for sh; empty if the user can change it, or nobody.
QString commandOf(const std::optional<doctor::InputRemedy> &remedy);

/// Why an input method works or not, as one line of docs/doctor.schema.json.
QJsonObject inputObject(const doctor::InputReport &report,
                        const std::optional<doctor::InputRemedy> &remedy);

} // namespace helio
