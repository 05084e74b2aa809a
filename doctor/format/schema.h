#pragma once

#include <QJsonObject>

namespace doctor {

/// The JSON Schema (draft 7) of check files, made from the tables of probes and steps. It does not
/// know which placeholders a look gives.
QJsonObject checkSchema();

} // namespace doctor
