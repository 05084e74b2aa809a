#pragma once

#include <QString>

namespace doctor {

/// The value of a setting as it may be shown to others: nothing of a password, token or key.
QString withoutSecret(const QString &name, const QString &value);

} // namespace doctor
