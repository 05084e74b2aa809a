#pragma once

#include <QString>

namespace OfficeAssiant {

struct EnvironmentCheck;

/// What the check tool has left in its answer file for that check; null when there is nothing.
QString checkToolAnswer(const EnvironmentCheck &check);

} // namespace OfficeAssiant
