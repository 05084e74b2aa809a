#pragma once

#include <QJsonObject>

#include <optional>

#include "doctor/journal/tree/treestep.h"

namespace doctor {

/// A step as the journal keeps it: contents by their hash, paths percent-encoded, since their bytes
/// are not always UTF-8.
QJsonObject jsonOf(const TreeStep &step);

/// Nothing if it is not whole, or names what no step names: paths with "..", contents elsewhere.
std::optional<TreeStep> stepOf(const QJsonObject &json);

} // namespace doctor
