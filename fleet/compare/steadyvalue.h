#pragma once

#include <QString>

#include "fleet/report/report.h"

namespace fleet {

/// The value with what differs between any two machines replaced by words: home, host, user, times,
/// ids, and the order of lists.
QString steadyValue(const QString &value, const Report &report);

/// The name of a fact with home, host and user replaced by words.
QString steadyName(const QString &name, const Report &report);

/// Whether a fact changes all the time, or is an identity: it is never compared.
bool isPassing(const QString &group, const QString &name);

} // namespace fleet
