#pragma once

#include <QSet>

#include "doctor/format/checkdefinition.h"
#include "doctor/format/jsondocument.h"

namespace doctor {

/// Reads what a check looks at, with the names of all values that texts after it can use.
/// @param values names that can be used in it; those that it sees are added
Look readLook(const JsonNode &node, QSet<QString> &values);

/// Reads the parameters of a probe or a step, which are members of @p object.
RawArguments readArguments(const JsonNode &object, Table<Parameter> parameters,
                           const QSet<QString> &values);

} // namespace doctor
