#pragma once

#include <QJsonObject>

#include "suites/state/state.h"

namespace helio {

/// "running", "locked" (by a process that has ended), "unused" or "ready".
QString stateName(const suites::State &state);

/// The line "suite" of docs/doctor.schema.json.
QJsonObject suiteLine(const suites::Installation &installation, bool isChosen);

/// The state as docs/host.md describes it.
QJsonObject stateObject(const suites::State &state);

/// Of all suites that are described.
QVector<suites::Installation> allInstallations(const doctor::Machine &machine);

/// The state of the one that is looked after, and all installations.
QJsonObject suiteDescription(const doctor::Machine &machine);

/// The state of the one that is looked after; nothing without one.
std::optional<suites::State> stateOfChosen(const doctor::Machine &machine);

} // namespace helio
