#pragma once

#include <QString>

namespace OfficeAssiant {

struct EnvironmentCheck;

/// What the check tool wrote to its answer file for that check; empty if there is nothing.
QString checkToolAnswer(const EnvironmentCheck &check);

} // namespace OfficeAssiant
